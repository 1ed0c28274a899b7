#include "long_run.h"

#include <algorithm>

#include "bench_models.h"
#include "screen/screen.h"
#include "stimulus/stimulus_store.h"

namespace zelvane {
namespace {

void SetPoints(int points) {
  Model.NumPoints = points;
  Model.ADInterval = Model.MaxStepSize = BenchIntervalMs;
}

void SetUpTable(int simulator, int points) {
  const BenchScheme scheme = FullTable();
  Model.TableRate = scheme.rate;
  Model.TableDepend = scheme.depend;
  Model.TableStateOn = scheme.on;
  Model.StartOccupancy = scheme.start;
  Model.StateConductance[2] = 10.0F;
  Model.StateMonitored[2] = 1;
  Model.SimulatorKind = simulator;
  SetPoints(points);
  const std::span<float> volts = Stimulus.Profile[0];
  for (std::size_t i = 0; i < static_cast<std::size_t>(points); ++i) {
    volts[i] = -0.1F + 2e-6F * static_cast<float>(i % 50'000);
  }
}

/// Sets two states that change into each other at `rate` per second.
void SetUpChannels(float rate, int channels, int points) {
  Model.TableRate = {};
  Model.TableRate[1][2] = Model.TableRate[2][1] = rate;
  Model.TableDepend = {};
  Model.TableStateOn = {};
  Model.TableStateOn[1] = Model.TableStateOn[2] = 1;
  Model.StartOccupancy = {};
  Model.StartOccupancy[1] = 1.0F;
  Model.OpenState = 2;
  Model.SimulatorKind = MonteCarlo;
  Model.NumChannels = channels;
  SetPoints(points);
}

}  // namespace

void SetUpLongRun(LongRun run) {
  Model.ModelIs2D = 0;
  Model.StartAtEquilibrium = 0;
  if (run == LongRun::FixedStep) SetUpTable(FixedStepIntegrator, 600'000);
  if (run == LongRun::Adaptive) SetUpTable(AdaptiveIntegrator, 600'000);
  if (run == LongRun::OneChannel) SetUpChannels(2e6F, 1, 1'000'000);
  if (run == LongRun::ManyChannels) SetUpChannels(2e3F, 10'000, 100'000);
  WriteAllControls();
}

}  // namespace zelvane
