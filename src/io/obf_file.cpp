#include "io/obf_file.h"

#include <algorithm>
#include <string_view>

#include "io/internal/little_endian.h"

namespace zelvane {
namespace {

constexpr std::string_view ObfMark = "OBF";

constexpr std::int64_t NumRunsAt = 32;
constexpr std::int64_t NumPointsAt = 48;
constexpr std::int64_t IntervalAt = 128;
constexpr std::int64_t SamplesAt = 2048;

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

std::size_t ReadObfSamples(std::istream& file, std::int64_t count, std::span<float> destination) {
  const auto bytesOf = [](std::int64_t samples) {
    return samples * static_cast<std::int64_t>(sizeof(float));
  };
  file.clear();
  file.seekg(0, std::ios::end);
  const std::int64_t held = (static_cast<std::int64_t>(file.tellg()) - SamplesAt) / bytesOf(1);
  const std::int64_t most = std::min(static_cast<std::int64_t>(destination.size()), held);
  const auto wanted = static_cast<std::size_t>(std::max(std::min(count, most), std::int64_t{0}));
  const std::size_t read =
      ReadAt(file, SamplesAt, destination.data(), wanted * sizeof(float)) / sizeof(float);
  FromLittleEndian(destination.first(read));
  return read;
}

}  // namespace zelvane
