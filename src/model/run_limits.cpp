// Bounds and forced values of the run settings.
#include "model/model.h"

namespace zelvane {

void LimitNumPoints() {
  if (Model.NumPoints > MaxStimPoints) Model.NumPoints = MaxPoints;
}

bool HasSeveralRuns() {
  return Model.NumRuns >= 2 && Model.SimulatorKind != FixedStepIntegrator && Model.MultiSubunit == 0;
}

void ForceMultiSubunit() {
  if (Model.MultiSubunit != 1) return;
  Model.StartAtEquilibrium = 0;
  Model.NumRuns = 1;
  Model.NumIntervals = 0;
  Model.ReseedSimulation = 0;
  Model.AutoAnalyze = 0;
  Model.ShowAllTraces = 0;
}

}  // namespace zelvane
