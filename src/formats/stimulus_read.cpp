#include "formats/stimulus_read.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <vector>

#include "formats/input_file.h"
#include "formats/line_scanner.h"

namespace zelvane {
namespace {

static_assert(std::endian::native == std::endian::little, "stimulus files hold numbers as memory does");

constexpr std::size_t BlockSamples = std::size_t{64} * 1024;
constexpr std::size_t LongestLine = 300;  // bytes

bool SameBits(float a, float b) {
  return std::bit_cast<std::uint32_t>(a) == std::bit_cast<std::uint32_t>(b);
}

/// Puts floats from a file behind one another into `profile`, writing only where something else stands.
void Take(std::span<const float> samples, std::span<float> profile) {
  for (std::size_t i = 0; i < samples.size(); ++i) {
    if (!SameBits(profile[i], samples[i])) profile[i] = samples[i];
  }
}

/// Reads up to `count` samples of one profile; those beyond the span are passed over.
int ReadProfile(std::ifstream& file, int count, std::span<float> profile, std::span<float> block) {
  int done = 0;
  while (done < count && file) {
    const auto wanted = std::min(block.size(), static_cast<std::size_t>(count - done));
    file.read(reinterpret_cast<char*>(block.data()), static_cast<std::streamsize>(wanted * sizeof(float)));
    const auto come = static_cast<std::size_t>(file.gcount()) / sizeof(float);
    const auto at = std::min(static_cast<std::size_t>(done), profile.size());
    Take(block.first(std::min(come, profile.size() - at)), profile.subspan(at));
    done += static_cast<int>(come);
  }
  return done;
}

}  // namespace

std::optional<StimFileHead> StimFileHeadOf(const std::string& path) {
  auto file = OpenInput(path);
  if (!file) return std::nullopt;
  std::array<char, StimFileHeadBytes> bytes{};
  file->read(bytes.data(), bytes.size());
  if (file->gcount() != static_cast<std::streamsize>(StimFileHeadBytes)) return std::nullopt;
  StimFileHead head;
  std::int32_t samples = 0;
  std::memcpy(&head.intervalMs, bytes.data(), sizeof(float));
  std::memcpy(&samples, bytes.data() + sizeof(float), sizeof(samples));
  if (std::isnan(head.intervalMs) || samples < 1) return std::nullopt;
  head.samples = samples;
  std::error_code error;
  const std::uintmax_t length = std::filesystem::file_size(path, error);
  const std::uintmax_t before =
      StimFileHeadBytes + (StimFileProfiles - 1) * sizeof(float) * std::uintmax_t(samples);
  if (!error && length > before) {
    head.samplesHeld = static_cast<int>(
        std::min<std::uintmax_t>((length - before) / sizeof(float), std::uintmax_t(samples)));
  }
  return head;
}

int ReadStimProfiles(const std::string& path, const StimFileHead& head, const StimProfileSpans& profiles) {
  auto file = OpenInput(path);
  if (!file) return 0;
  file->seekg(StimFileHeadBytes);
  std::error_code error;
  const auto held = static_cast<std::size_t>(std::filesystem::file_size(path, error)) / sizeof(float);
  std::vector<float> block(
      std::max(std::size_t{1}, std::min({BlockSamples, static_cast<std::size_t>(head.samples), held})));
  int last = 0;
  for (const std::span<float> profile : profiles) last = ReadProfile(*file, head.samples, profile, block);
  return last;
}

std::optional<StimColumn> ReadStimColumn(const std::string& path, std::span<float> profile) {
  auto file = OpenInput(path);
  if (!file) return std::nullopt;
  LineReader lines(std::move(*file), LongestLine);
  StimColumn column;
  if (auto line = lines.Next()) {
    float interval = 0.0F;
    if (ScanNumber(*line, interval) == Scan::Taken) column.intervalMs = interval;
  }
  const auto room = std::min(profile.size(), static_cast<std::size_t>(MaxStimColumn));
  float value = 0.0F;
  std::size_t count = 0;
  while (count < room) {
    auto line = lines.Next();
    if (!line) break;
    static_cast<void>(ScanNumber(*line, value));
    profile[count++] = value;
  }
  column.samples = static_cast<int>(count);
  return column;
}

}  // namespace zelvane
