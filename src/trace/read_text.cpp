// The reader of text recordings: ATF, and one number per line.
#include <algorithm>
#include <utility>

#include "platform/file_names.h"
#include "screen/popups.h"
#include "screen/save_file.h"
#include "trace/trace_dialogs.h"
#include "trace/trace_read.h"
#include "trace/trace_readers.h"
#include "trace/trace_store.h"

namespace zelvane {
namespace {

constexpr char NoIntervalColumn[] = "You need to supply a time interval for this data.";
constexpr MessageTitle StepsTitle{MessageKind::Warning, "! Incomaptible format"};
constexpr char UnequalSteps[] =
    "The x intervals are not equal, are too small (<1e6) or are too large (>1e6).";

constexpr char NotAnInterval[] = "The time between samples must be above 0 ms.";
constexpr char ReadUpTo[] = "%s was read up to line %zu, which is not a row of numbers.";

/// Shows which line ended the read, notes that the file is not whole, or shows that it has more samples than the
/// trace.
void TellEnd(const std::string& path, const RecordingAccount& account) {
  if (account.text.truncated) MessagePopup(NoticeTitle, TruncatedFile);
  if (account.text.badLine != 0) {
    MessagePopup(WarningTitle, FormatText(ReadUpTo, FileNameOf(path).c_str(), account.text.badLine));
  } else if (!account.note.empty()) {
    Note(FileNameOf(path) + ' ' + account.note + '.');
  }
}

/// Returns whether the text was opened; otherwise shows the reason.
bool CheckOpened(const OpenedRecording& opened, const std::string& path) {
  if (opened.form == RecordingForm::Missing) {
    FileErrorPopup(FileOpenFailed);
  } else if (opened.file == nullptr) {
    TellNotRead(path, opened.why);
  }
  return opened.file != nullptr;
}

bool ChooseSignal(const RecordingAccount& account, Questions questions, RecordingFacts& facts) {
  const bool several = account.inputs.size() > 1;
  if (questions == Questions::AsBefore) return true;
  if (questions == Questions::Asked || !several) facts.signal = 1;
  if (questions == Questions::Answered || !several) return true;
  const auto answer = AskSignal(facts.path, account);
  facts.signal = answer.value_or(1);
  return answer.has_value();
}

/// Sets the source of the interval of a column of numbers. Returns false on cancel and, after a message, for
/// an interval that is not above 0.
bool ChooseInterval(Questions questions, RecordingFacts& facts) {
  if (questions == Questions::Asked) {
    const auto answer = AskColumnInterval();
    if (!answer) return false;
    facts.intervalLine = answer->firstLine;
    if (!facts.intervalLine) facts.typedIntervalMs = answer->intervalMs;
    if (!facts.intervalLine) facts.scale = answer->scale;
  }
  if (facts.intervalLine) return true;
  if (questions == Questions::Answered) facts.scale = 1.0F;
  facts.intervalMs = facts.typedIntervalMs;
  if (questions == Questions::AsBefore || facts.intervalMs > 0.0F) return true;
  MessagePopup(ErrorTitle, NotAnInterval);
  return false;
}

/// Asks the open questions about a text of this shape. Returns false when the user cancels.
bool AskAboutText(const RecordingAccount& account, Questions questions, RecordingFacts& facts) {
  if (!account.text.atf) return ChooseInterval(questions, facts);
  if (!ChooseSignal(account, questions, facts)) return false;
  if (account.text.columns == 1 && questions != Questions::AsBefore)
    MessagePopup(WarningTitle, NoIntervalColumn);
  return true;
}

/// Leaves room after the samples: two for an ATF, one for a column.
TextReading ReadingOf(const RecordingFacts& facts, bool atf, std::size_t capacity) {
  const std::size_t spared = atf ? 2 : 1;
  return {.intervalLine = facts.intervalLine,
          .scale = facts.intervalLine ? 1.0F : facts.scale,
          .most = capacity - std::min(capacity, spared)};
}

/// Returns whether the trace gets a sample of 0 after those of the text: for an ATF with one column of data,
/// and for a column whose first line is the interval.
bool EndsInZero(const TextFacts& text, bool intervalLine) {
  return text.atf ? text.columns <= 2 : intervalLine;
}

void FillTextFacts(const RecordingAccount& account, std::size_t read, RecordingFacts& facts) {
  facts.episodes = account.sweeps;
  facts.channels = static_cast<int>(account.inputs.size());
  facts.sweepSamples = static_cast<int>(read);
  facts.totalSamples = facts.sweepSamples;
  facts.operationMode = account.sweeps > 1 ? EpisodicMode : GapFreeMode;
  facts.parse.result = 0;
  if (account.intervalMs > 0.0) facts.intervalMs = static_cast<float>(account.intervalMs);
}

std::vector<std::string> TextInfoLines(const TextFacts& text, const RecordingFacts& facts) {
  std::vector<std::string> lines = {text.atf ? "ATF File" : "One number a line"};
  if (text.atf) lines.push_back(FormatText("Number of signals %d", facts.channels));
  if (!text.signalList.empty()) lines.push_back("Signals " + text.signalList);
  lines.push_back(FormatText("Number of episodes %d", facts.episodes));
  lines.push_back(FormatText("Number of samples/episode %d", facts.sweepSamples));
  lines.push_back(FormatText("Digitization interval (ms) %f", static_cast<double>(facts.intervalMs)));
  return lines;
}

}  // namespace

RecordingRead ReadText(const OpenedRecording& opened, RecordingFacts facts, std::span<float> destination,
                       Questions questions) {
  facts.text = true;
  if (!CheckOpened(opened, facts.path)) return {};
  RecordingFile& file = *opened.file;
  const RecordingAccount& account = file.Account();
  if (!AskAboutText(account, questions, facts)) return {};
  facts.episode = std::clamp(facts.episode, 1, account.sweeps);
  file.SetTextReading(ReadingOf(facts, account.text.atf, destination.size()));
  std::string why;
  if (!file.Load(facts.signal, facts.episode, facts.episode, why) && !account.text.unequalSteps) {
    TellNotRead(facts.path, why);
    return {};
  }
  std::size_t kept = file.Read(facts.signal, facts.episode, 0, destination);
  FillTextFacts(account, kept, facts);
  if (account.text.unequalSteps) {
    MessagePopup(StepsTitle, UnequalSteps);
    return {Reading::Emptied, std::move(facts), kept};
  }
  if (EndsInZero(account.text, facts.intervalLine)) destination[kept++] = 0.0F;
  facts.points = static_cast<int>(kept);
  facts.infoLines = TextInfoLines(account.text, facts);
  if (!account.note.empty()) facts.infoLines.push_back("File " + account.note);
  if (questions != Questions::AsBefore || account.text.badLine != 0) TellEnd(facts.path, account);
  return {Reading::Done, std::move(facts), kept};
}

std::vector<std::vector<float>> ReadTextEpisodes() {
  const RecordingFacts facts = StoredFacts();
  const OpenedRecording opened = OpenRecordingFile(facts.path, OpenAs::Text);
  if (!CheckOpened(opened, facts.path)) return {};
  RecordingFile& file = *opened.file;
  const RecordingAccount& account = file.Account();
  file.SetTextReading(ReadingOf(facts, account.text.atf, Trace.SimTrace.size()));
  std::string why;  // reason for episodes without samples; the result shows them
  static_cast<void>(file.Load(facts.signal, 1, account.sweeps, why));
  TellEnd(facts.path, account);
  std::vector<std::vector<float>> episodes(static_cast<std::size_t>(account.sweeps));
  for (int e = 1; e <= account.sweeps; ++e) {
    std::vector<float>& episode = episodes[static_cast<std::size_t>(e) - 1];
    episode.resize(static_cast<std::size_t>(file.SweepSamples(e)));
    file.Read(facts.signal, e, 0, episode);
  }
  return episodes;
}

}  // namespace zelvane
