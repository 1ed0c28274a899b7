// The reader of text recordings: its questions, and what it leaves in the stores.
#include <algorithm>

#include "formats/input_file.h"
#include "formats/text_recording.h"
#include "model/model_store.h"
#include "platform/file_names.h"
#include "screen/popups.h"
#include "trace/trace_dialogs.h"
#include "trace/trace_events.h"
#include "trace/trace_read.h"
#include "trace/trace_readers.h"

namespace zelvane {
namespace {

constexpr char SignalQuestion[] =
    "%s contains %u signals: %s\nTo read in the first signal, enter 1.\nTo read the second signal, enter 2, "
    "and "
    "so forth.\nThen click OK.";
constexpr char IntervalTitle[] = "Get ADinterval";
constexpr char IntervalLineQuestion[] = "Read First Value of 1-column Ascii file as AD interval in ms ?";
constexpr char TypeInterval[] = "Enter the time between samples and a factor that multiplies each of them.";
constexpr char NoIntervalColumn[] = "You need to supply a time interval for this data.";
constexpr MessageTitle StepsTitle{MessageKind::Warning, "! Incomaptible format"};
constexpr char UnequalSteps[] =
    "The x intervals are not equal, are too small (<1e6) or are too large (>1e6).";

constexpr char NotRead[] = "%s was not read: %s";
constexpr char ReadUpTo[] = "%s was read up to line %zu, which is not a row of numbers.";
constexpr char NotAnInterval[] = "The time between samples must be above 0 ms.";

constexpr int ResultAbove = 100;  // a text of more samples is a result

void TellNotRead(const std::string& path, const std::string& why) {
  MessagePopup(FileErrorTitle, FormatText(NotRead, FileNameOf(path).c_str(), why.c_str()));
}

/// Tells of a line that ended the reading.
void TellReadUpTo(const std::string& path, const TextSamples& read) {
  if (read.badLine == 0) return;
  MessagePopup(WarningTitle, FormatText(ReadUpTo, FileNameOf(path).c_str(), read.badLine));
}

/// The samples of each episode, from rows that hold one of each.
std::vector<std::vector<float>> Separated(const std::vector<float>& rows, std::size_t episodes) {
  std::vector<std::vector<float>> separated(episodes);
  for (std::vector<float>& episode : separated) episode.reserve(rows.size() / episodes);
  for (std::size_t k = 0; k < rows.size(); ++k) separated[k % episodes].push_back(rows[k]);
  return separated;
}

bool ChooseSignal(const std::string& path, const TextShape& shape, Questions questions) {
  if (questions == Questions::AsBefore) return true;
  if (questions == Questions::Asked || shape.signals < 2) Trace.RecordedSignal = 1;
  if (questions == Questions::Answered || shape.signals < 2) return true;
  const auto answer = AskSignal(FormatText(SignalQuestion, FileNameOf(path).c_str(),
                                           static_cast<unsigned>(shape.signals), shape.signalList.c_str()),
                                1);
  Trace.RecordedSignal = answer.value_or(1);
  return answer.has_value();
}

/// Settles where a column of numbers has its interval from.
bool ChooseInterval(Questions questions) {
  if (questions == Questions::AsBefore) {
    if (Trace.IntervalLine == 0) Model.ADInterval = Trace.TypedInterval;
    return true;
  }
  const bool asked = questions == Questions::Asked;
  if (asked) Trace.IntervalLine = ConfirmPopup(IntervalTitle, IntervalLineQuestion) ? 1 : 0;
  if (Trace.IntervalLine != 0) return true;
  Trace.ScaleFactor = 1.0F;
  if (!asked) Model.ADInterval = Trace.TypedInterval;
  if (asked && !AskInterval(TypeInterval)) return false;
  if (!(Model.ADInterval > 0.0F)) {
    MessagePopup(ErrorTitle, NotAnInterval);
    return false;
  }
  Trace.TypedInterval = Model.ADInterval;
  return true;
}

/// Puts the questions that a text of this shape raises. False when the user cancels.
bool AskAboutText(const std::string& path, const TextShape& shape, Questions questions) {
  if (!shape.atf) return ChooseInterval(questions);
  if (!ChooseSignal(path, shape, questions)) return false;
  if (shape.columns == 1 && questions != Questions::AsBefore) MessagePopup(WarningTitle, NoIntervalColumn);
  return true;
}

TextRequest RequestFor(const TextShape& shape, std::size_t capacity) {
  TextRequest request;
  request.signal = Trace.RecordedSignal;
  request.episode = Trace.EpisodeIndex;
  request.intervalLine = !shape.atf && Trace.IntervalLine != 0;
  if (!shape.atf && Trace.IntervalLine == 0) request.scale = Trace.ScaleFactor;
  const std::size_t spared = shape.atf ? 2 : 1;
  request.most = capacity - std::min(capacity, spared);
  return request;
}

/// Whether the trace ends in a sample of 0 behind those of the text. It does so for an ATF of one column of
/// data and for a column whose first line is the interval.
bool EndsInZero(const TextShape& shape) {
  return shape.atf ? shape.columns <= 2 : Trace.IntervalLine != 0;
}

void TakeTextFields(const TextShape& shape, const TextSamples& read) {
  const int samples = static_cast<int>(read.samples.size());
  Trace.EpisodeCount = shape.episodes;
  Trace.EpisodeIndex = std::clamp(Trace.EpisodeIndex, 1, Trace.EpisodeCount);
  Trace.RecordedChannels = shape.signals;
  Trace.SweepSamples = samples;
  Trace.TotalSamples = samples;
  Trace.OperationMode = shape.episodes > 1 ? EpisodicMode : GapFreeMode;
  Trace.ParseResult = 0;
  if (read.intervalMs) Model.ADInterval = static_cast<float>(*read.intervalMs);
}

void TakeTextInfo(const TextShape& shape) {
  Trace.FileInfo = {shape.atf ? "ATF File" : "One number a line"};
  if (shape.atf) Trace.FileInfo.push_back(FormatText("Number of signals %d", shape.signals));
  if (!shape.signalList.empty()) Trace.FileInfo.push_back("Signals " + shape.signalList);
  Trace.FileInfo.push_back(FormatText("Number of episodes %d", shape.episodes));
  Trace.FileInfo.push_back(FormatText("Number of samples/episode %d", Trace.SweepSamples));
  Trace.FileInfo.push_back(
      FormatText("Digitization interval (ms) %f", static_cast<double>(Model.ADInterval)));
}

Reading TakeText(const std::string& path, TextRecording& text, std::span<float> destination,
                 std::size_t& kept) {
  const TextShape& shape = text.Shape();
  const TextSamples read = text.Read(RequestFor(shape, destination.size()));
  if (read.samples.empty()) {
    TellNotRead(path, WhyNoSamples(shape, read));
    return Reading::Refused;
  }
  kept = read.samples.size();
  std::copy(read.samples.begin(), read.samples.end(), destination.begin());
  TakeTextFields(shape, read);
  if (read.unequalSteps) {
    MessagePopup(StepsTitle, UnequalSteps);
    return Reading::Emptied;
  }
  if (EndsInZero(shape)) destination[kept++] = 0.0F;
  Model.NumPoints = static_cast<int>(kept);
  TakeTextInfo(shape);
  TellReadUpTo(path, read);
  return Reading::Done;
}

}  // namespace

Reading ReadText(std::span<float> destination, const std::string& path, Questions questions,
                 std::size_t& kept) {
  FormerFile former;
  auto file = OpenInput(path);
  if (!file) {
    FileErrorPopup(FileOpenFailed);
    return Reading::Refused;
  }
  TextRecording text(*file);
  if (!text.Refusal().empty()) {
    TellNotRead(path, text.Refusal());
    return Reading::Refused;
  }
  if (!AskAboutText(path, text.Shape(), questions)) return Reading::Refused;
  const Reading reading = TakeText(path, text, destination, kept);
  if (reading != Reading::Refused) former.Keep();
  return reading;
}

std::vector<std::vector<float>> ReadTextEpisodes() {
  const std::string& path = Trace.TraceFileName;
  auto file = OpenInput(path);
  if (!file) {
    FileErrorPopup(FileOpenFailed);
    return {};
  }
  TextRecording text(*file);
  if (!text.Refusal().empty()) {
    TellNotRead(path, text.Refusal());
    return {};
  }
  TextRequest request = RequestFor(text.Shape(), Trace.SimTrace.size());
  request.episode = 1;
  request.episodes = text.Shape().episodes;
  const TextSamples read = text.Read(request);
  TellReadUpTo(path, read);
  return Separated(read.samples, static_cast<std::size_t>(request.episodes));
}

int TextTraceRead(std::span<float> destination, const std::string& path) {
  std::size_t kept = 0;
  const Reading reading = ReadText(destination, path, Questions::Asked, kept);
  if (reading == Reading::Done) RecordingTaken.Tell();
  return reading == Reading::Done && IsResult(Model.NumPoints) ? 1 : 0;
}

bool IsResult(int samples) {
  return samples > ResultAbove;
}

}  // namespace zelvane
