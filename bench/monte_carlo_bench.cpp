// The Monte Carlo simulator compared with its plain form. Both run in one program, so that other work of the
// machine slows both equally.
//
// Each line is one workload. Time is the processor time of the program's own form; the counters are the plain
// form's time for the same work (plain_ms), how many times faster the program is (times_faster), and how many
// dwells the channels had. Before the clock starts occupancies, lists, record and counts are compared bit for
// bit.
#include <benchmark/benchmark.h>

#include <cstring>
#include <functional>
#include <string>

#include "app/application.h"
#include "app/stores.h"
#include "bench_models.h"
#include "bench_times.h"
#include "kinetics/plain_monte_carlo.h"
#include "model/model.h"
#include "model/model_file.h"
#include "run/monte_carlo_loop.h"
#include "run/result_store.h"
#include "run/run.h"
#include "stimulus/stimulus_store.h"
#include "trace/program_random.h"

namespace zelvane {
namespace {

constexpr int Channels = 10000;
constexpr int Points = 10240;
constexpr std::array<double, 3> Seeds{1234.0, 5678.0, 9012.0};

/// Loads a model file into the stores for both forms.
void Load(const char* file, BenchStimulus stimulus, int channels, int points, float intervalMs) {
  ResetStores();
  const BenchScheme scheme = SchemeOfFile(file);
  SetStimulus(stimulus, points);
  Model.SimulatorKind = MonteCarlo;
  Model.MultiSubunit = Model.ReseedSimulation = Model.NumIntervals = 0;
  Model.NumRuns = 1;
  Model.NumChannels = channels;
  Model.NumPoints = points;
  Model.ADInterval = intervalMs;
  for (std::size_t s = 1; s <= MaxStates; ++s) Model.StartOccupancy[s] = scheme.start[s];
}

void Fast() {
  SetSeeds(ProgramRandom, Seeds);
  RunSimulation(Model.NumPoints, RunStart::AsSet);  // silent: the simulation alone
}

bool SameBytes(const float* a, const float* b, double count) {
  return std::memcmp(a, b, static_cast<std::size_t>(count) * sizeof(float)) == 0;
}

bool Same(const PlainMonteCarlo& plain) {
  bool same = plain.exits == Dwell.OpenStateExits && plain.monitored == Dwell.MonitoredChannels &&
              plain.lists.NumIdealEvents == Dwell.NumIdealEvents &&
              plain.lists.NumOpenTimes == Dwell.NumOpenTimes &&
              plain.lists.NumLatencies == Dwell.NumLatencies;
  for (std::size_t s = 1; s <= MaxStates; ++s) {
    same = same && SameBytes(plain.occupancy[s].data(), Result.Occupancy[s].data(), Model.NumPoints + 1);
  }
  const double events = std::min(Dwell.NumIdealEvents, MaxIdealEvents);
  return same && SameBytes(plain.lists.IdealDuration.data(), Dwell.IdealDuration.data(), events) &&
         SameBytes(plain.lists.IdealClass.data(), Dwell.IdealClass.data(), events) &&
         SameBytes(plain.lists.OpenTimes.data(), Dwell.OpenTimes.data(), Dwell.NumOpenTimes) &&
         SameBytes(plain.lists.ClosedTimes.data(), Dwell.ClosedTimes.data(), Dwell.NumClosedTimes) &&
         SameBytes(plain.lists.Latencies.data(), Dwell.Latencies.data(), Dwell.NumLatencies);
}

void Compare(benchmark::State& state) {
  Fast();
  PlainMonteCarlo checked(Seeds);
  checked.Run();
  if (!Same(checked)) state.SkipWithError("the two forms differ");
  CompareTimes(state, Fast, [] {
    static PlainMonteCarlo plain(Seeds);
    plain.Run();
  });
}

/// Measures the cost of a dwell over ten times the points: the same rates, a tenth of the interval.
void TenTimesThePoints(benchmark::State& state) {
  std::vector<double> once;
  std::vector<double> tenfold;
  for (auto _ : state) {
    Load("models/ampa_jonas_1993.mod", BenchStimulus::Pulse, Channels, Points, 0.01F);
    SetStimulus(BenchStimulus::VoltageStep, Points);  // no drug
    for (std::size_t s = 1; s <= MaxStates; ++s) Model.StartOccupancy[s] = s == 4 ? 1.0F : 0.0F;
    once.push_back(Seconds(Fast));
    Model.NumPoints = 10 * Points;
    Model.ADInterval = 0.001F;
    SetStimulus(BenchStimulus::VoltageStep, 10 * Points);
    tenfold.push_back(Seconds(Fast));
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
}  // namespace zelvane

int main(int argc, char** argv) {
  using namespace zelvane;
  AllocateStores();
  ResetStores();
  AddAllPanels();
  Add("channels/ampa_pulse", [](benchmark::State& s) {
    Load("models/ampa_jonas_1993.mod", BenchStimulus::Pulse, Channels, Points, 0.01F);
    Compare(s);
  });
  Add("channels/sodium_ramp", [](benchmark::State& s) {
    Load("models/sodium_hodgkin_1952.mod", BenchStimulus::VoltageRamp, 200, Points, 0.01F);
    Compare(s);
  });
  Add("channels/one_channel_1000000_points", [](benchmark::State& s) {
    Load("models/ampa_jonas_1993.mod", BenchStimulus::Pulse, 1, 1'000'000, 0.01F);
    Compare(s);
  });
  Add("channels/ampa/ten_times_the_points", TenTimesThePoints);
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
