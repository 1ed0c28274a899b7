// Measures every sweep of an ABF file: `zelvane-cli measure` in this process, from the file to the rows. The
// cost must be proportional to the number of sweeps.
#include <benchmark/benchmark.h>

#include <cmath>
#include <filesystem>
#include <sstream>
#include <vector>

#include "formats/abf/abf.h"
#include "headless/commands/measure_command.h"
#include "screen/popups.h"

namespace zelvane {
namespace {

constexpr int SweepSamples = 5000;

/// Returns a file of alpha-shaped currents with a little ripple, 0.01 ms per sample. Makes it once.
std::string RecordingOf(int sweeps) {
  const auto path = std::filesystem::temp_directory_path() / FormatText("zelvane-measure-%d.abf", sweeps);
  AbfHeader header;
  InitializeHeader(header);
  header.operationMode = 5;
  header.sampleInterval = 10.0;
  header.episodes = sweeps;
  header.samplesPerEpisode = SweepSamples;
  AbfWriteHandle writer = OldABF_OpenWrite(path.string(), header);
  std::vector<float> samples(SweepSamples);
  for (int s = 0; s < sweeps; ++s) {
    for (int i = 0; i < SweepSamples; ++i) {
      const double t = (i - 1000) * 0.01;
      const double response = t > 0.0 ? -50.0 * t * std::exp(1.0 - t) : 0.0;
      samples[static_cast<std::size_t>(i)] = static_cast<float>(response + std::sin(i * 1.7 + s));
    }
    OldABF_WriteRawSweep(*writer, samples);
  }
  OldABF_UpdateHeader(*writer, header);
  OldABF_Close(writer);
  return path.string();
}

void MeasureFile(benchmark::State& state, const std::vector<std::string>& fit) {
  const int sweeps = static_cast<int>(state.range(0));
  MeasureOptions options;
  options.settings = fit;
  for (const char* setting : {"BaselineStart=1", "BaselinePts=800", "StartAnalysis=9", "PeakSearchPts=3000"})
    options.settings.emplace_back(setting);
  options.outFile = RecordingOf(sweeps) + ".csv";
  options.file = RecordingOf(sweeps);
  for (auto _ : state) {
    std::ostringstream out;
    std::ostringstream err;
    if (MeasureCommand(options, {out, err}) != JobDone) state.SkipWithError(err.str().c_str());
  }
  state.SetItemsProcessed(state.iterations() * sweeps);
  std::filesystem::remove(options.file);
  std::filesystem::remove(options.outFile);
}

void Measure(benchmark::State& state) {
  MeasureFile(state, {"FitMode=0"});
}
BENCHMARK(Measure)->Arg(1)->Arg(100)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);

/// Does the same with a fit of two exponentials to every sweep.
void MeasureWithFit(benchmark::State& state) {
  MeasureFile(state, {"FitMode=2", "AnalysisNumRestarts=0", "AnalysisParse=18"});
}
BENCHMARK(MeasureWithFit)->Arg(1)->Arg(100)->Arg(1000)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace zelvane

BENCHMARK_MAIN();
