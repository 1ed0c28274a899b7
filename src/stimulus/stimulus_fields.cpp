#include "stimulus/stimulus_fields.h"

#include "screen/fields.h"
#include "stimulus/stimulus_store.h"

namespace zelvane {

void RegisterStimulusFields() {
  const std::span<float> voltage = Stimulus.Profile[0];
  const std::span<float> drug1 = Stimulus.Profile[1];
  const std::ptrdiff_t profileStep =
      (drug1.data() - voltage.data()) * static_cast<std::ptrdiff_t>(sizeof(float));
  Field drugs{"DrugProfile[][]",
              FieldType::Float,
              reinterpret_cast<std::byte*>(voltage.data()),
              2,
              {{{1, MaxDrugs, profileStep}, {0, MaxStimPoints - 1, sizeof(float)}}},
              0};
  RegisterSavedSettings({
      ScalarField("StimMode", Stimulus.StimMode),
      ScalarField("AutoValue", Stimulus.AutoValue),
      ScalarField("AutoStart", Stimulus.AutoStart, "ms"),
      ScalarField("AutoStop", Stimulus.AutoStop, "ms"),
      ScalarField("AutoDrugOrVolt", Stimulus.AutoDrugOrVolt),
      ScalarField("AutoFilterOn", Stimulus.AutoFilterOn),
      ScalarField("StepAmp", Stimulus.StepAmp),
      ScalarField("StepStart", Stimulus.StepStart, "ms"),
      ScalarField("StepStop", Stimulus.StepStop, "ms"),
      ScalarField("StepRamp", Stimulus.StepRamp),
      ScalarField("StepRiseTau", Stimulus.StepRiseTau, "ms"),
      ScalarField("StepDecayTau", Stimulus.StepDecayTau, "ms"),
      ScalarField("ExpStart", Stimulus.ExpStart, "ms"),
      ScalarField("ExpAmp1", Stimulus.ExpAmp1),
      ScalarField("ExpAmp2", Stimulus.ExpAmp2),
      ScalarField("ExpTau1", Stimulus.ExpTau1, "ms"),
      ScalarField("ExpTau2", Stimulus.ExpTau2, "ms"),
      ScalarField("ExpRiseTau", Stimulus.ExpRiseTau, "ms"),
      ScalarField("ExpOffset", Stimulus.ExpOffset),
      ScalarField("ExpComponents", Stimulus.ExpComponents),
      ScalarField("ExpRiseFlag", Stimulus.ExpRiseFlag),
      ScalarField("TrainCount", Stimulus.TrainCount),
      ScalarField("TrainDelay", Stimulus.TrainDelay, "ms"),
      ScalarField("TrainInterval", Stimulus.TrainInterval, "ms"),
      ScalarField("TrainExpFlag", Stimulus.TrainExpFlag),
      ScalarField("TrainRiseFlag", Stimulus.TrainRiseFlag),
      ScalarField("FilterFc", Stimulus.FilterFc, "kHz"),
      ScalarField("FilterPoles", Stimulus.FilterPoles),
      ScalarField("StimLogAxis", Stimulus.StimLogAxis),
      TableField("MultiStimTable[][]", Stimulus.MultiStimTable, "", 0),
  });
  RegisterSettings({
      ScalarField("StimTarget", Stimulus.StimTarget),
      ScalarField("ExportPoints", Stimulus.ExportPoints),
  });
  RegisterResults({
      ScalarField("StimFromFile", Stimulus.StimFromFile),
      ScalarField("StimFileName", Stimulus.StimFileName),
  });
  RegisterWorkingFields({
      SpanField("VoltageProfile[]", voltage, "V"),
      drugs,
      ScalarField("ScriptRunning", Stimulus.ScriptRunning),
  });
}

}  // namespace zelvane
