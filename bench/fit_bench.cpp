// A fit of rates to waveforms compared with its plain form: simulate each waveform by the plain integrator, and build
// everything anew at each evaluation. fit_workload.json describes the scheme and the waveforms; fit_scipy.py times the
// same objective with NumPy and SciPy.
//
// Each line is 1000 evaluations. Before the clock starts, sums of squares of both forms are compared bit for bit.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <fstream>
#include <nlohmann/json.hpp>
#include <vector>

#include "app/stores.h"
#include "bench_times.h"
#include "fit/fit_objective.h"
#include "fit/fit_store.h"
#include "fit/plain_objective.h"
#include "fit/session_store.h"
#include "fit/wave_compare.h"
#include "model/model_store.h"
#include "numerics/random.h"
#include "parameters/vertex_store.h"
#include "platform/index.h"
#include "run/run.h"
#include "screen/screen.h"
#include "stimulus/stimulus_store.h"
#include "trace/trace_store.h"

namespace zelvane {
namespace {

using Json = nlohmann::json;

constexpr int Evaluations = 1000;
constexpr int PlainEvaluations = 20;
constexpr int ComparedEvaluations = 5;
constexpr double NoiseOfPeak = 0.01;
constexpr double Spread = 0.2;  // of the trial rates, as a fraction

enum class Drive { Steps, VoltageRamp };

Json Workload() {
  std::ifstream file(ZELVANE_BENCH "/fit_workload.json");
  return Json::parse(file);
}

/// Makes the scheme the model, in the table.
void MakeScheme(const Json& workload, Drive drive) {
  Model.ModelIs2D = Fit.FitModelIs2D = 0;
  Model.SimulatorKind = FixedStepIntegrator;
  Model.MultiSubunit = 0;
  Model.ADInterval = workload["interval_ms"];
  Model.MaxStepSize = Model.ADInterval / 2.0F;
  Model.NumChannels = workload["channels"];
  Model.DisplayUnits = UnitsCurrent;
  Model.VRev = workload["reversal_mV"];
  Model.VHold = workload["holding_mV"];
  Model.StartOccupancy[Index(workload["start"].get<int>())] = 1.0F;
  for (const int open : workload["open"]) {
    Model.StateMonitored[Index(open)] = 1;
    Model.StateConductance[Index(open)] = workload["conductance_pS"];
  }
  int params = 0;
  for (const Json& rate : workload["rates"]) {
    const int from = rate["from"];
    const int to = rate["to"];
    Model.TableRate[Index(from)][Index(to)] = rate["rate"];
    const int drug = rate["drug"];
    if (drug > 0) Model.TableDepend.Drug[Index(drug)][Index(from)][Index(to)] = 1;
    if (drive == Drive::VoltageRamp && drug == 0) {
      Model.TableDepend.Volt[Index(from)][Index(to)] = 1;
      Model.TableDepend.Steepness[Index(from)][Index(to)] = from < to ? 0.3F : -0.3F;
    }
    if (!rate["free"]) continue;
    ++params;
    FitSession.param[Index(params)] = {params, 10000 + 100 * from + to};
    Vertices.simplex.At(params, 0) = rate["rate"];
  }
  Vertices.simplex.NumParams = params;
  Vertices.simplex.NumVertices = params + 1;
}

void MakeStimulus(const Json& workload, double molar, Drive drive, int points) {
  for (std::size_t i = 0; i < Index(points); ++i) {
    const double t = static_cast<double>(i) * static_cast<double>(Model.ADInterval);
    const bool on = t >= workload["drug"]["start_ms"] && t < workload["drug"]["stop_ms"];
    Stimulus.Profile[1][i] = on ? static_cast<float>(molar) : 0.0F;
    const auto ramp = static_cast<float>(2e-5 * static_cast<double>(i));
    Stimulus.Profile[0][i] = Model.VHold / 1000.0F + (drive == Drive::VoltageRamp ? ramp : 0.0F);
  }
}

/// Loads a simulation with noise for each concentration.
void LoadWaveforms(const Json& workload, Drive drive) {
  const int points = workload["points"];
  const int stimulus = points + points / 2;
  RandomStream random;
  int w = 0;
  for (const double molar : workload["drug"]["molar"]) {
    FitWaveform& wave = Fit.Wave[Index(++w)];
    MakeStimulus(workload, molar, drive, stimulus);
    RunSimulation(points, RunStart::AsSet);
    float peak = 0.0F;
    for (int i = 0; i < points; ++i) peak = std::max(peak, std::fabs(Trace.SimTrace[Index(i)]));
    for (std::size_t i = 0; i < Index(points); ++i)
      wave.WaveData[i] = Trace.SimTrace[i] + static_cast<float>(NoiseOfPeak) * peak * GaussianNoise(random);
    for (std::size_t p = 0; p < wave.WaveStim.size(); ++p)
      std::copy_n(Stimulus.Profile[p].begin(), stimulus, wave.WaveStim[p].begin());
    wave.DataLength = points;
    wave.WaveLoaded = 1;
    const Json& window = workload["window"];
    FitWindow& windows = Fit.Waveform[Index(w)];
    windows.DataBaselineStart = windows.SimBaselineStart = window["baseline_start_ms"];
    windows.NumBaselinePts = window["baseline_points"];
    windows.DataFitStart = windows.SimFitStart = window["fit_start_ms"];
    windows.NumFitPts = window["fit_points"];
    windows.NumAlignPts = window["align_points"];
    Fit.FitParse = window["parse"];
  }
  Fit.FitWaveCount = w;
}

/// Returns trial rates around the true ones.
std::vector<std::vector<double>> TrialRates() {
  RandomStream random;
  std::vector<std::vector<double>> trials(Evaluations);
  for (std::vector<double>& trial : trials) {
    for (int i = 1; i <= Vertices.simplex.NumParams; ++i)
      trial.push_back(Vertices.simplex.At(i, 0) * (1.0 + Spread * (2.0 * UniformRandom(random) - 1.0)));
  }
  return trials;
}

void PutTrial(const std::vector<double>& trial) {
  for (std::size_t i = 0; i < trial.size(); ++i) Vertices.simplex.At(static_cast<int>(i) + 1, 1) = trial[i];
}

void FitWaves(benchmark::State& state, Drive drive, bool equilibrium) {
  ClearScreen();
  AllocateStores();
  ResetStores();
  FitSession = {};
  const Json workload = Workload();
  MakeScheme(workload, drive);
  LoadWaveforms(workload, drive);
  const auto trials = TrialRates();
  Model.FitActive = 1;
  Model.FitStartAtEquilibrium = equilibrium ? 1 : 0;
  Fit.WaveFitLimitsOn = 0;
  FitDataBuild();
  PrepareObjective();
  Vertices.simplex.At(0, 0) = 1e300;
  for (int k = 0; k < ComparedEvaluations; ++k) {
    PutTrial(trials[Index(k)]);
    const double plain = PlainSumOfSquares(1);
    RateVertexEval(1);
    if (plain != Vertices.simplex.At(0, 1)) state.SkipWithError("the two forms differ");
  }
  CompareTimes(
      state,
      [&] {
        for (const std::vector<double>& trial : trials) {
          PutTrial(trial);
          RateVertexEval(1);
        }
      },
      [&] {
        for (int k = 0; k < PlainEvaluations; ++k) {
          PutTrial(trials[Index(k)]);
          benchmark::DoNotOptimize(PlainSumOfSquares(1));
        }
      },
      static_cast<double>(PlainEvaluations) / Evaluations);
  state.counters["evaluations_per_second"] =
      benchmark::Counter(Evaluations, benchmark::Counter::kIsIterationInvariantRate);
}

BENCHMARK_CAPTURE(FitWaves, steps, Drive::Steps, false)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(FitWaves, voltage_ramp, Drive::VoltageRamp, false)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(FitWaves, at_equilibrium, Drive::Steps, true)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace zelvane

BENCHMARK_MAIN();
