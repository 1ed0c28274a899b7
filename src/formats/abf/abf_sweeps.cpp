// Opening recordings and reading their sweeps.
#include <algorithm>
#include <array>
#include <limits>
#include <memory>
#include <utility>

#include "formats/abf/abf_layout.h"
#include "formats/abf/user_units.h"
#include "platform/index.h"

namespace zelvane {

struct AbfFile {
  std::unique_ptr<ByteSource> source;
  AbfHeader header;
  AbfLayout layout;
};

namespace {

constexpr std::size_t BlockBytes = 512 * 1024;      // half of a second-level cache, and few calls
constexpr std::size_t CachedSamples = 1024 * 1024;  // the caches cannot hold more until the samples are used
constexpr std::int64_t MaxSweepSamples = std::numeric_limits<int>::max();

enum class Signature { None, Version1, Version2 };

Signature SignatureOf(const ByteSource& source) {
  std::array<std::byte, 4> mark{};
  if (source.Read(0, mark) != mark.size()) return Signature::None;
  if (std::memcmp(mark.data(), "ABF ", 4) == 0) return Signature::Version1;
  if (std::memcmp(mark.data(), "ABF2", 4) == 0) return Signature::Version2;
  return Signature::None;
}

std::int64_t SweepCount(const AbfLayout& layout) {
  if (!layout.sweeps.empty()) return static_cast<std::int64_t>(layout.sweeps.size());
  return (layout.samples + layout.equalLength - 1) / layout.equalLength;
}

/// Returns sweep `sweep`, from 1; an empty sweep when it does not exist.
AbfSweep SweepAt(const AbfLayout& layout, int sweep) {
  if (sweep < 1 || sweep > SweepCount(layout)) return {};
  if (!layout.sweeps.empty()) return layout.sweeps[Index(sweep) - 1];
  const std::int64_t first = (sweep - 1) * layout.equalLength;
  return {first, std::min(layout.equalLength, layout.samples - first)};
}

std::int64_t LongestSweep(const AbfLayout& layout) {
  std::int64_t longest = layout.sweeps.empty() ? layout.equalLength : 0;
  for (const AbfSweep& sweep : layout.sweeps) longest = std::max(longest, sweep.length);
  return longest;
}

/// Returns the place of a physical input in the multiplexed samples, from 0; -1 when it was not recorded.
int PlaceOf(const AbfHeader& header, int channel) {
  const auto end = header.samplingSequence.begin() + std::clamp(header.channels, 0, AbfMaxChannels);
  const auto found = std::find(header.samplingSequence.begin(), end, channel);
  return found == end ? -1 : static_cast<int>(found - header.samplingSequence.begin());
}

/// Converts little-endian samples of a file to the order of this machine.
template <class Sample>
void FromLittleEndian(std::span<Sample> samples) {
  if constexpr (std::endian::native == std::endian::little) return;
  for (Sample& sample : samples) sample = LittleEndian<Sample>(reinterpret_cast<const std::byte*>(&sample));
}

/// Copies every `stride`-th sample of a block of a sweep, in user units. One channel is a separate case, so
/// that its loop runs over neighbouring samples.
void CopyChannel(std::span<const std::int16_t> block, std::size_t stride, float scale, float offset,
                 std::size_t sweepSamples, std::span<float> out) {
  if (stride == 1) {
    const auto convert = sweepSamples > CachedSamples ? ToUserUnitsPastCaches : ToUserUnits;
    convert(block, scale, offset, out);
    return;
  }
  for (std::size_t k = 0; k < out.size(); ++k)
    out[k] = static_cast<float>(block[k * stride]) * scale + offset;
}

void CopyChannel(std::span<const float> block, std::size_t stride, float, float, std::size_t,
                 std::span<float> out) {
  for (std::size_t k = 0; k < out.size(); ++k) out[k] = block[k * stride];
}

/// Reads neighbouring floats directly into `buffer`.
std::size_t ReadFloats(const ByteSource& source, std::int64_t position, std::span<float> buffer) {
  const std::size_t read = source.Read(position, std::as_writable_bytes(buffer)) / sizeof(float);
  FromLittleEndian(buffer.first(read));
  return read;
}

/// Reads samples of one channel that are `stride` samples apart, the first at byte `position`, in large
/// blocks.
template <class Sample>
std::size_t ReadInterleaved(const AbfFile& file, std::int64_t position, std::size_t stride, int channel,
                            std::span<float> buffer) {
  const std::size_t framesPerBlock = BlockBytes / (stride * sizeof(Sample));
  const auto at = Index(channel);
  std::vector<Sample> block(std::min(framesPerBlock, buffer.size()) * stride);
  std::size_t done = 0;
  while (done < buffer.size()) {
    const std::size_t frames = std::min(framesPerBlock, buffer.size() - done);
    // The last frame needs only the channel's own sample, and the file may end there.
    const auto wanted = std::span(block).first((frames - 1) * stride + 1);
    const std::size_t got = file.source->Read(position, std::as_writable_bytes(wanted)) / sizeof(Sample);
    const std::size_t whole = (got + stride - 1) / stride;
    FromLittleEndian(wanted.first(got));
    CopyChannel(wanted, stride, file.header.scale[at], file.header.offset[at], buffer.size(),
                buffer.subspan(done, whole));
    done += whole;
    if (whole < frames) break;  // the file has become shorter since it was opened
    position += static_cast<std::int64_t>(frames * stride * sizeof(Sample));
  }
  return done;
}

}  // namespace

void AbfFileCloser::operator()(AbfFile* file) const {
  delete file;
}

bool IsABFFile(const std::string& path, int& dataFormat) {
  std::string why;
  const std::unique_ptr<ByteSource> source = OpenFileSource(path, why);
  if (source == nullptr) return false;
  const Signature signature = SignatureOf(*source);
  if (signature == Signature::None) return false;
  std::array<std::byte, 102> start{};
  const auto bytes = std::span<const std::byte>(start.data(), source->Read(0, start));
  const int format = NumberAt<std::int16_t>(bytes, signature == Signature::Version1 ? 100 : 30);
  dataFormat = format == AbfFloats ? AbfFloats : AbfIntegers;
  return true;
}

AbfHandle OpenAbfSource(std::unique_ptr<ByteSource> source, AbfHeader& header, int& samplesPerSweep,
                        int& sweepCount, std::string* why) {
  AbfHandle file(new AbfFile{std::move(source), {}, {}});
  std::string refusal = "The file does not begin as an Axon Binary File.";
  switch (SignatureOf(*file->source)) {
    case Signature::Version1:
      refusal = ReadAbf1Header(*file->source, file->header, file->layout);
      break;
    case Signature::Version2:
      refusal = ReadAbf2Header(*file->source, file->header, file->layout);
      break;
    case Signature::None:
      break;
  }
  if (refusal.empty() && file->layout.samples < file->header.channels) refusal = "The file holds no samples.";
  if (why != nullptr) *why = refusal;
  if (!refusal.empty()) return nullptr;

  AbfHeader& own = file->header;
  own.acquisitionLength = file->layout.samples;
  own.announcedSamples = file->layout.announced;
  own.episodes = static_cast<int>(std::min(SweepCount(file->layout), MaxSweepSamples));
  own.samplesPerEpisode = static_cast<int>(std::min(LongestSweep(file->layout), MaxSweepSamples));
  header = own;
  samplesPerSweep = static_cast<int>(std::min(LongestSweep(file->layout) / own.channels, MaxSweepSamples));
  sweepCount = own.episodes;
  return file;
}

AbfHandle OpenABFFile(const std::string& path, AbfHeader& header, int& samplesPerSweep, int& sweepCount,
                      std::string* why) {
  std::string refusal;
  std::unique_ptr<ByteSource> source = OpenFileSource(path, refusal);
  if (source != nullptr) return OpenAbfSource(std::move(source), header, samplesPerSweep, sweepCount, why);
  if (why != nullptr) *why = refusal;
  return nullptr;
}

bool GetActualSamples(const AbfFile& file, std::int64_t& samples) {
  samples = file.layout.samples;
  return samples > 0;
}

int SweepLength(const AbfFile& file, int sweep) {
  const std::int64_t samples = SweepAt(file.layout, sweep).length / file.header.channels;
  return static_cast<int>(std::min(samples, MaxSweepSamples));
}

int ReadSweep(const AbfFile& file, int channel, int sweep, int first, std::span<float> buffer) {
  const int place = PlaceOf(file.header, channel);
  const int length = SweepLength(file, sweep);
  if (place < 0 || first < 0 || first >= length) return 0;
  const std::size_t count = std::min(buffer.size(), Index(length - first));
  const std::int64_t channels = file.header.channels;
  const std::int64_t sample = SweepAt(file.layout, sweep).first + first * channels + place;
  const std::int64_t position = file.layout.dataPosition + sample * AbfSampleBytes(file.header);
  const auto stride = Index(channels);
  const std::span<float> part = buffer.first(count);
  if (file.header.dataFormat == AbfIntegers)
    return static_cast<int>(ReadInterleaved<std::int16_t>(file, position, stride, channel, part));
  return static_cast<int>(stride == 1 ? ReadFloats(*file.source, position, part)
                                      : ReadInterleaved<float>(file, position, stride, channel, part));
}

bool GetADCScaleFactor(const AbfHeader& header, int channel, float& scale, float& offset) {
  if (PlaceOf(header, channel) < 0) return false;
  scale = header.scale[Index(channel)];
  offset = header.offset[Index(channel)];
  return true;
}

void CloseABFFile(AbfHandle& file) {
  file.reset();
}

}  // namespace zelvane
