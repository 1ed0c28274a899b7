#include "shell/store_fields.h"

#include "model/constraints_store.h"
#include "model/model_store.h"
#include "screen/fields.h"
#include "screen/popups_store.h"
#include "shell/internal/field_groups.h"
#include "sim/result_store.h"
#include "stimulus/stimulus_store.h"

namespace zelvane {
namespace {

/// A dependence cube offered from drug 1, state 1.
Field DrugField(const char* name, DependenceTables& tables) {
  return CubeField(name, tables.Drug);
}

void RegisterModel() {
  RegisterFields({
      ArrayField("KOn[]", Model.KOn),
      ArrayField("KOff[]", Model.KOff),
      ArrayField("StateOn[]", Model.StateOn),
      ArrayField("StateLabel[]", Model.StateLabel, 1, StateLabelBytes),
      DrugField("DrugDepend[][][]", Model.Depend),
      TableField("VoltDepend[][]", Model.Depend.Volt),
      TableField("VoltSteepness[][]", Model.Depend.Steepness),
      TableField("VoltRange[][]", Model.Depend.Range),
      TableField("TableRate[][]", Model.TableRate),
      DrugField("TableDrugDepend[][][]", Model.TableDepend),
      TableField("TableVoltDepend[][]", Model.TableDepend.Volt),
      TableField("TableVoltSteepness[][]", Model.TableDepend.Steepness),
      TableField("TableVoltRange[][]", Model.TableDepend.Range),
      ArrayField("TableStateOn[]", Model.TableStateOn),
      ArrayField("TableStateLabel[]", Model.TableStateLabel, 1, StateLabelBytes),
      TableField("RateMatrix[][]", Model.RateMatrix),
      ArrayField("StateMonitored[]", Model.StateMonitored),
      ArrayField("StateConductance[]", Model.StateConductance, 0),
      ArrayField("StartOccupancy[]", Model.StartOccupancy),
      ArrayField("DrugLabel[]", Model.DrugLabel, 1, DrugLabelBytes),
  });
}

void RegisterRunSettings() {
  RegisterFields({
      ScalarField("ModelIs2D", Model.ModelIs2D),
      ScalarField("SimulatorKind", Model.SimulatorKind),
      ScalarField("NumPoints", Model.NumPoints),
      ScalarField("ADInterval", Model.ADInterval),
      ScalarField("NumRuns", Model.NumRuns),
      ScalarField("NumIntervals", Model.NumIntervals),
      ScalarField("NumChannels", Model.NumChannels),
      ScalarField("ChannelsGaussian", Model.ChannelsGaussian),
      ScalarField("ChannelsSTD", Model.ChannelsSTD),
      ScalarField("MultiSubunit", Model.MultiSubunit),
      ScalarField("OpenState", Model.OpenState),
      ScalarField("StartState", Model.StartState),
      ScalarField("ReseedSimulation", Model.ReseedSimulation),
      ScalarField("StartAtEquilibrium", Model.StartAtEquilibrium),
      ScalarField("FitStartAtEquilibrium", Model.FitStartAtEquilibrium),
      ScalarField("DisplayUnits", Model.DisplayUnits),
      ScalarField("ShowAllTraces", Model.ShowAllTraces),
      ScalarField("AutoAnalyze", Model.AutoAnalyze),
      ScalarField("Autosave", Model.Autosave),
      ScalarField("AutosaveFormat", Model.AutosaveFormat),
      ScalarField("AutoFilter", Model.AutoFilter),
      ScalarField("AutoFilterFc", Model.AutoFilterFc),
      ScalarField("AutoNoise", Model.AutoNoise),
      ScalarField("AutoNoiseSTD", Model.AutoNoiseSTD),
      ScalarField("VHold", Model.VHold),
      ScalarField("VRev", Model.VRev),
      ScalarField("Valence", Model.Valence),
      ScalarField("Temperature", Model.Temperature),
      ScalarField("MaxStepSize", Model.MaxStepSize),
      ScalarField("Precision", Model.Precision),
      ScalarField("ModelTitle", Model.ModelTitle, TitleBytes),
      ScalarField("ModelFileName", Model.ModelFileName),
      ScalarField("FitActive", Model.FitActive),
  });
}

void RegisterConstraints() {
  Field loopState{"LoopConstraint[].state[]",
                  FieldType::Int,
                  reinterpret_cast<std::byte*>(Constraints.Loop[0].State.data()),
                  2,
                  {{{1, MaxLoopConstraints, sizeof(LoopConstraint)}, {1, MaxLoopStates, sizeof(int)}}},
                  0};
  RegisterFields({
      RowField("RateConstraint[].enabled", Constraints.Rate, &RateConstraint::Enabled),
      RowField("RateConstraint[].targetFrom", Constraints.Rate, &RateConstraint::TargetFrom),
      RowField("RateConstraint[].targetTo", Constraints.Rate, &RateConstraint::TargetTo),
      RowField("RateConstraint[].sourceFrom", Constraints.Rate, &RateConstraint::SourceFrom),
      RowField("RateConstraint[].sourceTo", Constraints.Rate, &RateConstraint::SourceTo),
      RowField("RateConstraint[].operation", Constraints.Rate, &RateConstraint::Operation),
      RowField("RateConstraint[].value", Constraints.Rate, &RateConstraint::Value),
      RowField("LoopConstraint[].enabled", Constraints.Loop, &LoopConstraint::Enabled),
      loopState,
      RowField("LoopConstraint[].rateFrom", Constraints.Loop, &LoopConstraint::RateFrom),
      RowField("LoopConstraint[].rateTo", Constraints.Loop, &LoopConstraint::RateTo),
  });
}

void RegisterStimulus() {
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

void RegisterResults() {
  const std::span<float> row0 = Result.Occupancy[0];
  const std::ptrdiff_t rowStep =
      (Result.Occupancy[1].data() - row0.data()) * static_cast<std::ptrdiff_t>(sizeof(float));
  Field occupancy{"Occupancy[][]",
                  FieldType::Float,
                  reinterpret_cast<std::byte*>(row0.data()),
                  2,
                  {{{1, MaxStates, rowStep}, {0, OccupancyPoints - 1, sizeof(float)}}},
                  0};
  RegisterFields({
      occupancy,
      SpanField("SavedTime[]", Result.SavedTime),
      ScalarField("ResultKind", Result.ResultKind),
      ScalarField("KeptSteps", Result.KeptSteps),
      ScalarField("IntegrationOffset", Result.IntegrationOffset),
      ScalarField("ReductionCount", Result.ReductionCount),
      ScalarField("StopRequested", Requests.StopRequested),
      ScalarField("EffectiveChannels", Result.EffectiveChannels),
      ArrayField("StateClass[]", Result.StateClass),
      ArrayField("EquilibriumOccupancy[]", Result.EquilibriumOccupancy),
      ScalarField("ResultsFileName", Result.ResultsFileName),
  });
}

}  // namespace

void RegisterStoreFields() {
  RegisterModel();
  RegisterRunSettings();
  RegisterConstraints();
  RegisterStimulus();
  RegisterResults();
  RegisterTraceFields();
  RegisterAnalysisFields();
  RegisterDwellFields();
  RegisterFitFields();
}

}  // namespace zelvane
