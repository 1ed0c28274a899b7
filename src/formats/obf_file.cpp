#include "formats/obf_file.h"

#include <algorithm>
#include <string_view>

#include "formats/little_endian.h"
#include "platform/index.h"

namespace zelvane {
namespace {

constexpr std::string_view ObfMark = "OBF";

constexpr std::int64_t NumRunsAt = 32;
constexpr std::int64_t NumPointsAt = 48;
constexpr std::int64_t IntervalAt = 128;
constexpr std::int64_t SamplesAt = 2048;
constexpr std::int64_t SampleBytes = 4;

}  // namespace

ObfHeader ReadObfHeader(std::istream& file) {
  ObfHeader header;
  char mark[ObfMark.size()];
  header.marked =
      ReadAt(file, 0, mark, sizeof mark) == sizeof mark && std::string_view(mark, sizeof mark) == ObfMark;
  header.numRuns = Int32At(file, NumRunsAt);
  header.numPoints = Int32At(file, NumPointsAt);
  header.intervalMs = FloatAt(file, IntervalAt);
  return header;
}

std::int64_t ObfSamplesHeld(std::istream& file) {
  file.clear();
  file.seekg(0, std::ios::end);
  const std::int64_t bytes = static_cast<std::int64_t>(file.tellg()) - SamplesAt;
  return std::max<std::int64_t>(bytes / SampleBytes, 0);
}

std::size_t ReadObfSamples(std::istream& file, std::int64_t first, std::int64_t count,
                           std::span<float> destination) {
  const std::int64_t held = ObfSamplesHeld(file) - first;
  const std::int64_t most = std::min(static_cast<std::int64_t>(destination.size()), held);
  if (first < 0 || std::min(count, most) < 1) return 0;
  const auto wanted = Index(std::min(count, most));
  const std::size_t read =
      ReadAt(file, SamplesAt + first * SampleBytes, destination.data(), wanted * sizeof(float)) /
      sizeof(float);
  FromLittleEndian(destination.first(read));
  return read;
}

}  // namespace zelvane
