#include "model/model_fields.h"

#include "model/constraints_store.h"
#include "model/model_store.h"
#include "screen/fields.h"

namespace zelvane {
namespace {

/// Describes a dependence cube with indices from drug 1, state 1.
Field DrugField(const char* name, DependenceTables& tables) {
  return CubeField(name, tables.Drug);
}

/// Describes the rates of the links. The simulators use them as 32-bit floats.
template <std::size_t N>
Field RateField(const char* name, std::array<double, N>& rates) {
  Field field = ArrayField(name, rates);
  field.isNarrowed = true;
  return field;
}

void RegisterScheme() {
  RegisterSavedSettings({
      RateField("KOn[]", Model.KOn),
      RateField("KOff[]", Model.KOff),
      ArrayField("StateOn[]", Model.StateOn),
      TextsField("StateLabel[]", Model.StateLabel, StateLabelBytes),
      DrugField("DrugDepend[][][]", Model.Depend),
      TableField("VoltDepend[][]", Model.Depend.Volt),
      TableField("VoltSteepness[][]", Model.Depend.Steepness),
      TableField("VoltRange[][]", Model.Depend.Range),
      TableField("TableRate[][]", Model.TableRate, "1/s"),
      DrugField("TableDrugDepend[][][]", Model.TableDepend),
      TableField("TableVoltDepend[][]", Model.TableDepend.Volt),
      TableField("TableVoltSteepness[][]", Model.TableDepend.Steepness),
      TableField("TableVoltRange[][]", Model.TableDepend.Range),
      TextsField("TableStateLabel[]", Model.TableStateLabel, StateLabelBytes),
      ArrayField("StateMonitored[]", Model.StateMonitored),
      ArrayField("StateConductance[]", Model.StateConductance, "pS", 0),
      ArrayField("StartOccupancy[]", Model.StartOccupancy),
      TextsField("DrugLabel[]", Model.DrugLabel, DrugLabelBytes),
  });
  RegisterSettings({
      DrugField("GridDrugDepend[][][]", Model.GridDepend),
      TableField("GridVoltDepend[][]", Model.GridDepend.Volt),
      TableField("GridVoltSteepness[][]", Model.GridDepend.Steepness),
      TableField("GridVoltRange[][]", Model.GridDepend.Range),
      ScalarField("DependIsOfTable", Model.DependIsOfTable),
  });
  RegisterWorkingFields({
      ArrayField("TableStateOn[]", Model.TableStateOn),
      TableField("RateMatrix[][]", Model.RateMatrix, "1/s"),
  });
}

void RegisterRunSettings() {
  RegisterSavedSettings({
      ScalarField("SimulatorKind", Model.SimulatorKind),
      ScalarField("NumPoints", Model.NumPoints),
      ScalarField("ADInterval", Model.ADInterval, "ms"),
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
      ScalarField("AutoFilterFc", Model.AutoFilterFc, "kHz"),
      ScalarField("AutoNoise", Model.AutoNoise),
      ScalarField("AutoNoiseSTD", Model.AutoNoiseSTD),
      ScalarField("VHold", Model.VHold, "mV"),
      ScalarField("VRev", Model.VRev, "mV"),
      ScalarField("Valence", Model.Valence),
      ScalarField("Temperature", Model.Temperature, "degrees Celsius"),
      ScalarField("MaxStepSize", Model.MaxStepSize, "ms"),
      ScalarField("Precision", Model.Precision),
      TextField("ModelTitle", Model.ModelTitle, TitleBytes),
  });
  RegisterSettings({
      ScalarField("ModelIs2D", Model.ModelIs2D),
      ScalarField("ModelFileName", Model.ModelFileName),
  });
  RegisterWorkingFields({
      ScalarField("FitActive", Model.FitActive),
      ScalarField("RecordPoints", Model.RecordPoints),
  });
}

void RegisterConstraints() {
  Field loopState{"LoopConstraint[].state[]",
                  FieldType::Int,
                  reinterpret_cast<std::byte*>(Constraints.Loop[0].State.data()),
                  2,
                  {{{1, MaxLoopConstraints, sizeof(LoopConstraint)}, {1, MaxLoopStates, sizeof(int)}}},
                  0};
  RegisterSavedSettings({
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

}  // namespace

void RegisterModelFields() {
  RegisterScheme();
  RegisterRunSettings();
  RegisterConstraints();
}

}  // namespace zelvane
