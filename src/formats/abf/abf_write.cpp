// Writing ABF 1.x with floats. Fields that this program does not use have the values with which other
// programs read the file.
#include <algorithm>
#include <limits>
#include <utility>
#include <vector>

#include "formats/abf/abf_layout.h"
#include "platform/index.h"
#include "platform/safe_file.h"

namespace zelvane {

struct AbfWriter {
  std::unique_ptr<FileReplacement> file;
  AbfHeader header;
  std::vector<std::int32_t> sweepLengths{};
  std::int64_t samples = 0;
  bool headerIsCurrent = false;
};

namespace {

using HeaderBytes = std::array<std::byte, 2048>;

constexpr std::int64_t ShortHeaderBytes = std::tuple_size_v<HeaderBytes>;
// Headers of version 1.6 and later have this length. Other programs read the whole header, and cut a gap-free
// recording of these versions into pieces when its samples begin earlier. The bytes after HeaderBytes are 0.
constexpr std::int64_t DataPosition = 6144;
constexpr int Episodic = 5;
constexpr float AdcRange = 10.0F;
constexpr std::int32_t AdcResolution = 32768;
constexpr float UnitScale = AdcRange / AdcResolution;  // one count is one user unit
constexpr std::size_t NameBytes = 10;
constexpr std::size_t UnitsBytes = 8;
constexpr std::size_t DacOutputs = 4;

template <class Number>
void Put(HeaderBytes& bytes, std::size_t offset, Number number) {
  WriteLittleEndian(bytes.data() + offset, number);
}

/// Writes a text field of `length` bytes, filled up with `padding`.
void WriteText(HeaderBytes& bytes, std::size_t offset, std::size_t length, std::string_view text,
               char padding) {
  std::string field = Latin1Of(text);
  field.resize(length, padding);
  std::memcpy(bytes.data() + offset, field.data(), length);
}

/// Writes the fields that exist for each of the 16 inputs. Only input 0 is recorded, but no gain may be 0.
void WriteInputs(HeaderBytes& bytes, const AbfHeader& header) {
  const int first = header.samplingSequence[0];
  const auto named = Index(first >= 0 && first < AbfMaxChannels ? first : 0);
  for (std::size_t input = 0; input < AbfMaxChannels; ++input) {
    Put(bytes, 378 + 2 * input, static_cast<std::int16_t>(input));
    Put(bytes, 410 + 2 * input, static_cast<std::int16_t>(input == 0 ? 0 : -1));
    WriteText(bytes, 442 + NameBytes * input, NameBytes, input == 0 ? header.channelName[named] : "", ' ');
    WriteText(bytes, 602 + UnitsBytes * input, UnitsBytes, input == 0 ? header.channelUnits[named] : "", ' ');
    Put(bytes, 730 + 4 * input, 1.0F);       // programmable gain
    Put(bytes, 794 + 4 * input, 1.0F);       // display amplification
    Put(bytes, 922 + 4 * input, UnitScale);  // instrument scale factor
    Put(bytes, 1050 + 4 * input, 1.0F);      // signal gain
  }
  for (std::size_t output = 0; output < DacOutputs; ++output) {
    WriteText(bytes, 1306 + NameBytes * output, NameBytes, "", ' ');
    WriteText(bytes, 1346 + UnitsBytes * output, UnitsBytes, "", ' ');
  }
}

std::string_view AsText(std::span<const std::byte> bytes) {
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

/// Returns the synch array: where each sweep begins on the clock of the recording, in samples, and its
/// length.
std::vector<std::byte> SynchBytes(const std::vector<std::int32_t>& lengths) {
  std::vector<std::byte> bytes(lengths.size() * 8);
  std::int32_t start = 0;
  for (std::size_t sweep = 0; sweep < lengths.size(); ++sweep) {
    WriteLittleEndian(bytes.data() + 8 * sweep, start);
    WriteLittleEndian(bytes.data() + 8 * sweep + 4, lengths[sweep]);
    start += lengths[sweep];
  }
  return bytes;
}

/// Returns the header with the counts of the written samples.
AbfHeader CountedHeader(const AbfWriter& writer, const AbfHeader& header) {
  AbfHeader counted = header;
  const bool episodic = header.operationMode == Episodic && !writer.sweepLengths.empty();
  counted.acquisitionLength = writer.samples;
  counted.episodes = episodic ? static_cast<int>(writer.sweepLengths.size()) : 1;
  counted.samplesPerEpisode = static_cast<int>(
      episodic ? *std::max_element(writer.sweepLengths.begin(), writer.sweepLengths.end()) : writer.samples);
  return counted;
}

}  // namespace

void AbfWriterCloser::operator()(AbfWriter* writer) const {
  delete writer;
}

void InitializeHeader(AbfHeader& header) {
  header = AbfHeader{};
  header.version = 1.83;
  header.samplingSequence.fill(-1);
  header.samplingSequence[0] = 0;
  header.channelName[0] = "IN 0";
  header.channelUnits[0] = "pA";
  header.creator = "Zelvane v2.0";
  header.scale.fill(1.0F);
  header.gain.fill(UnitScale);
  header.programmableGain.fill(1.0F);
  header.instrumentGain.fill(UnitScale);
  header.signalGain.fill(1.0F);
  header.additionalGain.fill(1.0F);
}

std::array<std::byte, 2048> AbfHeaderBytes(const AbfHeader& header) {
  HeaderBytes bytes{};
  WriteText(bytes, 0, 4, "ABF ", ' ');
  Put(bytes, 4, static_cast<float>(header.version));
  Put(bytes, 8, static_cast<std::int16_t>(header.operationMode == Episodic ? Episodic : AbfGapFree));
  Put(bytes, 10, static_cast<std::int32_t>(header.acquisitionLength));
  Put(bytes, 16, static_cast<std::int32_t>(header.episodes));
  Put(bytes, 20, static_cast<std::int32_t>(header.startDate));
  Put(bytes, 24, static_cast<std::int32_t>(header.startTime));
  Put(bytes, 32, static_cast<float>(header.version));
  Put(bytes, 36, std::int16_t{1});  // kind of file: samples
  Put(bytes, 40, static_cast<std::int32_t>(ShortHeaderBytes / AbfBlockBytes));
  Put(bytes, 100, static_cast<std::int16_t>(AbfFloats));
  Put(bytes, 120, std::int16_t{1});  // channels
  Put(bytes, 122, static_cast<float>(header.sampleInterval));
  Put(bytes, 138, static_cast<std::int32_t>(header.samplesPerEpisode));
  Put(bytes, 244, AdcRange);
  Put(bytes, 248, AdcRange);  // range of the outputs
  Put(bytes, 252, AdcResolution);
  Put(bytes, 256, AdcResolution);
  Put(bytes, 268, 1.0F);      // auto-sample gain
  Put(bytes, 272, 10000.0F);  // auto-sample filter, Hz
  WriteText(bytes, 294, 16, header.creator, '\0');
  WriteInputs(bytes, header);
  return bytes;
}

AbfWriteHandle OldABF_OpenWrite(const std::string& path, const AbfHeader& header) {
  std::unique_ptr<FileReplacement> file = FileReplacement::Begin(path);
  if (file == nullptr) return nullptr;
  return AbfWriteHandle(new AbfWriter{.file = std::move(file), .header = header});
}

bool OldABF_WriteRawSweep(AbfWriter& writer, std::span<const float> samples) {
  constexpr std::int64_t MostSamples = std::numeric_limits<std::int32_t>::max();
  const auto count = static_cast<std::int64_t>(samples.size());
  if (count > MostSamples - writer.samples) return false;
  if (count == 0) return true;
  const std::int64_t position = DataPosition + 4 * writer.samples;
  bool written = false;
  if constexpr (std::endian::native == std::endian::little) {
    written = writer.file->Write(position, AsText(std::as_bytes(samples)));
  } else {
    std::vector<std::byte> bytes(samples.size_bytes());
    for (std::size_t k = 0; k < samples.size(); ++k) WriteLittleEndian(bytes.data() + 4 * k, samples[k]);
    written = writer.file->Write(position, AsText(bytes));
  }
  writer.samples += count;
  writer.sweepLengths.push_back(static_cast<std::int32_t>(count));
  writer.headerIsCurrent = false;
  return written;
}

bool OldABF_UpdateHeader(AbfWriter& writer, const AbfHeader& header) {
  writer.header = header;
  HeaderBytes bytes = AbfHeaderBytes(CountedHeader(writer, header));
  Put(bytes, 40, static_cast<std::int32_t>(DataPosition / AbfBlockBytes));
  const std::string rest(Index(DataPosition - ShortHeaderBytes), '\0');
  bool good = writer.file->Write(ShortHeaderBytes, rest);
  if (header.operationMode == Episodic && !writer.sweepLengths.empty()) {
    const std::int64_t end = DataPosition + 4 * writer.samples;
    const std::int64_t block = (end + AbfBlockBytes - 1) / AbfBlockBytes;
    const std::vector<std::byte> synch = SynchBytes(writer.sweepLengths);
    Put(bytes, 92, static_cast<std::int32_t>(block));
    Put(bytes, 96, static_cast<std::int32_t>(writer.sweepLengths.size()));
    good = good && writer.file->Write(block * AbfBlockBytes, AsText(synch));
  }
  good = good && writer.file->Write(0, AsText(bytes));
  writer.headerIsCurrent = good;
  return good;
}

bool OldABF_Close(AbfWriteHandle& writer) {
  if (writer == nullptr) return false;
  const bool good =
      (writer->headerIsCurrent || OldABF_UpdateHeader(*writer, writer->header)) && writer->file->Commit();
  writer.reset();
  return good;
}

}  // namespace zelvane
