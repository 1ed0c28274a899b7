// A reader of ABF 1.x that takes everything from the header's own bytes: the first channel, all episodes one
// behind the other, without offsets. It opens its file itself: RecordingFile refuses headers that this reader
// repairs, and scales counts in another way.
#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "formats/input_file.h"
#include "formats/little_endian.h"
#include "model/model_store.h"
#include "platform/file_names.h"
#include "screen/popups.h"
#include "trace/recording_facts.h"
#include "trace/trace_dialogs.h"
#include "trace/trace_read.h"
#include "trace/trace_store.h"

namespace zelvane {
namespace {

constexpr char InvalidAbf[] = " Invalid ABF file.";
constexpr MessageTitle GainTitle{MessageKind::Error, "! File I/O Error"};
constexpr char NoGain[] = "Gain=0\n";
constexpr char NoSamples[] = "%s holds no samples.";
constexpr char PleaseWait[] = "Please wait";

constexpr int MaxChannels = 16;
constexpr int BlockBytes = 512;
constexpr int ReadBytes = 256 * 1024;
constexpr int ManySamples = 200'000;      // of a file that takes a moment
constexpr int LongHeader = 8;             // data blocks from which on a header has telegraph fields
constexpr double TelegraphVersion = 1.6;  // the gain of a telegraph counts in versions above it
constexpr double VersionMargin = 0.005;   // versions are 32-bit floats of hundredths

/// Header fields of the first channel.
struct DirectHeader {
  float version = 0.0F;
  int mode = 0;
  int samples = 0;  // all channels and episodes
  int episodes = 1;
  int dataBlock = 4;
  bool floats = false;
  int channels = 1;
  float intervalUs = 0.0F;  // between samples of the multiplexed stream
  float range = 10.24F;
  int resolution = 2048;
  int channel = 0;  // physical input
  std::string units;
  float gainMultiplier = 1.0F;
  bool autoSample = false;
  float programmable = 1.0F;
  float instrument = 1.0F;
  float signal = 1.0F;
  float telegraph = 1.0F;
};

/// A number, with another in place of 0.
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

/// Samples that lie in the file, whatever its header says.
int SamplesHeld(std::istream& file, const DirectHeader& header) {
  const std::int64_t begin = static_cast<std::int64_t>(header.dataBlock) * BlockBytes;
  const std::int64_t held = (LengthOf(file) - begin) / (header.floats ? 4 : 2);
  return static_cast<int>(std::clamp<std::int64_t>(held, 0, std::numeric_limits<int>::max()));
}

/// The header of an ABF 1.x file, field by field. Nothing when it cannot be one.
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

/// Product of the gains; 1, with a message, where it cannot divide.
float OverallGain(const DirectHeader& header) {
  const bool telegraphs = header.dataBlock >= LongHeader &&
                          static_cast<double>(header.version) > TelegraphVersion + VersionMargin;
  const float gain = telegraphs
                         ? header.telegraph * header.programmable * header.instrument * header.signal
                         : header.programmable * header.instrument * header.signal * header.gainMultiplier;
  if (gain != 0.0F && std::isfinite(gain)) return gain;
  MessagePopup(GainTitle, NoGain);
  return 1.0F;
}

void FillFacts(const DirectHeader& header, RecordingFacts& facts) {
  facts.operationMode = header.mode;
  facts.sweepSamples = header.samples;
  facts.totalSamples = header.samples;
  facts.episodes = header.mode == GapFreeMode ? 1 : header.episodes;
  facts.channels = header.channels;
  facts.channel = header.channel;
  facts.adcRange = header.range;
  facts.adcResolution = static_cast<float>(header.resolution);
  SetInterval(facts, header.intervalUs / 1000.0F * static_cast<float>(header.channels));
  SetUnits(facts, header.units);
  facts.finalGain = OverallGain(header);
}

void FillInfo(const DirectHeader& header, RecordingFacts& facts) {
  AbfInfo info;
  info.version = static_cast<double>(header.version);
  info.floats = header.floats;
  info.autoSample = header.autoSample ? 1 : 0;
  info.gainMultiplier = static_cast<double>(header.gainMultiplier);
  info.programmableGain = static_cast<double>(header.programmable);
  info.instrumentGain = static_cast<double>(header.instrument);
  info.signalGain = static_cast<double>(header.signal);
  info.scale = static_cast<double>(facts.adcRange / (facts.finalGain * facts.adcResolution));
  info.units = header.units;
  facts.infoLines = AbfInfoLines(facts, info);
}

/// Where the wanted samples lie: sample i at byte `begin` + i x `step`.
struct Layout {
  std::int64_t begin = 0;
  std::int64_t step = 0;
  std::int64_t count = 0;
  bool floats = false;
  float divisor = 1.0F;  // of counts
};

/// Asks by the parse panel for the part of a file that is too long for the trace, or of any file on request.
/// False when the panel was cancelled.
bool ChoosePart(const DirectHeader& header, RecordingFacts& facts) {
  const int ofChannel = header.samples / header.channels;
  facts.parse.skip = header.channels;
  if (ofChannel > MaxStimPoints) facts.parse.requested = 1;
  if (facts.parse.requested == 0) return true;
  const float most = static_cast<float>(MaxParseCount) * static_cast<float>(header.channels);
  const int skip = static_cast<int>(std::ceil(static_cast<float>(header.samples) / most));
  facts.parse = AskParse(facts.path, ofChannel, skip, facts.intervalMs);
  if (facts.parse.result != 1) return false;
  facts.intervalMs = facts.parse.interval;
  return true;
}

/// Returns the place of the first channel or, after the parse panel, of the chosen part.
Layout LayoutOf(const DirectHeader& header, const RecordingFacts& facts) {
  Layout layout;
  layout.begin = static_cast<std::int64_t>(header.dataBlock) * BlockBytes;
  layout.floats = header.floats;
  layout.divisor = facts.finalGain * facts.adcResolution / facts.adcRange;
  layout.step = static_cast<std::int64_t>(header.floats ? 4 : 2) * header.channels;
  layout.count = header.samples / header.channels;
  if (facts.parse.requested == 0) return layout;
  layout.begin += facts.parse.start * layout.step;
  layout.step *= facts.parse.skip;
  layout.count = std::min(facts.parse.count, MaxStimPoints);
  return layout;
}

float ValueAt(const unsigned char* bytes, const Layout& layout) {
  if (layout.floats) return std::bit_cast<float>(LittleEndian32(bytes));
  return static_cast<float>(static_cast<std::int16_t>(LittleEndian16(bytes))) / layout.divisor;
}

/// Reads the samples that the file holds; the number of them.
std::size_t ReadSamples(std::istream& file, const Layout& layout, std::span<float> destination) {
  const std::int64_t width = layout.floats ? 4 : 2;
  const std::int64_t length = LengthOf(file) - layout.begin;
  if (length < width) return 0;
  const std::int64_t held = (length - width) / layout.step + 1;
  const std::int64_t wanted = std::min(
      {layout.count, held, static_cast<std::int64_t>(destination.size()), std::int64_t{MaxStimPoints}});
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

bool AbfDirectRead(const std::string& path, std::span<float> destination) {
  auto file = OpenInput(path);
  if (!file) {
    FileErrorPopup(FileOpenFailed);
    return false;
  }
  if (!HasMark(*file)) {
    FileErrorPopup(WrongFileFormat);
    return false;
  }
  const auto header = ReadHeader(*file);
  if (!header) {
    MessagePopup(WarningTitle, InvalidAbf);
    return false;
  }
  RecordingFacts facts = StoredFacts();
  facts.path = path;
  facts.text = false;
  FillFacts(*header, facts);
  if (!ChoosePart(*header, facts)) return false;
  const bool slow = header->samples > ManySamples;
  if (slow) ShowProgress(0.0, PleaseWait);
  const std::size_t read = ReadSamples(*file, LayoutOf(*header, facts), destination);
  if (slow) ResetProgress();
  if (read == 0) {
    MessagePopup(FileErrorTitle, FormatText(NoSamples, FileNameOf(path).c_str()));
    return false;
  }
  facts.points = static_cast<int>(read);
  FillInfo(*header, facts);
  StoreRecording(facts);
  return true;
}

}  // namespace zelvane
