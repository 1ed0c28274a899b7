// The reader of binary recordings: ABF by its library, OBF from its own layout.
#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

#include "formats/abf/abf.h"
#include "formats/input_file.h"
#include "formats/obf_file.h"
#include "model/model_store.h"
#include "platform/file_names.h"
#include "screen/popups.h"
#include "trace/parse_rules.h"
#include "trace/trace_dialogs.h"
#include "trace/trace_read.h"
#include "trace/trace_readers.h"

namespace zelvane {
namespace {

constexpr MessageTitle OpenTitle{MessageKind::Error, "Read Error!"};
constexpr char NotOpened[] = "%s could not be opened";
constexpr MessageTitle BinaryTitle{MessageKind::Information, "Read Binary"};
constexpr char NotAbf[] = "%s is not a valid ABF file\nProceeding to read binary (NOT ABF)";
constexpr char Truncated[] = "Binary file was truncated to fit into memory.";
constexpr char ChannelQuestion[] =
    "%s contains %u channels.\nThe channels with data are: %sTo read in channel %u, click OK.\nOtherwise "
    "enter "
    "the number of the channel to read in and then click OK.";

constexpr char NoSamples[] = "%s holds no samples.";
constexpr char NoSuchChannel[] = "%s holds no channel %d.";
constexpr char PleaseWait[] = "Please wait";

constexpr int MaxUncountedSamples = MaxStimPoints;  // a longer file goes through the parse panel
constexpr int BlockSamples = 65536;

Reading Refuse(MessageTitle title, const std::string& text) {
  MessagePopup(title, text);
  return Reading::Refused;
}

// -- ABF --

/// An open ABF file and what its header told.
struct OpenAbf {
  AbfHandle file;
  AbfHeader header;
  int samplesPerSweep = 0;
  int sweeps = 1;
  bool floats = false;
};

/// The physical inputs of the recording, in their order.
std::vector<int> ChannelsOf(const AbfHeader& header) {
  const auto& sequence = header.samplingSequence;
  return {sequence.begin(), std::find(sequence.begin(), sequence.end(), -1)};
}

bool Holds(const std::vector<int>& channels, int channel) {
  return std::find(channels.begin(), channels.end(), channel) != channels.end();
}

/// Sets `Trace.RecordedChannel`: the only one, the one read before, or the one that the user chooses.
bool ChooseChannel(const AbfHeader& header, Questions questions) {
  const std::vector<int> channels = ChannelsOf(header);
  if (channels.empty()) return false;
  if (questions == Questions::AsBefore && Holds(channels, Trace.RecordedChannel)) return true;
  Trace.RecordedChannel = channels.front();
  if (channels.size() < 2) return true;
  std::string list;
  for (const int channel : channels) list += FormatText("%d ", channel);
  const auto proposed = static_cast<unsigned>(channels.front());
  const auto answer =
      AskChannel(FormatText(ChannelQuestion, Trace.TraceFileName.c_str(),
                            static_cast<unsigned>(channels.size()), (list + '\n').c_str(), proposed),
                 channels.front());
  if (!answer) return false;
  if (!Holds(channels, *answer)) {
    MessagePopup(FileErrorTitle, FormatText(NoSuchChannel, FileNameOf(Trace.TraceFileName).c_str(), *answer));
    return false;
  }
  Trace.RecordedChannel = *answer;
  return true;
}

/// Overall gain by the scale of the channel; 1 where the file gives no scale to divide by.
float GainOf(float scale) {
  const float gain = Trace.AdcRange / (scale * Trace.AdcResolution);
  return std::isfinite(gain) ? gain : 1.0F;
}

void TakeAbfFields(const OpenAbf& abf) {
  const AbfHeader& header = abf.header;
  Trace.OperationMode = header.operationMode;
  Trace.SweepSamples = abf.samplesPerSweep;
  Trace.EpisodeCount = abf.sweeps;
  if (header.operationMode == GapFreeMode) {
    Trace.SweepSamples = Trace.TotalSamples / Trace.RecordedChannels;
    Trace.EpisodeCount = 1;
  }
  Trace.EpisodeIndex = std::clamp(Trace.EpisodeIndex, 1, Trace.EpisodeCount);
  Trace.AdcResolution = static_cast<float>(header.adcResolution);
  Trace.AdcRange = header.adcRange;
  TakeInterval(static_cast<float>(header.sampleInterval / 1000.0));
  TakeTraceUnits(header.channelUnits[static_cast<std::size_t>(Trace.RecordedChannel)]);
}

void TakeInfo(const OpenAbf& abf) {
  AbfInfo info;
  float scale = 1.0F;
  float offset = 0.0F;
  GetADCScaleFactor(abf.header, Trace.RecordedChannel, scale, offset);
  Trace.FinalGain = GainOf(scale);
  info.floats = abf.floats;
  info.scale = static_cast<double>(scale);
  info.units = abf.header.channelUnits[static_cast<std::size_t>(Trace.RecordedChannel)];
  TakeAbfInfo(info);
}

/// Which samples of the episode are kept: from `first`, every `skip`-th of `span`.
struct Selection {
  int first = 0;
  int span = 0;
  int skip = 1;

  int Kept() const { return span / skip + (span % skip != 0 ? 1 : 0); }
};

/// The whole episode or, after the parse panel, what that was set to. False when the panel was cancelled.
bool SelectSamples(int episodeSamples, Questions questions, Selection& selection) {
  selection.span = episodeSamples;
  const bool again = questions == Questions::AsBefore;
  if (!again) {
    Trace.ParseResult = 0;
    Trace.ParseSkip = 1;
    if (Trace.SweepSamples > MaxUncountedSamples) Trace.ParseRequested = 1;
    if (Trace.ParseRequested != 0) {
      const float skip =
          std::ceil(static_cast<float>(Trace.SweepSamples) / static_cast<float>(MaxParseCount));
      BeginParse(Trace.SweepSamples, static_cast<int>(skip));
      AskParse();
      if (Trace.ParseResult != 1) return false;
    }
  }
  if (Trace.ParseResult != 1) return true;
  Trace.ParseInterval = Model.ADInterval * static_cast<float>(Trace.ParseSkip);
  Model.ADInterval = Trace.ParseInterval;
  selection.skip = Trace.ParseSkip;
  selection.first = std::min(Trace.ParseStart, episodeSamples);
  const std::int64_t wanted = static_cast<std::int64_t>(Trace.ParseSkip) * Trace.ParseCount;
  selection.span = static_cast<int>(std::min<std::int64_t>(wanted, episodeSamples - selection.first));
  return true;
}

/// Reads every `skip`-th sample in blocks; a block begins with a sample that is kept.
int ReadSkipping(const AbfFile& file, const Selection& selection, std::span<float> destination) {
  const int stride = selection.skip;
  const int block = stride >= BlockSamples ? 1 : BlockSamples / stride * stride;
  const int step = std::max(block, stride);
  std::vector<float> buffer(static_cast<std::size_t>(block));
  std::size_t kept = 0;
  for (std::int64_t k = 0; k < selection.span && kept < destination.size(); k += step) {
    const int read = ReadSweep(file, Trace.RecordedChannel, Trace.EpisodeIndex,
                               selection.first + static_cast<int>(k), buffer);
    for (int i = 0; i < read && k + i < selection.span && kept < destination.size(); i += stride) {
      destination[kept++] = buffer[static_cast<std::size_t>(i)];
    }
    if (read < block) break;
  }
  return static_cast<int>(kept);
}

int ReadSamples(const AbfFile& file, const Selection& selection, std::span<float> destination) {
  const std::size_t most = std::min(destination.size(), static_cast<std::size_t>(MaxStimPoints));
  const std::span<float> front =
      destination.first(std::min(most, static_cast<std::size_t>(selection.Kept())));
  if (selection.skip == 1) {
    return ReadSweep(file, Trace.RecordedChannel, Trace.EpisodeIndex, selection.first, front);
  }
  return ReadSkipping(file, selection, front);
}

void CutSweep(std::size_t capacity, Questions questions) {
  if (static_cast<std::size_t>(Trace.SweepSamples) <= capacity) return;
  Trace.SweepSamples = static_cast<int>(capacity);
  if (questions != Questions::AsBefore) MessagePopup(NoticeTitle, Truncated);
}

bool OpenAndCount(OpenAbf& abf) {
  InitializeHeader(abf.header);
  abf.file = OpenABFFile(Trace.TraceFileName, abf.header, abf.samplesPerSweep, abf.sweeps);
  if (!abf.file) {
    MessagePopup(OpenTitle, FormatText(NotOpened, Trace.TraceFileName.c_str()));
    return false;
  }
  std::int64_t total = 0;
  if (!GetActualSamples(*abf.file, total) || total <= 0 || abf.header.channels < 1) {
    MessagePopup(FileErrorTitle, FormatText(NoSamples, FileNameOf(Trace.TraceFileName).c_str()));
    return false;
  }
  Trace.TotalSamples = static_cast<int>(std::min<std::int64_t>(total, std::numeric_limits<int>::max()));
  Trace.RecordedChannels = abf.header.channels;
  return true;
}

Reading ReadAbf(std::span<float> destination, Questions questions, bool floats) {
  OpenAbf abf;
  abf.floats = floats;
  if (!OpenAndCount(abf) || !ChooseChannel(abf.header, questions)) return Reading::Refused;
  TakeAbfFields(abf);
  const int episodeSamples = SweepLength(*abf.file, Trace.EpisodeIndex);
  if (episodeSamples < 1) {
    return Refuse(FileErrorTitle, FormatText(NoSamples, FileNameOf(Trace.TraceFileName).c_str()));
  }
  Selection selection;
  if (!SelectSamples(episodeSamples, questions, selection)) {
    TakeInfo(abf);
    return Reading::Emptied;
  }
  const bool slow = selection.span > MaxUncountedSamples;
  if (slow) ShowProgress(0.0, PleaseWait);
  CutSweep(destination.size(), questions);
  const int read = ReadSamples(*abf.file, selection, destination);
  if (slow) ResetProgress();
  if (read < 1) return Refuse(FileErrorTitle, FormatText(NoSamples, FileNameOf(Trace.TraceFileName).c_str()));
  Model.NumPoints = read;
  TakeInfo(abf);
  CloseABFFile(abf.file);
  return Reading::Done;
}

// -- OBF --

/// The fields of the header that can be; the others keep their former values.
void TakeObfFields(const ObfHeader& header) {
  if (header.numRuns && *header.numRuns > 0) Model.NumRuns = *header.numRuns;
  if (header.intervalMs && std::isfinite(*header.intervalMs) && *header.intervalMs > 0.0F) {
    Model.ADInterval = *header.intervalMs;
  }
  Trace.RecordedChannels = 1;
  Trace.EpisodeCount = 1;
  Trace.EpisodeIndex = 1;
  Trace.OperationMode = GapFreeMode;
  Trace.ParseResult = 0;
}

void TakeObfInfo(int read) {
  Trace.SweepSamples = read;
  Trace.TotalSamples = read;
  Trace.FileInfo = {"OBF File", FormatText("Number of runs %d", Model.NumRuns),
                    FormatText("Total number of pts %d", read),
                    FormatText("Digitization interval (ms) %f", static_cast<double>(Model.ADInterval))};
}

Reading ReadObf(std::span<float> destination, Questions questions) {
  if (questions != Questions::AsBefore) {
    MessagePopup(BinaryTitle, FormatText(NotAbf, Trace.TraceFileName.c_str()));
  }
  auto file = OpenInput(Trace.TraceFileName);
  if (!file) {
    FileErrorPopup(FileOpenFailed);
    return Reading::Refused;
  }
  const ObfHeader header = ReadObfHeader(*file);
  if (!header.marked) {  // neither an ABF file that can be read nor one of the program's own
    FileErrorPopup(WrongFileFormat);
    return Reading::Refused;
  }
  TakeObfFields(header);
  const std::int64_t points = header.numPoints.value_or(Model.NumPoints);
  const std::size_t most = std::min(destination.size(), static_cast<std::size_t>(MaxStimPoints));
  const std::size_t read = ReadObfSamples(*file, 0, Model.NumRuns * points, destination.first(most));
  if (read == 0)
    return Refuse(FileErrorTitle, FormatText(NoSamples, FileNameOf(Trace.TraceFileName).c_str()));
  Model.NumPoints = static_cast<int>(read);
  TakeObfInfo(Model.NumPoints);
  return Reading::Done;
}

}  // namespace

Reading ReadBinary(const std::string& path, std::span<float> destination, Questions questions) {
  FormerFile former;
  Trace.TraceFileName = path;
  int format = AbfIntegers;
  const Reading reading = IsABFFile(path, format) ? ReadAbf(destination, questions, format == AbfFloats)
                                                  : ReadObf(destination, questions);
  if (reading == Reading::Refused) return reading;
  former.Keep();
  Trace.TraceIsText = 0;  // whoever reads the file again reads it so
  return reading;
}

bool BinaryTraceRead(const std::string& path, std::span<float> destination) {
  return ReadBinary(path, destination, Questions::Asked) == Reading::Done;
}

}  // namespace zelvane
