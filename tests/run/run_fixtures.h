// Shared by the tests of the run driver.
#pragma once

#include "dwells/dwell_store.h"
#include "model/model_panels.h"
#include "run/monte_carlo_loop.h"
#include "run/result_store.h"
#include "run/run.h"
#include "run/run_panel.h"
#include "stimulus/stimulus_store.h"
#include "support/pressing.h"
#include "trace/program_random.h"
#include "trace/trace.h"
#include "trace/trace_graph.h"
#include "trace/trace_store.h"

namespace zelvane {

/// Two states of the grid, closed (1) and open (2), all channels closed; 200 points of 0.01 ms.
class RunTest : public PanelTest {
 protected:
  RunTest() {
    SetSeeds(ProgramRandom, {1234.0, 5678.0, 9012.0});
    Model.StateOn[1] = Model.StateOn[2] = 1;
    Model.KOn[1] = 1000.0;
    Model.KOff[1] = 500.0;
    Model.StateMonitored[2] = 1;
    Model.StateConductance[2] = 50.0F;
    Model.StartOccupancy[1] = 1.0F;
    Model.NumPoints = 200;
    Model.MultiSubunit = 0;
    Model.NumIntervals = 0;
    Model.ReseedSimulation = 0;
    Model.SimulatorKind = FixedStepIntegrator;
    Show();
  }

  /// Shows the stores on the panels.
  static void Show() {
    RefreshModelPanels();
    WriteRunParameters();
  }

  /// Runs the model with the settings of the store.
  static Outcome RunAsSet() {
    Show();
    return AcquireData();
  }

  /// Runs the model as a fit does.
  static Outcome RunSilently(RunStart start = RunStart::AsSet) {
    return RunSimulation(Model.NumPoints, start);
  }
};

}  // namespace zelvane
