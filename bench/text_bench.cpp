// Reading text recordings of 1,000,000 lines: the program's reader compared with fgets and sscanf line by
// line. The files stay for text_loadtxt.py. Both read the same file from the page cache, and before the clock
// starts their samples are compared bit for bit.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <vector>

#include "formats/text_recording.h"

namespace {

using namespace zelvane;

constexpr int Lines = 1'000'000;
constexpr std::size_t LineBytes = 10'000;

std::string PathOf(int columns) {
  const std::string name = std::string("zelvane_text_").append(std::to_string(columns)).append(".atf");
  return (std::filesystem::temp_directory_path() / name).string();
}

/// Makes an ATF with a column of times and `columns` - 1 columns of samples. With one column it has only
/// samples and no header.
std::string MakeFile(int columns) {
  std::string path = PathOf(columns);
  std::FILE* file = std::fopen(path.c_str(), "w");
  if (file == nullptr) std::abort();
  std::mt19937 random(1);
  std::normal_distribution<double> current(-50.0, 20.0);
  if (columns > 1) std::fprintf(file, "ATF\t1.0\n0\t%d\n\"Time (s)\"\t\"Trace #1 (pA)\"\n", columns);
  for (int line = 0; line < Lines; ++line) {
    if (columns > 1) std::fprintf(file, "%.6g\t", 2e-5 * line);
    for (int c = 1; c < columns; ++c)
      std::fprintf(file, "%.6g%c", current(random), c + 1 < columns ? '\t' : '\n');
    if (columns == 1) std::fprintf(file, "%.6e\n", current(random));
  }
  std::fclose(file);
  return path;
}

std::vector<float> ReadFast(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  TextRecording recording(file);
  TextRequest request;
  request.most = 5'000'000;
  return recording.Read(request).samples;
}

/// Reads line by line: scans all numbers of the line and keeps the first sample.
std::vector<float> ReadPlain(const std::string& path, int columns) {
  std::vector<float> samples;
  std::FILE* file = std::fopen(path.c_str(), "r");
  if (file == nullptr) std::abort();
  std::vector<char> line(LineBytes);
  for (int k = 0; columns > 1 && k < 3; ++k) static_cast<void>(!std::fgets(line.data(), LineBytes, file));
  while (std::fgets(line.data(), LineBytes, file) != nullptr) {
    const char* at = line.data();
    for (int c = 0; c < columns; ++c) {
      float value = 0.0F;
      int taken = 0;
      if (std::sscanf(at, "%g%n", &value, &taken) != 1) break;
      at += taken;
      if (c == (columns > 1 ? 1 : 0)) samples.push_back(value);
    }
  }
  std::fclose(file);
  return samples;
}

void Program(benchmark::State& state) {
  const int columns = static_cast<int>(state.range(0));
  const std::string path = MakeFile(columns);
  if (ReadFast(path) != ReadPlain(path, columns)) state.SkipWithError("the readers differ");
  for (auto _ : state) benchmark::DoNotOptimize(ReadFast(path).data());
  state.SetItemsProcessed(state.iterations() * Lines);
}

void FgetsSscanf(benchmark::State& state) {
  const int columns = static_cast<int>(state.range(0));
  const std::string path = MakeFile(columns);
  for (auto _ : state) benchmark::DoNotOptimize(ReadPlain(path, columns).data());
  state.SetItemsProcessed(state.iterations() * Lines);
}

BENCHMARK(Program)->Arg(1)->Arg(2)->Arg(7)->Unit(benchmark::kMillisecond);
BENCHMARK(FgetsSscanf)->Arg(1)->Arg(2)->Arg(7)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
