#include "run/active_scheme.h"

#include <algorithm>

#include "model/model_store.h"
#include "run/result_store.h"
#include "stimulus/stimulus_store.h"

namespace zelvane {
namespace {

TraceUnit UnitOf(int displayUnits) {
  switch (displayUnits) {
    case UnitsChannels:
      return TraceUnit::Channels;
    case UnitsConductance:
      return TraceUnit::Conductance;
    case UnitsCurrent:
      return TraceUnit::Current;
    default:
      return TraceUnit::Probability;
  }
}

}  // namespace

SchemeTables ActiveTables() {
  return {Model.RateMatrix, Model.Depend, Model.ModelIs2D != 0 ? Model.StateOn : Model.TableStateOn,
          Model.Temperature};
}

StimulusView ActiveStimulus() {
  StimulusView view;
  std::copy(Stimulus.Profile.begin(), Stimulus.Profile.end(), view.profile.begin());
  view.intervalMs = Model.ADInterval;
  return view;
}

TraceConversion ActiveConversion() {
  return {.monitored = Model.StateMonitored,
          .conductance = Model.StateConductance,
          .unit = UnitOf(Model.DisplayUnits),
          .channels = Result.EffectiveChannels,
          .volts = Stimulus.Profile[0],
          .reversalMv = Model.VRev,
          .valence = Model.Valence};
}

}  // namespace zelvane
