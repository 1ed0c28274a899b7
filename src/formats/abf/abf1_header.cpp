// The header of ABF 1.x: fields at fixed places of its first 2048 bytes, in later files 6144 bytes.
#include <algorithm>
#include <array>
#include <cmath>

#include "formats/abf/abf_layout.h"
#include "platform/index.h"

namespace zelvane {
namespace {

constexpr std::size_t ShortHeader = 2048;
constexpr std::size_t LongHeader = 6144;
constexpr std::int64_t FirstDataBlock = 4;        // with a short header
constexpr std::int64_t LongHeaderDataBlock = 12;  // from this block on the telegraph fields exist
constexpr double FirstLongVersion = 1.6;

using Bytes = std::span<const std::byte>;

/// Reads the physical inputs in sampling order.
std::string ReadSamplingSequence(Bytes bytes, AbfHeader& header) {
  const int channels = NumberAt<std::int16_t>(bytes, 120);
  if (channels < 1 || channels > AbfMaxChannels) return "The header names an impossible number of channels.";
  header.channels = channels;
  header.samplingSequence.fill(-1);
  unsigned seen = 0;
  bool allZero = true;
  bool repeated = false;
  for (int place = 0; place < channels; ++place) {
    const auto at = Index(place);
    const int input = NumberAt<std::int16_t>(bytes, 410 + 2 * at);
    if (input < 0 || input >= AbfMaxChannels)
      return "The sampling sequence of the header names an input that does not exist.";
    allZero = allZero && input == 0;
    repeated = repeated || (seen >> input & 1U) != 0;
    seen |= 1U << input;
    header.samplingSequence[at] = input;
  }
  if (repeated && !allZero) return "The sampling sequence of the header names an input twice.";
  // Some programs do not set the sequence; their inputs are in order.
  for (int place = 0; place < channels && repeated; ++place) header.samplingSequence[Index(place)] = place;
  return {};
}

/// Returns the gain that an amplifier reported to the recording program, without those of the converter.
float AdditionalGain(Bytes bytes, int input, bool longHeader) {
  const auto at = Index(input);
  // A short header has samples at the place of the telegraph fields. Only 1 means enabled.
  if (longHeader)
    return NumberAt<std::int16_t>(bytes, 4512 + 2 * at) == 1 ? NumberAt<float>(bytes, 4576 + 4 * at) : 1.0F;
  const bool autoSample =
      NumberAt<std::int16_t>(bytes, 262) == 1 && NumberAt<std::int16_t>(bytes, 264) == input;
  return autoSample ? NumberAt<float>(bytes, 268) : 1.0F;
}

void ReadInput(Bytes bytes, int input, bool longHeader, AbfHeader& header) {
  const auto at = Index(input);
  header.channelName[at] = TextAt(bytes, 442 + 10 * at, 10);
  header.channelUnits[at] = TextAt(bytes, 602 + 8 * at, 8);
  SetInputScale(header, input,
                {.programmable = NumberAt<float>(bytes, 730 + 4 * at),
                 .instrument = NumberAt<float>(bytes, 922 + 4 * at),
                 .signal = NumberAt<float>(bytes, 1050 + 4 * at),
                 .additional = AdditionalGain(bytes, input, longHeader),
                 .instrumentOffset = NumberAt<float>(bytes, 986 + 4 * at),
                 .signalOffset = NumberAt<float>(bytes, 1114 + 4 * at)});
}

/// Finds the samples and their sweeps.
void ReadDataSection(Bytes bytes, const ByteSource& source, const AbfHeader& header, std::int64_t block,
                     AbfLayout& layout) {
  const std::int64_t skipped = std::max<std::int64_t>(0, NumberAt<std::int16_t>(bytes, 14));
  layout.dataPosition = block * AbfBlockBytes + skipped * AbfSampleBytes(header);
  // Tags, scope configuration, synch array.
  const std::array<std::int64_t, 3> sections{NumberAt<std::int32_t>(bytes, 44),
                                             NumberAt<std::int32_t>(bytes, 52),
                                             NumberAt<std::int32_t>(bytes, 92)};
  PlanSweeps(source, header,
             {.samples = NumberAt<std::int32_t>(bytes, 10),
              .episodes = NumberAt<std::int32_t>(bytes, 16),
              .samplesPerEpisode = NumberAt<std::int32_t>(bytes, 138),
              .synch = {.block = NumberAt<std::int32_t>(bytes, 92),
                        .itemBytes = 8,
                        .items = NumberAt<std::int32_t>(bytes, 96)}},
             sections, layout);
}

}  // namespace

std::string ReadAbf1Header(const ByteSource& source, AbfHeader& header, AbfLayout& layout) {
  std::array<std::byte, LongHeader> buffer{};
  const Bytes bytes(buffer.data(), source.Read(0, buffer));
  const double version = NumberAt<float>(bytes, 4);
  if (!(version >= 1.0 && version < 2.0)) return "The version in the header is not a version of ABF 1.";
  if (bytes.size() < ShortHeader) return "The file ends within its header.";
  header.version = std::round(version * 100.0) / 100.0;  // 1.83 is stored as 1.83000004
  header.operationMode = NumberAt<std::int16_t>(bytes, 8);
  header.dataFormat = NumberAt<std::int16_t>(bytes, 100);
  if (header.dataFormat != AbfIntegers && header.dataFormat != AbfFloats)
    return "The samples are in a format that is neither 16-bit integer nor float.";

  std::int64_t block = NumberAt<std::int32_t>(bytes, 40);
  if (block == 0) block = FirstDataBlock;
  if (block < FirstDataBlock || block > source.Size() / AbfBlockBytes)
    return "The data section is not within the file.";
  if (std::string why = ReadSamplingSequence(bytes, header); !why.empty()) return why;

  const double interval = NumberAt<float>(bytes, 122);
  if (!std::isfinite(interval) || interval <= 0.0) return "The sample interval is not a positive number.";
  header.sampleInterval = interval * header.channels;  // in the header it is between any two samples
  header.startDate = AbfDate(NumberAt<std::int32_t>(bytes, 20));
  header.startTime = AbfTimeOfDay(NumberAt<std::int32_t>(bytes, 24));
  header.creator = TextAt(bytes, 294, 16);
  SetConverter(header, NumberAt<float>(bytes, 244), NumberAt<std::int32_t>(bytes, 252));
  const bool longHeader = block >= LongHeaderDataBlock && header.version >= FirstLongVersion;
  for (int place = 0; place < header.channels; ++place)
    ReadInput(bytes, header.samplingSequence[Index(place)], longHeader, header);
  ReadDataSection(bytes, source, header, block, layout);
  return {};
}

}  // namespace zelvane
