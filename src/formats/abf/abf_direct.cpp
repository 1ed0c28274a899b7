#include "formats/abf/abf_direct.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "formats/input_file.h"
#include "formats/little_endian.h"

namespace zelvane {
namespace {

constexpr int MaxChannels = 16;
constexpr int BlockBytes = 512;
constexpr int ReadBytes = 256 * 1024;
constexpr int LongHeader = 8;             // from this data block on a header has telegraph fields
constexpr double TelegraphVersion = 1.6;  // later versions use the gain of a telegraph
constexpr double VersionMargin = 0.005;   // versions are 32-bit floats of hundredths

/// Returns a number, or `insteadOf0` for 0.
template <typename T>
T Unless0(T value, T insteadOf0) {
  return value == T{} ? insteadOf0 : value;
}

void ReadGains(std::istream& file, DirectHeader& header) {
  const std::int64_t row = 4 * header.channel;
  header.autoSample = Int16At(file, 262).value_or(0) == 1;
  if (header.autoSample) header.gainMultiplier = Unless0(FloatAt(file, 268).value_or(1.0F), 1.0F);
  header.programmable = FloatAt(file, 730 + row).value_or(1.0F);
  header.instrument = FloatAt(file, 922 + row).value_or(1.0F);
  header.signal = FloatAt(file, 1050 + row).value_or(1.0F);
  header.telegraph = header.gainMultiplier;
  if (header.dataBlock >= LongHeader && Int16At(file, 4512).value_or(0) == 1) {
    header.telegraph = FloatAt(file, 4576 + row).value_or(1.0F);
  }
}

void ReadUnits(std::istream& file, DirectHeader& header) {
  char units[8];
  const std::size_t read = ReadAt(file, 602 + 8 * header.channel, units, sizeof units);
  header.units.assign(units, std::find(units, units + read, '\0'));
  header.units.erase(header.units.find_last_not_of(' ') + 1);
}

std::int64_t LengthOf(std::istream& file) {
  file.clear();
  file.seekg(0, std::ios::end);
  return static_cast<std::int64_t>(file.tellg());
}

/// Returns the samples that are really in the file.
int SamplesHeld(std::istream& file, const DirectHeader& header) {
  const std::int64_t begin = static_cast<std::int64_t>(header.dataBlock) * BlockBytes;
  const std::int64_t held = (LengthOf(file) - begin) / (header.floats ? 4 : 2);
  return static_cast<int>(std::clamp<std::int64_t>(held, 0, std::numeric_limits<int>::max()));
}

/// Returns the header of an ABF 1.x file, read field by field. Returns nullopt for another file.
std::optional<DirectHeader> ReadHeader(std::istream& file) {
  DirectHeader header;
  header.version = FloatAt(file, 4).value_or(0.0F);
  if (!(header.version >= 1.0F && header.version < 2.0F)) return std::nullopt;
  header.mode = Int16At(file, 8).value_or(0);
  header.samples = Int32At(file, 10).value_or(0);
  header.episodes = std::max(Int32At(file, 16).value_or(1), 1);
  header.dataBlock = Unless0(Int32At(file, 40).value_or(0), 4);
  const int type = Int16At(file, 100).value_or(0);
  header.floats = type == 1;
  header.channels = Unless0<int>(Int16At(file, 120).value_or(0), 1);
  header.intervalUs = FloatAt(file, 122).value_or(0.0F);
  header.range = Unless0(FloatAt(file, 244).value_or(0.0F), 10.24F);
  header.resolution = Int32At(file, 252).value_or(0);
  if (header.resolution < 1) header.resolution = 2048;
  header.channel = Int16At(file, 410).value_or(0);
  const bool sound = header.dataBlock > 0 && (type == 0 || type == 1) && header.channels >= 1 &&
                     header.channels <= MaxChannels && header.channel >= 0 && header.channel < MaxChannels &&
                     std::isfinite(header.range);
  if (!sound) return std::nullopt;
  header.samples = std::min(header.samples, SamplesHeld(file, header));
  ReadGains(file, header);
  ReadUnits(file, header);
  return header;
}

/// The places of the samples to read: sample i is at byte `begin` + i x `step`.
struct Layout {
  std::int64_t begin = 0;
  std::int64_t step = 0;
  std::int64_t count = 0;
  bool floats = false;
  float divisor = 1.0F;  // divisor of counts
};

Layout LayoutOf(const DirectHeader& header, float gain, const DirectPart& part) {
  Layout layout;
  const std::int64_t frame = static_cast<std::int64_t>(header.floats ? 4 : 2) * header.channels;
  layout.begin = static_cast<std::int64_t>(header.dataBlock) * BlockBytes + part.start * frame;
  layout.step = frame * part.skip;
  layout.count = part.count;
  layout.floats = header.floats;
  layout.divisor = gain * static_cast<float>(header.resolution) / header.range;
  return layout;
}

float ValueAt(const unsigned char* bytes, const Layout& layout) {
  if (layout.floats) return std::bit_cast<float>(LittleEndian32(bytes));
  return static_cast<float>(static_cast<std::int16_t>(LittleEndian16(bytes))) / layout.divisor;
}

/// Reads the samples in the file and returns their number.
std::size_t ReadSamples(std::istream& file, const Layout& layout, std::span<float> destination) {
  const std::int64_t width = layout.floats ? 4 : 2;
  const std::int64_t length = LengthOf(file) - layout.begin;
  if (length < width) return 0;
  const std::int64_t held = (length - width) / layout.step + 1;
  const std::int64_t wanted = std::min({layout.count, held, static_cast<std::int64_t>(destination.size())});
  const std::int64_t perRead = std::max(ReadBytes / layout.step, std::int64_t{1});
  std::vector<unsigned char> block(static_cast<std::size_t>(std::min(perRead * layout.step, length + 1)));
  std::int64_t kept = 0;
  while (kept < wanted) {
    const std::int64_t now = std::min(perRead, wanted - kept);
    const auto bytes = static_cast<std::size_t>((now - 1) * layout.step + width);
    if (ReadAt(file, layout.begin + kept * layout.step, block.data(), bytes) != bytes) break;
    for (std::int64_t i = 0; i < now; ++i) {
      destination[static_cast<std::size_t>(kept++)] = ValueAt(block.data() + i * layout.step, layout);
    }
  }
  return static_cast<std::size_t>(kept);
}

bool HasMark(std::istream& file) {
  char mark[3];
  const std::string_view begin(mark, ReadAt(file, 0, mark, sizeof mark));
  return begin == "ABF" || begin == "OBF";
}

}  // namespace

DirectAbf OpenDirectAbf(const std::string& path) {
  DirectAbf abf;
  auto file = OpenInput(path);
  if (!file) {
    abf.refusal = DirectRefusal::Missing;
    return abf;
  }
  abf.file = std::move(*file);
  if (!HasMark(abf.file)) {
    abf.refusal = DirectRefusal::WrongMark;
  } else if (const auto header = ReadHeader(abf.file)) {
    abf.header = *header;
  } else {
    abf.refusal = DirectRefusal::NoHeader;
  }
  return abf;
}

float DirectGain(const DirectHeader& header) {
  const bool telegraphs = header.dataBlock >= LongHeader &&
                          static_cast<double>(header.version) > TelegraphVersion + VersionMargin;
  const float gain = telegraphs
                         ? header.telegraph * header.programmable * header.instrument * header.signal
                         : header.programmable * header.instrument * header.signal * header.gainMultiplier;
  return std::isfinite(gain) ? gain : 0.0F;
}

std::size_t ReadDirectSamples(DirectAbf& abf, float gain, const DirectPart& part,
                              std::span<float> destination) {
  return ReadSamples(abf.file, LayoutOf(abf.header, gain, part), destination);
}

}  // namespace zelvane
