// The average of 1000 episodes of 5000 samples, aligned by the fit of their rise: the program against the plain loops,
// which go through all places of the sums and all candidates in full. Both read the same samples, once. Before it
// measures, the benchmark compares their sums.
#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include "analysis/averages.h"
#include "analysis/averages_store.h"
#include "analysis/plain_averages.h"
#include "app/stores.h"
#include "model/model_store.h"
#include "platform/index.h"
#include "trace/trace_store.h"

namespace zelvane {
namespace {

constexpr int Episodes = 1000;
constexpr int Samples = 5000;

/// Returns episodes with a response that begins at changing times, with a ripple.
std::vector<std::vector<float>> MakeEpisodes() {
  std::vector<std::vector<float>> episodes(Episodes, std::vector<float>(Samples));
  for (int e = 0; e < Episodes; ++e) {
    const int onset = 1000 + e * 37 % 23;
    for (int i = 0; i < Samples; ++i) {
      const double t = (i - onset) * 0.01;
      const double response = t > 0.0 ? -80.0 * (1.0 - std::exp(-t)) * std::exp(-t / 12.0) : 0.0;
      episodes[Index(e)][Index(i)] = static_cast<float>(response + std::sin(1.7 * i + e));
    }
  }
  return episodes;
}

const std::vector<std::vector<float>>& AllEpisodes() {
  static const auto episodes = MakeEpisodes();
  return episodes;
}

void Prepare() {
  ResetStores();
  Model.NumPoints = Samples;
  Model.ADInterval = 0.01F;
  Trace.TraceValid = 1;
  Averages.WaveBaselineStart = 0.0F;
  Averages.WaveBaselinePts = 800;
  Averages.WaveStartAnalysis = 9.0F;
  Averages.WavePeakSearchPts = 1500;
}

void TakeEpisode(const std::vector<float>& episode) {
  std::copy(episode.begin(), episode.end(), Trace.SimTrace.begin());
}

void AverageQuickly() {
  Prepare();
  for (const auto& episode : AllEpisodes()) {
    TakeEpisode(episode);
    WaveAddAverage();
  }
}

PlainSums AveragePlainly() {
  Prepare();
  PlainSums sums;
  int anchor = 0;
  for (int e = 0; e < Episodes; ++e) {
    TakeEpisode(AllEpisodes()[Index(e)]);
    WaveMeasure();
    const int range = Averages.WaveRisePoints * Averages.AlignRange;
    int point = Averages.SteepestPos;
    if (e == 0)
      anchor = point;
    else
      point = PlainAlign(Trace.SimTrace, Averages.WavePeak, sums, {point, 2 * range, anchor, range});
    PlainAdd(sums, Trace.SimTrace, Samples, std::int64_t{point} - anchor, 0.0F, Averages.WaveBaseline,
             Averages.WavePeak);
  }
  return sums;
}

void ExpectEqual() {
  const PlainSums plain = AveragePlainly();
  AverageQuickly();
  for (std::size_t k = 0; k < Samples + 10; ++k) {
    if (Averages.WaveSum[k] == plain.sum[k] && Averages.WaveCount[k] == plain.count[k] &&
        Averages.WaveNormSum[k] == plain.norm[k])
      continue;
    std::printf("the sums differ at place %zu\n", k);
    std::exit(1);
  }
}

void Program(benchmark::State& state) {
  for (auto _ : state) AverageQuickly();
}
void Plain(benchmark::State& state) {
  for (auto _ : state) benchmark::DoNotOptimize(AveragePlainly().sum.data());
}
BENCHMARK(Program)->Unit(benchmark::kMillisecond);
BENCHMARK(Plain)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace zelvane

int main(int argc, char** argv) {
  zelvane::AllocateStores();
  zelvane::ExpectEqual();
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
}
