#include "trace/trace_read.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "formats/recording_file.h"
#include "model/model_store.h"
#include "screen/popups.h"
#include "trace/recording_facts.h"
#include "trace/trace.h"
#include "trace/trace_events.h"
#include "trace/trace_readers.h"
#include "trace/trace_store.h"
#include "trace/trace_write.h"

namespace zelvane {
namespace {

constexpr char NoSuchSweep[] = "%s has no sweep %d; it has %d.";

constexpr char ImportTitle[] = "Import File";
constexpr char ImportQuestion[] = "Import ATF or Ascii File of Floating Point Numbers in pA or pS ?";
constexpr char ResampledWarning[] =
    "The time interval has been changed since last simulation; do NOT refresh data.";

constexpr int ResultAbove = 100;  // a text with more samples is a result

/// Ends the trace after `samples` samples from a file.
void EndTraceAt(std::size_t samples) {
  Trace.TraceFromFile = 1;
  EndSamplesAt(samples);
}

/// Marks the trace as a recording.
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

/// Ends a read that stopped half-way: there is no trace, but the samples so far stay.
void LeaveNoTrace(std::size_t samples) {
  EndTraceAt(samples);
  Trace.TraceValid = 0;
  ShowNoTrace();
}

/// Reads an opened file into the trace and stores its facts.
Reading ReadInto(const OpenedRecording& opened, RecordingFacts facts, Questions questions, bool text) {
  const auto reader = text ? ReadText : ReadBinary;
  const RecordingRead read = reader(opened, std::move(facts), Trace.SimTrace, questions);
  if (read.reading == Reading::Refused) return read.reading;
  StoreRecording(read.facts);
  if (read.reading == Reading::Emptied) LeaveNoTrace(read.kept);
  return read.reading;
}

/// Reads the first episode of the file at `path`, without a display.
Outcome ReadNew(const OpenedRecording& opened, const std::string& path, bool text,
                const std::optional<ReadAnswers>& answers = {}) {
  RecordingFacts facts = StoredFacts();
  facts.path = path;
  facts.episode = 1;
  if (answers) {
    facts.signal = answers->signal;
    facts.channel = FirstChannel;
    facts.intervalLine = !answers->intervalMs;
    facts.typedIntervalMs = answers->intervalMs.value_or(0.0F);
    facts.intervalMs = answers->intervalMs.value_or(facts.intervalMs);  // also for an ATF file without times
  }
  const Questions questions = answers ? Questions::Answered : Questions::Asked;
  switch (ReadInto(opened, std::move(facts), questions, text)) {
    case Reading::Done:
      return Outcome::Done;
    case Reading::Emptied:
      return Outcome::Failed;
    default:
      return Outcome::Refused;
  }
}

/// Reads the file at `path` as a new recording.
Outcome ReadRecording(const std::string& path, const std::optional<ReadAnswers>& answers = {}) {
  const OpenedRecording opened = OpenRecordingFile(path, OpenAs::Recording);
  if (opened.form == RecordingForm::Missing) {
    FileErrorPopup(FileOpenFailed);
    return Outcome::Refused;
  }
  const bool text = opened.form == RecordingForm::Text;
  if (text && !answers && !ConfirmPopup(ImportTitle, ImportQuestion)) return Outcome::Refused;
  const Outcome outcome = ReadNew(opened, path, text, answers);
  if (outcome != Outcome::Done) return outcome;
  BeginRecording();
  RecordingToCorrect.Tell();
  ShowTrace();
  TellTraceCame();
  return outcome;
}

/// Reads an episode of the present recording. When it cannot be read, returns false and keeps the trace.
bool ReadEpisode(int episode) {
  RecordingFacts facts = StoredFacts();
  facts.episode = episode;
  const OpenedRecording opened = OpenRecordingFile(facts.path, facts.text ? OpenAs::Text : OpenAs::Recording);
  if (ReadInto(opened, facts, Questions::AsBefore, facts.text) != Reading::Done) return false;
  BeginRecording();
  RecordingToCorrect.Tell();
  RecordingTaken.Tell();
  return true;
}

}  // namespace

std::optional<SweepRead> SweepReadInto(const std::string& path, std::span<float> destination,
                                       const SweepChoice& choice) {
  const OpenedRecording opened = OpenRecordingFile(path, OpenAs::Recording);
  if (!opened.file) {
    MessagePopup(FileErrorTitle, path + ": " + opened.why);
    return std::nullopt;
  }
  const bool text = opened.form == RecordingForm::Text;
  RecordingFacts facts = StoredFacts();
  facts.path = path;
  facts.episode = choice.sweep;
  facts.channel = choice.channel.value_or(FirstChannel);
  facts.signal = choice.channel.value_or(1);
  facts.intervalLine = !choice.intervalMs;
  facts.typedIntervalMs = choice.intervalMs.value_or(0.0F);
  facts.intervalMs = choice.intervalMs.value_or(facts.intervalMs);
  facts.parse.requested = 0;
  const auto reader = text ? ReadText : ReadBinary;
  const RecordingRead read = reader(opened, std::move(facts), destination, Questions::Answered);
  if (read.reading != Reading::Done) return std::nullopt;
  if (read.facts.episode != choice.sweep) {
    MessagePopup(FileErrorTitle, FormatText(NoSuchSweep, path.c_str(), choice.sweep, read.facts.episodes));
    return std::nullopt;
  }
  StoreRecording(read.facts);
  return SweepRead{read.facts.points, read.facts.intervalMs};
}

std::optional<SweepRead> SweepReadInto(const std::string& path, std::span<float> destination, bool asksText) {
  const OpenedRecording opened = OpenRecordingFile(path, OpenAs::Recording);
  if (opened.form == RecordingForm::Missing) {
    FileErrorPopup(FileOpenFailed);
    return std::nullopt;
  }
  const bool text = opened.form == RecordingForm::Text;
  if (text && asksText && !ConfirmPopup(ImportTitle, ImportQuestion)) return std::nullopt;
  RecordingFacts facts = StoredFacts();
  facts.path = path;
  const auto reader = text ? ReadText : ReadBinary;
  const RecordingRead read = reader(opened, std::move(facts), destination, Questions::Asked);
  if (read.reading != Reading::Refused) StoreRecording(read.facts);
  if (read.reading != Reading::Done) return std::nullopt;
  return SweepRead{read.facts.points, read.facts.intervalMs};
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
  const Outcome outcome = ReadNew(OpenRecordingFile(path, OpenAs::Text), path, true);
  if (outcome != Outcome::Done) return outcome;
  if (Model.NumPoints > ResultAbove) {
    BeginRecording();
    ShowTrace();
    TellTraceCame();
  } else {  // the trace has a few numbers, but this is not a result
    EndTraceAt(static_cast<std::size_t>(Model.NumPoints));
    AdoptRunLength();
    RecordingTaken.Tell();
  }
  return Outcome::Done;
}

Outcome ReadWaveFile(const std::string& path) {
  if (RefusedByAutosave()) return Outcome::Refused;
  Trace.ParseRequested = 0;
  const Outcome outcome = ReadNew(OpenRecordingFile(path, OpenAs::Recording), path, false);
  if (outcome != Outcome::Done) return outcome;
  BeginRecording();
  ShowTrace();
  TellTraceCame();
  return Outcome::Done;
}

bool ReadAllEpisodes(const std::string& path) {
  TellTraceWillChange();
  ClearSamples(Trace.SimTraceUsed);
  Trace.TraceValid = 0;
  Trace.TraceParsed = 0;
  Trace.RsCorrected = 0;
  Trace.RcFiltered = 0;
  Trace.EpisodeIndex = 1;
  if (!AbfDirectRead(path, Trace.SimTrace)) {
    Trace.TraceFileName.clear();  // the samples of the former recording are gone
    Trace.EpisodeCount = 1;
    ShowNoTrace();
    return false;
  }
  BeginRecording();
  RecordingTaken.Tell();
  return true;
}

Outcome TraceReloadEpisode() {
  if (Trace.TraceFileName.empty()) return Outcome::Refused;
  return ReadEpisode(Trace.EpisodeIndex) ? Outcome::Done : Outcome::Failed;
}

Outcome GoToEpisode(int episode) {
  if (Trace.TraceFileName.empty()) return Outcome::Refused;
  const int former = Trace.EpisodeIndex;
  int wanted = episode;
  if (episode < 1) wanted = Trace.EpisodeCount;
  if (episode > Trace.EpisodeCount) wanted = 1;
  if (!ReadEpisode(wanted)) {
    Trace.EpisodeIndex = former;
    RecordingTaken.Tell();
    return Outcome::Failed;
  }
  ShowTrace();
  TellTraceCame();
  return Outcome::Done;
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
  AdoptRunLength();
  Trace.TraceParsed = 1;
  ShowTrace();
  MessagePopup(WarningTitle, ResampledWarning);
}

void EraseTrace() {
  TellTraceWillChange();
  ClearSamples(Model.NumPoints);
  Trace.TraceValid = 0;
  ShowNoTrace();
}

}  // namespace zelvane
