// The header of ABF 2.x: a table of sections, which may be anywhere in the file.
#include <algorithm>
#include <array>
#include <cmath>

#include "formats/abf/abf_layout.h"
#include "platform/index.h"

namespace zelvane {
namespace {

using Bytes = std::span<const std::byte>;

constexpr std::size_t FileHeaderBytes = 512;
// Places of the section table within the file header.
constexpr std::size_t FirstSection = 76;
constexpr std::size_t SectionEntryBytes = 16;
constexpr std::size_t SectionCount = 18;
constexpr std::size_t ProtocolSection = FirstSection;
constexpr std::size_t AdcSection = 92;
constexpr std::size_t StringsSection = 220;
constexpr std::size_t DataSection = 236;
constexpr std::size_t SynchSection = 316;

constexpr std::size_t ProtocolBytes = 140;  // the part with fields that are read
constexpr std::size_t AdcItemBytes = 82;    // the same for one input
constexpr std::size_t MaxAdcItemBytes = 4096;
constexpr std::size_t MaxStringBytes = 1 << 20;  // names and units are at the front
constexpr std::size_t FirstString = 44;

struct Section {
  std::int64_t block = 0;  // 0: absent
  std::int64_t itemBytes = 0;
  std::int64_t items = 0;
};

Section SectionAt(Bytes fileHeader, std::size_t offset) {
  return {NumberAt<std::uint32_t>(fileHeader, offset), NumberAt<std::uint32_t>(fileHeader, offset + 4),
          NumberAt<std::int64_t>(fileHeader, offset + 8)};
}

/// Returns `count` bytes from the begin of a section, fewer at the end of the file. Empty for an absent
/// section.
std::vector<std::byte> ReadSection(const ByteSource& source, const Section& section, std::size_t count) {
  const std::int64_t position = section.block * AbfBlockBytes;
  if (section.block == 0 || position >= source.Size()) return {};
  std::vector<std::byte> bytes(Index(std::min(static_cast<std::int64_t>(count), source.Size() - position)));
  bytes.resize(source.Read(position, bytes));
  return bytes;
}

/// The strings of a file, each with a NUL at its end and counted from 1.
class StringTable {
 public:
  StringTable(const ByteSource& source, const Section& section)
      : bytes_(ReadSection(source, section, std::min(Index(section.itemBytes), MaxStringBytes))) {
    constexpr std::array<char, 4> mark{'S', 'S', 'C', 'H'};
    if (bytes_.size() < FirstString || std::memcmp(bytes_.data(), mark.data(), mark.size()) != 0)
      bytes_.clear();
  }

  /// Returns a string; empty for an index without a string.
  std::string StringAt(std::int32_t index) const {
    if (bytes_.empty() || index < 1) return {};
    auto begin = bytes_.begin() + FirstString;
    for (; index > 1 && begin != bytes_.end(); --index) {
      begin = std::find(begin, bytes_.end(), std::byte{0});
      if (begin != bytes_.end()) ++begin;
    }
    return TextOf(Bytes(begin, std::find(begin, bytes_.end(), std::byte{0})));
  }

 private:
  std::vector<std::byte> bytes_;
};

std::string ReadProtocol(Bytes protocol, AbfHeader& header) {
  if (protocol.size() < ProtocolBytes) return "The file has no protocol section.";
  header.operationMode = NumberAt<std::int16_t>(protocol, 0);
  header.sampleInterval = NumberAt<float>(protocol, 2);  // for one channel, unlike in version 1
  if (!std::isfinite(header.sampleInterval) || header.sampleInterval <= 0.0)
    return "The sample interval is not a positive number.";
  SetConverter(header, NumberAt<float>(protocol, 110), NumberAt<std::int32_t>(protocol, 118));
  return {};
}

void ReadInput(Bytes item, int input, const StringTable& strings, AbfHeader& header) {
  const auto at = Index(input);
  header.channelName[at] = strings.StringAt(NumberAt<std::int32_t>(item, 74));
  header.channelUnits[at] = strings.StringAt(NumberAt<std::int32_t>(item, 78));
  const bool telegraph = NumberAt<std::int16_t>(item, 2) == 1;
  SetInputScale(header, input,
                {.programmable = NumberAt<float>(item, 28),
                 .instrument = NumberAt<float>(item, 40),
                 .signal = NumberAt<float>(item, 48),
                 .additional = telegraph ? NumberAt<float>(item, 6) : 1.0F,
                 .instrumentOffset = NumberAt<float>(item, 44),
                 .signalOffset = NumberAt<float>(item, 52)});
}

/// Reads one item for each channel, in the order of the samples.
std::string ReadInputs(const ByteSource& source, const Section& section, const StringTable& strings,
                       AbfHeader& header) {
  if (section.items < 1 || section.items > AbfMaxChannels)
    return "The header names an impossible number of channels.";
  const auto itemBytes = Index(section.itemBytes);
  if (itemBytes < AdcItemBytes || itemBytes > MaxAdcItemBytes)
    return "The descriptions of the channels have an impossible length.";
  const auto items = Index(section.items);
  const std::vector<std::byte> bytes = ReadSection(source, section, items * itemBytes);
  if (bytes.size() < (items - 1) * itemBytes + AdcItemBytes)
    return "The descriptions of the channels are not within the file.";
  header.channels = static_cast<int>(items);
  header.samplingSequence.fill(-1);
  unsigned seen = 0;
  for (std::size_t place = 0; place < items; ++place) {
    const Bytes item = Bytes(bytes).subspan(place * itemBytes).first(AdcItemBytes);
    const int input = NumberAt<std::int16_t>(item, 0);
    if (input < 0 || input >= AbfMaxChannels) return "The header names an input that does not exist.";
    if ((seen >> input & 1U) != 0) return "The header names an input twice.";
    seen |= 1U << input;
    header.samplingSequence[place] = input;
    ReadInput(item, input, strings, header);
  }
  return {};
}

std::string ReadDataSection(Bytes fileHeader, const ByteSource& source, std::int64_t samplesPerEpisode,
                            const AbfHeader& header, AbfLayout& layout) {
  const Section data = SectionAt(fileHeader, DataSection);
  if (data.block == 0 || data.items < 1) return "The file has no data section.";
  if (data.itemBytes != AbfSampleBytes(header))
    return "The length of a sample does not fit the format of the data.";
  std::array<std::int64_t, SectionCount> sections{};
  for (std::size_t place = 0; place < SectionCount; ++place) {
    const Section section = SectionAt(fileHeader, FirstSection + place * SectionEntryBytes);
    sections[place] = section.items > 0 ? section.block : 0;  // an empty section may point anywhere
  }
  const Section synch = SectionAt(fileHeader, SynchSection);
  layout.dataPosition = data.block * AbfBlockBytes;
  PlanSweeps(source, header,
             {.samples = data.items,
              .episodes = NumberAt<std::uint32_t>(fileHeader, 12),
              .samplesPerEpisode = samplesPerEpisode,
              .synch = {.block = synch.block, .itemBytes = synch.itemBytes, .items = synch.items}},
             sections, layout);
  return {};
}

}  // namespace

std::string ReadAbf2Header(const ByteSource& source, AbfHeader& header, AbfLayout& layout) {
  std::array<std::byte, FileHeaderBytes> buffer{};
  const Bytes bytes(buffer.data(), source.Read(0, buffer));
  if (bytes.size() < FileHeaderBytes) return "The file ends within its header.";
  const int major = std::to_integer<int>(bytes[7]);
  if (major != 2) return "The version in the header is not a version of ABF 2.";
  header.version = (major * 100 + std::to_integer<int>(bytes[6])) / 100.0;
  header.dataFormat = NumberAt<std::uint16_t>(bytes, 30);
  if (header.dataFormat != AbfIntegers && header.dataFormat != AbfFloats)
    return "The samples are in a format that is neither 16-bit integer nor float.";
  header.startDate = AbfDate(NumberAt<std::uint32_t>(bytes, 16));
  header.startTime = AbfTimeOfDay(NumberAt<std::uint32_t>(bytes, 20) / 1000);

  const std::vector<std::byte> protocol =
      ReadSection(source, SectionAt(bytes, ProtocolSection), ProtocolBytes);
  if (std::string why = ReadProtocol(protocol, header); !why.empty()) return why;
  const StringTable strings(source, SectionAt(bytes, StringsSection));
  header.creator = strings.StringAt(NumberAt<std::int32_t>(bytes, 60));
  if (std::string why = ReadInputs(source, SectionAt(bytes, AdcSection), strings, header); !why.empty())
    return why;
  return ReadDataSection(bytes, source, NumberAt<std::int32_t>(protocol, 22), header, layout);
}

}  // namespace zelvane
