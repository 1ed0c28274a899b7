#include "trace/trace_read.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>

#include "formats/input_file.h"
#include "model/model_store.h"
#include "screen/popups.h"
#include "trace/trace.h"
#include "trace/trace_events.h"
#include "trace/trace_readers.h"
#include "trace/trace_store.h"
#include "trace/trace_write.h"

namespace zelvane {
namespace {

constexpr char ImportTitle[] = "Import File";
constexpr char ImportQuestion[] = "Import ATF or Ascii File of Floating Point Numbers in pA or pS ?";
constexpr char ResampledWarning[] =
    "The time interval has been changed since last simulation; do NOT refresh data.";

enum class FileKind { Unreadable, Binary, Text };

/// The first three bytes of a file, fewer of a shorter one. Nothing when it cannot be opened.
std::optional<std::string> MarkOf(const std::string& path) {
  auto file = OpenInput(path);
  if (!file) return std::nullopt;
  std::array<char, 3> mark{};
  file->read(mark.data(), mark.size());
  return std::string(mark.data(), static_cast<std::size_t>(file->gcount()));
}

/// Tells by them which reader takes the file.
FileKind KindOf(const std::string& path) {
  const auto mark = MarkOf(path);
  if (!mark) return FileKind::Unreadable;
  return *mark == "OBF" || *mark == "ABF" ? FileKind::Binary : FileKind::Text;
}

/// The first `samples` samples have come from a file.
void EndTraceAt(std::size_t samples) {
  Trace.TraceFromFile = 1;
  EndSamplesAt(samples);
}

/// The trace holds a file from here on.
void BeginRecording() {
  EndTraceAt(static_cast<std::size_t>(Model.NumPoints));
  BeginTrace(TraceOrigin::Recording);
  RecordingCameIn.Tell();
}

void ShowTrace() {
  RecordingTaken.Tell();
  TraceToPlot.Tell(true);
}

void ShowNoTrace() {
  RecordingTaken.Tell();
  TraceGone.Tell();
}

/// A read that was given up half-way leaves no trace, though the samples read so far stay.
void LeaveNoTrace(std::size_t samples) {
  EndTraceAt(samples);
  Trace.TraceValid = 0;
  ShowNoTrace();
}

/// Reads `Trace.TraceFileName` into the trace by the reader of `text`.
Reading ReadInto(bool text, Questions questions) {
  std::size_t kept = 0;
  const Reading reading = text ? ReadText(Trace.SimTrace, Trace.TraceFileName, questions, kept)
                               : ReadBinary(Trace.TraceFileName, Trace.SimTrace, questions);
  if (reading == Reading::Emptied) LeaveNoTrace(kept);
  return reading;
}

/// Puts the answers of a caller where the readers look for them.
void StoreAnswers(const ReadAnswers& answers) {
  Trace.RecordedSignal = answers.signal;
  Trace.IntervalLine = answers.intervalMs ? 0 : 1;
  Trace.TypedInterval = answers.intervalMs.value_or(0.0F);
  if (answers.intervalMs) Model.ADInterval = *answers.intervalMs;  // also of an ATF file without times
}

/// Reads the first episode of the file at `path`. Nothing is to be shown of it unless Done.
Outcome ReadNew(bool text, const std::string& path, const std::optional<ReadAnswers>& answers = {}) {
  FormerFile former;
  Trace.TraceFileName = path;
  Trace.EpisodeIndex = 1;
  if (answers) StoreAnswers(*answers);
  const Reading reading = ReadInto(text, answers ? Questions::Answered : Questions::Asked);
  if (reading == Reading::Refused) return Outcome::Refused;
  former.Keep();
  Trace.TraceIsText = text ? 1 : 0;
  return reading == Reading::Done ? Outcome::Done : Outcome::Failed;
}

/// Reads the file at `path` as a new recording.
Outcome ReadRecording(const std::string& path, const std::optional<ReadAnswers>& answers = {}) {
  const FileKind kind = KindOf(path);
  if (kind == FileKind::Unreadable) {
    FileErrorPopup(FileOpenFailed);
    return Outcome::Refused;
  }
  const bool text = kind == FileKind::Text;
  if (text && !answers && !ConfirmPopup(ImportTitle, ImportQuestion)) return Outcome::Refused;
  const Outcome outcome = ReadNew(text, path, answers);
  if (outcome != Outcome::Done) return outcome;
  BeginRecording();
  RecordingToCorrect.Tell();
  ShowTrace();
  TellTraceCame();
  return outcome;
}

/// Reads the present episode again. False when it cannot be read; the trace then stays.
bool ReloadEpisode() {
  if (Trace.TraceFileName.empty()) return false;
  if (ReadInto(Trace.TraceIsText != 0, Questions::AsBefore) != Reading::Done) return false;
  BeginRecording();
  RecordingToCorrect.Tell();
  RecordingTaken.Tell();
  return true;
}

}  // namespace

bool BeginsLikeRecording(const std::string& path) {
  const auto mark = MarkOf(path);
  return mark && (*mark == "OBF" || *mark == "ABF" || *mark == "ATF");
}

Outcome TraceRead(const std::string& path) {
  return RefusedByAutosave() ? Outcome::Refused : ReadRecording(path);
}

Outcome TraceReadFile(const std::string& path, const std::optional<ReadAnswers>& answers) {
  if (RefusedByAutosave()) return Outcome::Refused;
  Trace.ParseRequested = 0;
  const Outcome outcome = ReadRecording(path, answers);
  if (outcome == Outcome::Done) WholeTraceToShow.Tell();
  return outcome;
}

Outcome ReadAsciiData(const std::string& path) {
  if (RefusedByAutosave()) return Outcome::Refused;
  const Outcome outcome = ReadNew(true, path);
  if (outcome != Outcome::Done) return outcome;
  if (IsResult(Model.NumPoints)) {
    BeginRecording();
    ShowTrace();
    TellTraceCame();
  } else {  // a handful of numbers: they stand in the trace, which is no result for it
    EndTraceAt(static_cast<std::size_t>(Model.NumPoints));
    RecordingTaken.Tell();
  }
  return Outcome::Done;
}

Outcome ReadWaveFile(const std::string& path) {
  if (RefusedByAutosave()) return Outcome::Refused;
  Trace.ParseRequested = 0;
  const Outcome outcome = ReadNew(false, path);
  if (outcome != Outcome::Done) return outcome;
  BeginRecording();
  ShowTrace();
  TellTraceCame();
  return Outcome::Done;
}

void TraceReloadEpisode() {
  ReloadEpisode();
}

void GoToEpisode(int episode) {
  if (Trace.TraceFileName.empty()) return;
  const int former = Trace.EpisodeIndex;
  Trace.EpisodeIndex = episode;
  if (episode < 1) Trace.EpisodeIndex = Trace.EpisodeCount;
  if (episode > Trace.EpisodeCount) Trace.EpisodeIndex = 1;
  if (!ReloadEpisode()) {
    Trace.EpisodeIndex = former;
    RecordingTaken.Tell();
    return;
  }
  ShowTrace();
  TellTraceCame();
}

void StepEpisode(int by) {
  GoToEpisode(Trace.EpisodeIndex + by);
}

void ParseTrace() {
  const auto points = static_cast<std::size_t>(std::clamp(Model.NumPoints, 0, MaxStimPoints));
  if (points == 0) return;
  const int skip = std::clamp(Trace.ParseConstant, 1, MaxStimPoints);
  const std::span<float> trace = Trace.SimTrace;
  std::size_t kept = 0;
  for (std::size_t k = 0; k < points; k += static_cast<std::size_t>(skip)) trace[kept++] = trace[k];
  Model.NumPoints = static_cast<int>(kept);
  Model.ADInterval *= static_cast<float>(skip);
  EndTraceAt(kept);
  Trace.TraceParsed = 1;
  ShowTrace();
  MessagePopup(WarningTitle, ResampledWarning);
}

void EraseTrace() {
  TellTraceChanges();
  ClearSamples(Model.NumPoints);
  Trace.TraceValid = 0;
  ShowNoTrace();
}

}  // namespace zelvane
