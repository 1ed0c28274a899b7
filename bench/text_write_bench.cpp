// Five million samples as text: the program's writer compared with one fprintf per sample. Before the clock
// starts the two files are compared byte for byte.
#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include "trace/trace_export.h"

namespace zelvane {
namespace {

constexpr std::size_t Samples = 5'000'000;
constexpr float IntervalMs = 0.01F;

const std::vector<float>& Trace() {
  static const std::vector<float> trace = [] {
    std::mt19937 random(3);
    std::normal_distribution<float> noise(0.0F, 2.0F);
    std::vector<float> samples(Samples);
    for (std::size_t i = 0; i < samples.size(); ++i)
      samples[i] = -40.0F * std::exp(-static_cast<float>(i) * 1e-6F) + noise(random);
    return samples;
  }();
  return trace;
}

std::string File(const char* name) {
  return (std::filesystem::temp_directory_path() / name).string();
}

void WritePlainly(const std::string& path) {
  std::FILE* file = std::fopen(path.c_str(), "w");
  if (file == nullptr) return;
  std::fprintf(file, "%.6e\n", 0.01);
  for (const float sample : Trace()) std::fprintf(file, "%.6e\n", static_cast<double>(sample));
  std::fclose(file);
}

void WriteFast(const std::string& path) {
  WriteTraceFile(path, Trace(), IntervalMs, "Current pA");
}

std::string Content(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

void SingleColumn(benchmark::State& state, void (*write)(const std::string&)) {
  const std::string plain = File("zelvane-plain.txt");
  const std::string path = File("zelvane-fast.txt");
  WritePlainly(plain);
  WriteFast(path);
  if (Content(plain) != Content(path)) state.SkipWithError("the two forms differ");
  for (auto _ : state) write(path);
  std::filesystem::remove(plain);
  std::filesystem::remove(path);
}
BENCHMARK_CAPTURE(SingleColumn, program, WriteFast)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(SingleColumn, fprintf_a_sample, WritePlainly)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace zelvane

BENCHMARK_MAIN();
