#include "fit/simulated_set.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>

#include "fit/fit_store.h"
#include "model/model_store.h"
#include "numerics/random.h"
#include "platform/index.h"
#include "run/run.h"
#include "stimulus/stimulus_store.h"
#include "trace/program_random.h"
#include "trace/trace_store.h"

namespace zelvane {
namespace {

constexpr float IntervalMs = 0.02F;

void SetRun() {
  Model.SimulatorKind = FixedStepIntegrator;
  Model.ADInterval = IntervalMs;
  Model.MaxStepSize = IntervalMs / 2.0F;
  Model.MultiSubunit = 0;
  Model.NumChannels = 100;
  Model.DisplayUnits = UnitsChannels;  // sums of squares far above 1, as the tolerance wants them
  Model.StartOccupancy = {};
  Model.StartOccupancy[1] = 1.0F;
  Model.StateMonitored = {};
  Model.StateMonitored[3] = 1;
  Model.FitStartAtEquilibrium = 0;
  Fit.FitParse = 1;
  Fit.FitAlign = 0;  // the stimulus of a simulation begins when that of its data did
  Fit.FitStepSize = 0.5F;
  for (std::size_t w = 1; w <= MaxFitWaveforms; ++w) {
    FitWindow& window = Fit.Waveform[w];
    window.DataBaselineStart = window.SimBaselineStart = 0.5F;
    window.DataFitStart = window.SimFitStart = 1.9F;
    window.NumBaselinePts = 30;
    window.NumAlignPts = 20;
    window.NumFitPts = 600;
  }
}

}  // namespace

void MakeThreeStateModel() {
  SetRun();
  Model.ModelIs2D = Fit.FitModelIs2D = 1;
  Model.StateOn = {};
  for (const std::size_t s : {1, 2, 3}) Model.StateOn[s] = 1;
  for (std::size_t link = 1; link <= MaxLinks; ++link) {
    const Link& ends = LinkTable[link];
    if (ends.high > 3 || ends.high - ends.low != 1) continue;
    Model.KOn[link] = ends.low == 1 ? 4e6 : 900.0;
    Model.KOff[link] = ends.low == 1 ? 1500.0 : 400.0;
  }
  Model.Depend.Drug[1][1][2] = 1;
}

void MakeTableModel() {
  SetRun();
  Model.ModelIs2D = Fit.FitModelIs2D = 0;
  Model.TableRate = {};
  Model.TableRate[1][2] = 4e6F;
  Model.TableRate[2][1] = 1500.0F;
  Model.TableRate[2][3] = 900.0F;
  Model.TableRate[3][2] = 400.0F;
  Model.TableRate[2][4] = 300.0F;
  Model.TableRate[4][2] = 60.0F;
  Model.TableDepend.Drug[1][1][2] = 1;
}

void LoadSimulatedWave(int w, int points, double noise, const std::function<void()>& fill) {
  for (const std::span<float> profile : Stimulus.Profile) std::fill_n(profile.begin(), points + 100, 0.0F);
  fill();
  FitWaveform& wave = Fit.Wave[Index(w)];
  EXPECT_EQ(RunSimulation(points, RunStart::AsSet), Outcome::Done);
  const auto trace = Trace.SimTrace.first(Index(points));
  const auto largest = std::max_element(trace.begin(), trace.end(),
                                        [](float a, float b) { return std::fabs(a) < std::fabs(b); });
  const auto deviation = static_cast<float>(noise * std::fabs(static_cast<double>(*largest)));
  for (std::size_t i = 0; i < trace.size(); ++i)
    wave.WaveData[i] = trace[i] + deviation * GaussianNoise(ProgramRandom);
  for (std::size_t p = 0; p < wave.WaveStim.size(); ++p)
    std::copy_n(Stimulus.Profile[p].begin(), points + 100, wave.WaveStim[p].begin());
  wave.DataLength = points;
  wave.StimLength = points + 100;
  wave.WaveDataInterval = wave.WaveStimInterval = IntervalMs;
  Fit.WaveDataInterval = Fit.WaveStimInterval = IntervalMs;
  wave.DataName = "simulated" + std::to_string(w) + ".abf";
  wave.StimName = "simulated" + std::to_string(w) + ".stm";
  wave.WaveLoaded = wave.DataOn = wave.StimOn = 1;
  Fit.FitWaveCount = std::max(Fit.FitWaveCount, w);
}

void LoadSimulatedWave(int w, int points, float molar, float endMs, double noise) {
  LoadSimulatedWave(w, points, noise, [&] {
    const auto first = static_cast<std::size_t>(2.0F / IntervalMs);
    const auto last = std::min(Index(points), static_cast<std::size_t>(endMs / IntervalMs));
    for (std::size_t i = first; i < last; ++i) Stimulus.Profile[1][i] = molar;
  });
}

}  // namespace zelvane
