#include "formats/stimulus_read.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstring>

#include "formats/input_file.h"
#include "formats/line_scanner.h"
#include "formats/little_endian.h"
#include "platform/index.h"

namespace zelvane {
namespace {

static_assert(std::endian::native == std::endian::little, "stimulus files hold numbers as memory does");

constexpr std::int64_t SampleBytes = 4;
constexpr std::size_t LongestLine = 300;  // bytes

/// Returns the byte at which a profile begins.
std::int64_t SampleBegin(std::size_t profile, int samples) {
  return static_cast<std::int64_t>(StimFileHeadBytes) +
         static_cast<std::int64_t>(profile) * samples * SampleBytes;
}

}  // namespace

std::optional<StimFileHead> ReadStimHead(std::istream& file) {
  char bytes[StimFileHeadBytes];
  if (ReadAt(file, 0, bytes, sizeof bytes) != sizeof bytes) return std::nullopt;
  StimFileHead head;
  std::int32_t samples = 0;
  std::memcpy(&head.intervalMs, bytes, sizeof(float));
  std::memcpy(&samples, bytes + sizeof(float), sizeof(samples));
  if (std::isnan(head.intervalMs) || samples < 1) return std::nullopt;
  head.samples = samples;
  file.clear();
  file.seekg(0, std::ios::end);
  const std::int64_t before = SampleBegin(StimFileProfiles - 1, samples);
  const std::int64_t held = (static_cast<std::int64_t>(file.tellg()) - before) / SampleBytes;
  head.samplesHeld = static_cast<int>(std::clamp<std::int64_t>(held, 0, samples));
  return head;
}

std::size_t ReadStimSamples(std::istream& file, const StimFileHead& head, int profile, std::int64_t first,
                            std::span<float> samples) {
  if (first < 0 || first >= head.samples) return 0;
  const std::size_t most = std::min(samples.size(), Index(head.samples - first));
  const std::int64_t begin = SampleBegin(Index(profile), head.samples) + first * SampleBytes;
  return ReadAt(file, begin, samples.data(), most * sizeof(float)) / sizeof(float);
}

std::optional<StimColumn> ReadStimColumn(const std::string& path, std::size_t most) {
  auto file = OpenInput(path);
  if (!file) return std::nullopt;
  LineReader lines(std::move(*file), LongestLine);
  StimColumn column;
  if (auto line = lines.Next()) {
    float interval = 0.0F;
    if (ScanNumber(*line, interval) == Scan::Taken) column.intervalMs = interval;
  }
  float value = 0.0F;
  while (column.samples.size() < most) {
    auto line = lines.Next();
    if (!line) break;
    static_cast<void>(ScanNumber(*line, value));
    column.samples.push_back(value);
  }
  column.more = column.samples.size() == most && lines.Next();
  column.fault = lines.Fault();
  return column;
}

}  // namespace zelvane
