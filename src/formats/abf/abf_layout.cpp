#include "formats/abf/abf_layout.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "platform/index.h"

namespace zelvane {
namespace {

constexpr float CustomaryRange = 10.24F;  // volts
constexpr float LeastRange = 1e-6F;       // smaller than that of any converter
constexpr float MostRange = 1e6F;
constexpr int CustomaryResolution = 2048;
constexpr float LargestCount = 32768.0F;
constexpr std::int64_t PairBytes = 8;
constexpr std::int64_t MaxPairBytes = 64;  // a pair and what later versions may add

bool Usable(float factor) {
  return std::isfinite(factor) && factor != 0.0F;
}

float FiniteOrZero(float value) {
  return std::isfinite(value) ? value : 0.0F;
}

/// Returns the lengths in a synch array, in samples of all channels. Empty when the array cannot be right.
std::vector<std::int32_t> SynchLengths(const ByteSource& source, const AbfSynchArray& synch,
                                       std::int64_t samples) {
  const std::int64_t size = source.Size();
  if (synch.block <= 0 || synch.items <= 0 || synch.items > samples) return {};
  if (synch.block > size / AbfBlockBytes) return {};
  if (synch.itemBytes < PairBytes || synch.itemBytes > MaxPairBytes) return {};
  const std::int64_t position = synch.block * AbfBlockBytes;
  if (synch.items > (size - position) / synch.itemBytes) return {};

  std::vector<std::byte> bytes(Index(synch.items * synch.itemBytes));
  if (source.Read(position, bytes) != bytes.size()) return {};
  std::vector<std::int32_t> lengths(Index(synch.items));
  for (std::size_t item = 0; item < lengths.size(); ++item) {
    lengths[item] = NumberAt<std::int32_t>(bytes, item * Index(synch.itemBytes) + 4);
    if (lengths[item] < 0) return {};
  }
  return lengths;
}

/// Returns the sweeps, one directly after the other; the gaps between them are not stored.
std::vector<AbfSweep> SweepsOfLengths(const std::vector<std::int32_t>& lengths, int channels,
                                      std::int64_t samples) {
  std::vector<AbfSweep> sweeps;
  sweeps.reserve(lengths.size());
  std::int64_t first = 0;
  for (const std::int32_t length : lengths) {
    const std::int64_t held = std::min<std::int64_t>(length, samples - first);
    if (held >= channels) sweeps.push_back({first, held});
    first += held;
  }
  return sweeps;
}

/// Returns the length of the sweeps of a file without a synch array.
std::int64_t EqualSweepLength(const AbfHeader& header, const AbfSweepClaims& claims, std::int64_t samples) {
  const int mode = header.operationMode;
  if (mode != 2 && mode != 4 && mode != 5) return samples;  // their length is that of a display
  const std::int64_t length = claims.samplesPerEpisode;
  if (length >= header.channels && length <= samples) return length;
  // A header without a length may still give the number of its sweeps.
  const bool divides = claims.episodes > 1 && length <= 0 && samples % claims.episodes == 0 &&
                       samples / claims.episodes >= header.channels;
  return divides ? samples / claims.episodes : samples;
}

/// Returns the number of samples that fit before the first of the `sections`, or before the end of the file.
std::int64_t SampleRoom(const ByteSource& source, const AbfHeader& header, std::int64_t dataPosition,
                        std::span<const std::int64_t> sections = {}) {
  std::int64_t end = source.Size();
  for (const std::int64_t block : sections) {
    const bool behind = block > dataPosition / AbfBlockBytes && block < end / AbfBlockBytes;
    if (behind) end = block * AbfBlockBytes;
  }
  return std::max<std::int64_t>(0, end - dataPosition) / AbfSampleBytes(header);
}

}  // namespace

void PlanSweeps(const ByteSource& source, const AbfHeader& header, const AbfSweepClaims& claims,
                std::span<const std::int64_t> sections, AbfLayout& layout) {
  const std::int64_t upToSection = SampleRoom(source, header, layout.dataPosition, sections);
  const bool held = claims.samples > 0 && claims.samples <= SampleRoom(source, header, layout.dataPosition);
  layout.samples = held ? claims.samples : upToSection;
  layout.announced = claims.samples > layout.samples ? claims.samples : 0;
  layout.equalLength = layout.samples;
  if (header.operationMode == AbfGapFree) return;
  const std::int64_t room = std::max(layout.samples, upToSection);
  const std::vector<std::int32_t> lengths = SynchLengths(source, claims.synch, room);
  const std::int64_t sum = std::accumulate(lengths.begin(), lengths.end(), std::int64_t{0});
  layout.sweeps = SweepsOfLengths(lengths, header.channels, sum <= room ? room : layout.samples);
  if (!layout.sweeps.empty()) {
    layout.samples = layout.sweeps.back().first + layout.sweeps.back().length;
    return;
  }
  if (layout.samples < header.channels) return;
  layout.equalLength = EqualSweepLength(header, claims, layout.samples);
  const std::int64_t rest = layout.samples % layout.equalLength;
  if (rest < header.channels) layout.samples -= rest;  // every sweep has a sample of each channel
}

void SetConverter(AbfHeader& header, float range, std::int32_t resolution) {
  header.adcRange = range > LeastRange && range < MostRange ? range : CustomaryRange;
  header.adcResolution = resolution < 1 ? CustomaryResolution : resolution;
}

void SetInputScale(AbfHeader& header, int input, const AbfInputGains& gains) {
  const auto at = Index(input);
  header.programmableGain[at] = gains.programmable;
  header.instrumentGain[at] = gains.instrument;
  header.signalGain[at] = gains.signal;
  header.additionalGain[at] = Usable(gains.additional) ? gains.additional : 1.0F;
  // Programs without a signal conditioner may not set its gain.
  const float signal = Usable(gains.signal) ? gains.signal : 1.0F;
  const double gain =
      double{gains.instrument} * gains.programmable * signal * double{header.additionalGain[at]};
  const double perCount = double{header.adcRange} / header.adcResolution;
  const auto scale = static_cast<float>(perCount / gain);
  const bool good = Usable(static_cast<float>(gain)) && Usable(scale) && std::isfinite(scale * LargestCount);
  header.gain[at] = good ? static_cast<float>(gain) : 1.0F;
  header.scale[at] = 1.0F;
  header.offset[at] = 0.0F;
  if (header.dataFormat == AbfFloats) return;  // the samples are already in user units
  header.scale[at] = good ? scale : static_cast<float>(perCount);
  const float offset = FiniteOrZero(gains.instrumentOffset) - FiniteOrZero(gains.signalOffset);
  const float largest = std::abs(header.scale[at]) * LargestCount + std::abs(offset);
  header.offset[at] = std::isfinite(largest) ? offset : 0.0F;
}

int AbfTimeOfDay(std::int64_t seconds) {
  constexpr std::int64_t Day = 86400;
  return seconds >= 0 && seconds < Day ? static_cast<int>(seconds) : 0;
}

int AbfDate(std::int64_t date) {
  if (date <= 0 || date > 99991231) return 0;
  std::int64_t year = date / 10000;
  const std::int64_t month = date / 100 % 100;
  const std::int64_t day = date % 100;
  if (month < 1 || month > 12 || day < 1 || day > 31) return 0;
  if (year < 100) year += year < 80 ? 2000 : 1900;  // the format is not older
  return static_cast<int>(year * 10000 + month * 100 + day);
}

}  // namespace zelvane
