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
  RegisterFields({
      SpanField("VoltageProfile[]", voltage),
      drugs,
      ScalarField("StimMode", Stimulus.StimMode),
      ScalarField("StimTarget", Stimulus.StimTarget),
      ScalarField("StimFromFile", Stimulus.StimFromFile),
      ScalarField("AutoValue", Stimulus.AutoValue),
      ScalarField("AutoStart", Stimulus.AutoStart),
      ScalarField("AutoStop", Stimulus.AutoStop),
      ScalarField("AutoDrugOrVolt", Stimulus.AutoDrugOrVolt),
      ScalarField("AutoFilterOn", Stimulus.AutoFilterOn),
      ScalarField("StepAmp", Stimulus.StepAmp),
      ScalarField("StepStart", Stimulus.StepStart),
      ScalarField("StepStop", Stimulus.StepStop),
      ScalarField("StepRamp", Stimulus.StepRamp),
      ScalarField("StepRiseTau", Stimulus.StepRiseTau),
      ScalarField("StepDecayTau", Stimulus.StepDecayTau),
      ScalarField("ExpStart", Stimulus.ExpStart),
      ScalarField("ExpAmp1", Stimulus.ExpAmp1),
      ScalarField("ExpAmp2", Stimulus.ExpAmp2),
      ScalarField("ExpTau1", Stimulus.ExpTau1),
      ScalarField("ExpTau2", Stimulus.ExpTau2),
      ScalarField("ExpRiseTau", Stimulus.ExpRiseTau),
      ScalarField("ExpOffset", Stimulus.ExpOffset),
      ScalarField("ExpComponents", Stimulus.ExpComponents),
      ScalarField("ExpRiseFlag", Stimulus.ExpRiseFlag),
      ScalarField("TrainCount", Stimulus.TrainCount),
      ScalarField("TrainDelay", Stimulus.TrainDelay),
      ScalarField("TrainInterval", Stimulus.TrainInterval),
      ScalarField("TrainExpFlag", Stimulus.TrainExpFlag),
      ScalarField("TrainRiseFlag", Stimulus.TrainRiseFlag),
      ScalarField("FilterFc", Stimulus.FilterFc),
      ScalarField("FilterPoles", Stimulus.FilterPoles),
      ScalarField("StimLogAxis", Stimulus.StimLogAxis),
      ScalarField("ExportPoints", Stimulus.ExportPoints),
      ScalarField("StimFileName", Stimulus.StimFileName),
      ScalarField("ScriptRunning", Stimulus.ScriptRunning),
      TableField("MultiStimTable[][]", Stimulus.MultiStimTable, 0),
  });
}

}  // namespace zelvane
