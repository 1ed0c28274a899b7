// The integrators compared with their plain form. Both run in one program, so that other work of the machine
// slows both equally.
//
// Each line is one workload. Time is the processor time of the program's own form; the counters are the plain
// form's time for the same work (plain_ms) and how many times faster the program is (times_faster). Before
// the clock starts the two results are compared bit for bit.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include "app/application.h"
#include "app/stores.h"
#include "bench_models.h"
#include "bench_times.h"
#include "kinetics/adaptive_step.h"
#include "kinetics/fixed_step.h"
#include "kinetics/integrator_cases.h"
#include "kinetics/plain_integrator.h"
#include "run/result_store.h"

#if defined(__linux__)
#include <sys/resource.h>
#endif

namespace zelvane {
namespace {

constexpr int Points = 10240;
constexpr int LongPoints = 5'000'000;
constexpr float StepMs = 0.005F;  // two substeps a point
constexpr float Precision = 0.0005F;

bool SameRows(const IntegratorOutput& plain, int points) {
  for (std::size_t s = 1; s <= MaxStates; ++s) {
    const auto bytes = (static_cast<std::size_t>(points) + 1) * sizeof(float);
    if (std::memcmp(plain.room[s].data() + 1, Result.Occupancy[s].data() + 1, bytes) != 0) return false;
  }
  return true;
}

/// The compiled form as Simulate uses it: compiling is part of every run.
void FastFixed(const BenchScheme& scheme, int points) {
  const CompiledScheme compiled = CompileScheme(scheme.Tables());
  const StimulusView view = StoreStimulus();
  IntegrateFixedStep({compiled, view, scheme.start, points, StepMs}, Result.Occupancy);
}

AdaptiveResult FastAdaptive(const BenchScheme& scheme, int points) {
  const CompiledScheme compiled = CompileScheme(scheme.Tables());
  const StimulusView view = StoreStimulus();
  return IntegrateAdaptive({compiled, view, scheme.start, points, Precision}, Result.SavedTime,
                           Result.Occupancy);
}

void ClearRows(int points) {
  for (auto& row : Result.Occupancy) std::fill_n(row.begin(), points + 2, 0.0F);
}

void FixedPath(benchmark::State& state, const BenchScheme& scheme, BenchStimulus stimulus) {
  ClearRows(Points);
  SetStimulus(stimulus, Points);
  const StimulusView view = StoreStimulus();
  IntegratorOutput plain(Points);
  const auto runPlain = [&] {
    PlainFixedStep(scheme.Tables(), view, scheme.start, Points, StepMs, plain.rows);
  };
  runPlain();
  FastFixed(scheme, Points);
  if (!SameRows(plain, Points)) state.SkipWithError("the two forms differ");
  CompareTimes(
      state, [&] { FastFixed(scheme, Points); }, runPlain);
}

void AdaptivePath(benchmark::State& state, const BenchScheme& scheme, BenchStimulus stimulus) {
  ClearRows(Points);
  SetStimulus(stimulus, Points);
  const StimulusView view = StoreStimulus();
  IntegratorOutput plain(Points);
  const auto runPlain = [&] {
    PlainAdaptive(scheme.Tables(), view, scheme.start, Points, Precision, plain.saved, plain.rows);
  };
  runPlain();
  const AdaptiveResult result = FastAdaptive(scheme, Points);
  const auto bytes = (static_cast<std::size_t>(result.saved) + 1) * sizeof(float);
  const bool same =
      SameRows(plain, Points) && std::memcmp(plain.saved.data(), Result.SavedTime.data(), bytes) == 0;
  if (!same || !result.finished) state.SkipWithError("the two forms differ");
  CompareTimes(
      state, [&] { FastAdaptive(scheme, Points); }, runPlain);
  state.counters["saved_steps"] = result.saved;
}

/// Runs 5,000,000 points. The plain form runs 10,240 of them and is scaled up, because its cost per point is
/// constant.
void LongRun(benchmark::State& state, const BenchScheme& scheme) {
  SetStimulus(BenchStimulus::Pulse, Points);  // later both profiles are 0
  const StimulusView view = StoreStimulus();
  IntegratorOutput plain(Points);
  CompareTimes(
      state, [&] { FastFixed(scheme, LongPoints); },
      [&] { PlainFixedStep(scheme.Tables(), view, scheme.start, Points, StepMs, plain.rows); },
      static_cast<double>(Points) / LongPoints);
#if defined(__linux__)
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  state.counters["peak_resident_MB"] = static_cast<double>(usage.ru_maxrss) / 1024.0;
#endif
}

/// Measures the cost of ten times the points.
void TenTimesThePoints(benchmark::State& state, const BenchScheme& scheme) {
  SetStimulus(BenchStimulus::Pulse, 10 * Points);
  std::vector<double> once;
  std::vector<double> tenfold;
  for (auto _ : state) {
    once.push_back(Seconds([&] { FastFixed(scheme, Points); }));
    tenfold.push_back(Seconds([&] { FastFixed(scheme, 10 * Points); }));
    state.SetIterationTime(tenfold.back());
  }
  state.counters["times_the_cost"] = Median(tenfold) / Median(once);
}

template <typename Work>
void Add(const std::string& name, Work work) {
  benchmark::RegisterBenchmark(name.c_str(), work)
      ->UseManualTime()
      ->Unit(benchmark::kMillisecond)
      ->MinTime(0.5);
}

}  // namespace

/// Adds benchmarks against CVODE if it is installed.
void AddCvodeBenchmarks(const BenchScheme& ampa, const BenchScheme& sodium);

}  // namespace zelvane

int main(int argc, char** argv) {
  using namespace zelvane;
  AllocateStores();
  ResetStores();
  AddAllPanels();
  const BenchScheme ampa = SchemeOfFile("config.mod");
  const BenchScheme sodium = SchemeOfFile("models/sodium_hodgkin_1952.mod");
  const BenchScheme table = FullTable();
  ResetStores();
  // The longest run first, so that the peak of resident memory is its own.
  Add("fixed/ampa/5000000_points", [&](benchmark::State& s) { LongRun(s, ampa); });
  Add("fixed/ampa", [&](benchmark::State& s) { FixedPath(s, ampa, BenchStimulus::Pulse); });
  Add("fixed/sodium", [&](benchmark::State& s) { FixedPath(s, sodium, BenchStimulus::VoltageStep); });
  Add("fixed/table_step", [&](benchmark::State& s) { FixedPath(s, table, BenchStimulus::VoltageStep); });
  Add("fixed/table_ramp", [&](benchmark::State& s) { FixedPath(s, table, BenchStimulus::VoltageRamp); });
  Add("adaptive/ampa", [&](benchmark::State& s) { AdaptivePath(s, ampa, BenchStimulus::Pulse); });
  Add("adaptive/sodium", [&](benchmark::State& s) { AdaptivePath(s, sodium, BenchStimulus::VoltageStep); });
  Add("adaptive/table_step",
      [&](benchmark::State& s) { AdaptivePath(s, table, BenchStimulus::VoltageStep); });
  Add("adaptive/table_ramp",
      [&](benchmark::State& s) { AdaptivePath(s, table, BenchStimulus::VoltageRamp); });
  Add("fixed/ampa/ten_times_the_points", [&](benchmark::State& s) { TenTimesThePoints(s, ampa); });
#if defined(ZELVANE_HAS_CVODE)
  AddCvodeBenchmarks(ampa, sodium);
#endif
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
