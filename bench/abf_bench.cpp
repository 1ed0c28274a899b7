// Reading recordings from the page cache, compared with one read per sample. Both run in one program, so that
// other work of the machine slows both equally.
//
// Time is the processor time of the program's own reader. The counters are the time of the plain form for the
// same work (plain_ms) and how many times faster the program is (times_faster). The samples of both are
// compared before the clock starts. The recordings stay in the folder that is named at the end, so that
// read_abf.py can read them with other programs.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

#include "app/stores.h"
#include "formats/abf/abf.h"
#include "formats/abf/byte_source.h"
#include "trace/trace_read.h"
#include "trace/trace_store.h"

namespace zelvane {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t Samples = 5'000'000;
constexpr std::size_t SamplesPerEpisode = 5000;
constexpr long DataBlockField = 40;  // header field: the block of 512 bytes at which the samples begin
constexpr long BlockBytes = 512;
constexpr int PlainRuns = 5;

std::string Folder() {
  const fs::path folder = fs::temp_directory_path() / "zelvane-abf-bench";
  fs::create_directories(folder);
  return folder.string() + "/";
}

std::vector<float> Noise(std::size_t count) {
  std::vector<float> samples(count);
  unsigned state = 1;
  for (float& sample : samples) {
    state = state * 1664525U + 1013904223U;
    sample = static_cast<float>(state >> 16U) - 32768.0F;  // a count, so that both formats can hold it
  }
  return samples;
}

void WriteFloats(const std::string& path, const std::vector<std::vector<float>>& sweeps) {
  AbfHeader header;
  InitializeHeader(header);
  header.sampleInterval = 10.0;
  header.operationMode = sweeps.size() > 1 ? 5 : 3;
  AbfWriteHandle writer = OldABF_OpenWrite(path, header);
  for (const auto& sweep : sweeps) OldABF_WriteRawSweep(*writer, sweep);
  OldABF_Close(writer);
}

void WriteIntegers(const std::string& path, const std::vector<float>& samples) {
  AbfHeader header;
  InitializeHeader(header);
  header.sampleInterval = 10.0;
  header.acquisitionLength = static_cast<std::int64_t>(samples.size());
  header.samplesPerEpisode = static_cast<int>(samples.size());
  auto bytes = AbfHeaderBytes(header);
  WriteLittleEndian(bytes.data() + 100, static_cast<std::int16_t>(AbfIntegers));
  std::ofstream file(path, std::ios::binary);
  file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
  std::vector<std::byte> counts(samples.size() * 2);
  for (std::size_t k = 0; k < samples.size(); ++k)
    WriteLittleEndian(counts.data() + 2 * k, static_cast<std::int16_t>(samples[k]));
  file.write(reinterpret_cast<const char*>(counts.data()), static_cast<std::streamsize>(counts.size()));
}

/// Returns the processor time of `work`: other programs on the machine would lengthen a long wall time more
/// than a short one.
double Seconds(const std::function<void()>& work) {
  const std::clock_t start = std::clock();
  work();
  return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

double Median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

/// Opens the file and reads one sweep of its only channel.
void ReadOne(const std::string& path, int sweep, std::vector<float>& samples) {
  AbfHeader header;
  int longest = 0;
  int sweeps = 0;
  const AbfHandle file = OpenABFFile(path, header, longest, sweeps);
  if (file != nullptr) benchmark::DoNotOptimize(ReadSweep(*file, 0, sweep, 0, samples));
}

/// The plain form: makes one buffered read for each sample.
template <class Sample>
void ReadSampleBySample(const std::string& path, std::vector<float>& samples) {
  std::FILE* file = std::fopen(path.c_str(), "rb");
  if (file == nullptr) return;
  std::int32_t dataBlock = 0;
  std::fseek(file, DataBlockField, SEEK_SET);
  if (std::fread(&dataBlock, sizeof dataBlock, 1, file) != 1) dataBlock = 0;
  std::fseek(file, dataBlock * BlockBytes, SEEK_SET);
  Sample sample = 0;
  for (float& value : samples) {
    if (std::fread(&sample, sizeof sample, 1, file) != 1) break;
    value = static_cast<float>(sample);  // the scale of these files is 1
  }
  std::fclose(file);
}

template <class Sample>
void WholeFile(benchmark::State& state, const std::string& name) {
  const std::string path = Folder() + name;
  const std::vector<float> noise = Noise(Samples);
  if constexpr (sizeof(Sample) == 4) {
    WriteFloats(path, {noise});
  } else {
    WriteIntegers(path, noise);
  }
  std::vector<float> samples(Samples);
  std::vector<float> plainSamples(Samples);
  ReadOne(path, 1, samples);
  std::vector<double> plain;
  for (int run = 0; run < PlainRuns; ++run)
    plain.push_back(Seconds([&] { ReadSampleBySample<Sample>(path, plainSamples); }));
  if (samples != noise || plainSamples != noise) {
    state.SkipWithError("the samples read are others");
    return;
  }
  std::vector<double> fast;
  for (auto _ : state) {
    fast.push_back(Seconds([&] { ReadOne(path, 1, samples); }));
    state.SetIterationTime(fast.back());
  }
  state.counters["plain_ms"] = 1e3 * Median(plain);
  state.counters["times_faster"] = Median(plain) / Median(fast);
}

void Integers(benchmark::State& state) {
  WholeFile<std::int16_t>(state, "integers.abf");
}
BENCHMARK(Integers)->UseManualTime()->Unit(benchmark::kMillisecond);

void Floats(benchmark::State& state) {
  WholeFile<float>(state, "floats.abf");
}
BENCHMARK(Floats)->UseManualTime()->Unit(benchmark::kMillisecond);

/// Reads all episodes one after the other and opens the file for each, as the program does. The time per
/// episode should not depend on their number.
void Episodes(benchmark::State& state) {
  const std::string path = Folder() + "episodes.abf";
  WriteFloats(path, std::vector(static_cast<std::size_t>(state.range(0)), Noise(SamplesPerEpisode)));
  std::vector<float> samples(SamplesPerEpisode);
  for (auto _ : state)
    for (int sweep = 1; sweep <= state.range(0); ++sweep) ReadOne(path, sweep, samples);
  state.counters["per_episode"] =
      benchmark::Counter(static_cast<double>(state.range(0)),
                         benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}
BENCHMARK(Episodes)->Arg(10)->Arg(100)->Arg(1000)->Unit(benchmark::kMillisecond);

/// Does the same with the command that steps to the next episode, into the program's one trace.
void SteppedEpisodes(benchmark::State& state) {
  AllocateStores();
  Trace.TraceFileName = Folder() + "stepped.abf";
  WriteFloats(Trace.TraceFileName,
              std::vector(static_cast<std::size_t>(state.range(0)), Noise(SamplesPerEpisode)));
  TraceRead(Trace.TraceFileName);
  if (Trace.EpisodeCount != state.range(0)) state.SkipWithError("the recording was not read");
  for (auto _ : state)
    for (int step = 0; step < state.range(0); ++step) StepEpisode(1);
  state.counters["per_episode"] =
      benchmark::Counter(static_cast<double>(state.range(0)),
                         benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}
BENCHMARK(SteppedEpisodes)->Arg(10)->Arg(100)->Arg(1000)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace zelvane

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  std::printf("Recordings: %s\n", zelvane::Folder().c_str());
  return 0;
}
