#include "long_run.h"

#include "bench_models.h"
#include "screen/screen.h"
#include "stimulus/stimulus_store.h"

namespace zelvane {

void SetUpLongRun() {
  constexpr std::size_t points = 600'000;
  const BenchScheme scheme = FullTable();
  Model.ModelIs2D = 0;
  Model.TableRate = scheme.rate;
  Model.TableDepend = scheme.depend;
  Model.TableStateOn = scheme.on;
  Model.StartOccupancy = scheme.start;
  Model.StateConductance[2] = 10.0F;
  Model.StateMonitored[2] = 1;
  Model.SimulatorKind = FixedStepIntegrator;
  Model.NumPoints = static_cast<int>(points);
  Model.ADInterval = BenchIntervalMs;
  Model.MaxStepSize = BenchIntervalMs;
  Model.StartAtEquilibrium = 0;
  WriteAllControls();
  const std::span<float> volts = Stimulus.Profile[0];
  for (std::size_t i = 0; i < points; ++i) volts[i] = -0.1F + 2e-6F * static_cast<float>(i % 50'000);
}

}  // namespace zelvane
