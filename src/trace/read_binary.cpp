// The reader of binary recordings: ABF, and the program's own layout OBF.
#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>
#include <vector>

#include "model/model_store.h"
#include "platform/file_names.h"
#include "screen/popups.h"
#include "trace/trace_dialogs.h"
#include "trace/trace_read.h"
#include "trace/trace_readers.h"
#include "trace/trace_store.h"

namespace zelvane {
namespace {

constexpr char NoSuchChannel[] = "%s has no channel %d.";
constexpr MessageTitle OpenTitle{MessageKind::Error, "Read Error!"};
constexpr char NotOpened[] = "%s could not be opened";
constexpr MessageTitle BinaryTitle{MessageKind::Information, "Read Binary"};
constexpr char NotAbf[] = "%s is not a valid ABF file\nProceeding to read binary (NOT ABF)";

constexpr char NoSamples[] = "%s holds no samples.";
constexpr char PleaseWait[] = "Please wait";

constexpr int MaxUncountedSamples = MaxStimPoints;  // a longer file needs the parse panel
constexpr int BlockSamples = 65536;

int AsInt(std::int64_t count) {
  return static_cast<int>(std::min<std::int64_t>(count, std::numeric_limits<int>::max()));
}

RecordingRead RefuseWithoutSamples(const std::string& path) {
  MessagePopup(FileErrorTitle, FormatText(NoSamples, FileNameOf(path).c_str()));
  return {};
}

/// Tells that a file is not whole. Reading it again tells nothing new.
void NoteDamage(const RecordingAccount& account, const RecordingFacts& facts, Questions questions) {
  if (questions == Questions::AsBefore || account.note.empty()) return;
  Note(FileNameOf(facts.path) + ' ' + account.note + '.');
}

// -- ABF --

/// Sets the channel: the only one, the one read before or named by the caller, or the one that the user chooses.
/// Returns false on cancel, and with a message for a channel that the file does not have.
bool ChooseChannel(const RecordingAccount& account, Questions questions, RecordingFacts& facts) {
  if (questions == Questions::AsBefore && HasInput(account, facts.channel)) return true;
  if (questions == Questions::Answered && facts.channel != FirstChannel) {
    if (HasInput(account, facts.channel)) return true;
    MessagePopup(FileErrorTitle, FormatText(NoSuchChannel, facts.path.c_str(), facts.channel));
    return false;
  }
  facts.channel = account.inputs.front().number;
  if (account.inputs.size() < 2 || questions == Questions::Answered) return true;
  const auto answer = AskChannel(facts.path, account);
  facts.channel = answer.value_or(facts.channel);
  return answer.has_value();
}

/// Returns the input of the chosen channel.
const RecordedInput& ChosenInput(const RecordingAccount& account, int channel) {
  return *std::find_if(account.inputs.begin(), account.inputs.end(),
                       [channel](const RecordedInput& input) { return input.number == channel; });
}

void FillAbfFacts(const RecordingAccount& account, RecordingFacts& facts) {
  facts.totalSamples = AsInt(account.abf.samples);
  facts.channels = static_cast<int>(account.inputs.size());
  facts.operationMode = account.abf.operationMode;
  facts.sweepSamples = account.samples;
  facts.episodes = account.sweeps;
  if (facts.operationMode == GapFreeMode) {
    facts.sweepSamples = facts.totalSamples / facts.channels;
    facts.episodes = 1;
  }
  facts.episode = std::clamp(facts.episode, 1, facts.episodes);
  facts.adcResolution = static_cast<float>(account.abf.adcResolution);
  facts.adcRange = account.abf.adcRange;
  SetInterval(facts, static_cast<float>(account.intervalMs));
  SetUnits(facts, ChosenInput(account, facts.channel).units);
}

/// Sets the gain and the lines of the information panel from complete facts.
void FillAbfInfo(const RecordingAccount& account, RecordingFacts& facts) {
  const RecordedInput& input = ChosenInput(account, facts.channel);
  facts.finalGain = static_cast<float>(input.gain);
  AbfInfo info;
  info.version = account.version;
  info.floats = account.abf.floats;
  info.scale = static_cast<double>(input.scale);
  info.units = input.units;
  facts.infoLines = AbfInfoLines(facts, info);
  if (!account.note.empty()) facts.infoLines.push_back("File " + account.note);
}

/// The samples of the episode to keep: from `first`, every `skip`-th of `span`.
struct Selection {
  int first = 0;
  int span = 0;
  int skip = 1;

  int Kept() const { return span / skip + (span % skip != 0 ? 1 : 0); }
};

/// Asks with the parse panel for a part of a file that is too long, or of any file on request. Returns false
/// on cancel.
bool ChoosePart(RecordingFacts& facts) {
  facts.parse.result = 0;
  facts.parse.skip = 1;
  if (facts.sweepSamples > MaxUncountedSamples) facts.parse.requested = 1;
  if (facts.parse.requested == 0) return true;
  const float skip = std::ceil(static_cast<float>(facts.sweepSamples) / static_cast<float>(MaxParseCount));
  facts.parse = AskParse(facts.path, facts.sweepSamples, static_cast<int>(skip), facts.intervalMs);
  return facts.parse.result == 1;
}

/// Returns the whole episode or, after the parse panel, the chosen part, whose interval it sets.
Selection SelectSamples(int episodeSamples, RecordingFacts& facts) {
  Selection selection;
  selection.span = episodeSamples;
  ParseSettings& parse = facts.parse;
  if (parse.result != 1) return selection;
  // Those of a former read may have been set to any number since.
  parse.skip = std::max(parse.skip, 1);
  parse.count = std::clamp(parse.count, 1, MaxParseCount);
  parse.start = std::clamp(parse.start, 0, episodeSamples);
  parse.interval = facts.intervalMs * static_cast<float>(parse.skip);
  facts.intervalMs = parse.interval;
  selection.skip = parse.skip;
  selection.first = parse.start;
  const std::int64_t wanted = static_cast<std::int64_t>(parse.skip) * parse.count;
  selection.span = static_cast<int>(std::min<std::int64_t>(wanted, episodeSamples - selection.first));
  return selection;
}

/// Reads every `skip`-th sample in blocks; each block begins with a sample to keep.
std::size_t ReadSkipping(RecordingFile& file, const RecordingFacts& facts, const Selection& selection,
                         std::span<float> destination) {
  const int stride = selection.skip;
  const int block = stride >= BlockSamples ? 1 : BlockSamples / stride * stride;
  const int step = std::max(block, stride);
  std::vector<float> buffer(static_cast<std::size_t>(block));
  std::size_t kept = 0;
  for (std::int64_t k = 0; k < selection.span && kept < destination.size(); k += step) {
    const auto read = static_cast<int>(file.Read(facts.channel, facts.episode, selection.first + k, buffer));
    for (int i = 0; i < read && k + i < selection.span && kept < destination.size(); i += stride) {
      destination[kept++] = buffer[static_cast<std::size_t>(i)];
    }
    if (read < block) break;
  }
  return kept;
}

std::size_t ReadSamples(RecordingFile& file, const RecordingFacts& facts, const Selection& selection,
                        std::span<float> destination) {
  const std::size_t most = std::min(destination.size(), static_cast<std::size_t>(MaxStimPoints));
  const std::span<float> front =
      destination.first(std::min(most, static_cast<std::size_t>(selection.Kept())));
  if (selection.skip == 1) return file.Read(facts.channel, facts.episode, selection.first, front);
  return ReadSkipping(file, facts, selection, front);
}

/// Limits the length of a sweep to the capacity, with a message.
void CutSweep(std::size_t capacity, Questions questions, RecordingFacts& facts) {
  if (static_cast<std::size_t>(facts.sweepSamples) <= capacity) return;
  facts.sweepSamples = static_cast<int>(capacity);
  if (questions != Questions::AsBefore) MessagePopup(NoticeTitle, TruncatedFile);
}

RecordingRead ReadAbf(RecordingFile& file, RecordingFacts facts, std::span<float> destination,
                      Questions questions) {
  const RecordingAccount& account = file.Account();
  if (!ChooseChannel(account, questions, facts)) return {};
  FillAbfFacts(account, facts);
  const int episodeSamples = file.SweepSamples(facts.episode);
  if (episodeSamples < 1) return RefuseWithoutSamples(facts.path);
  const bool open = questions != Questions::AsBefore || facts.parse.result == 2;  // 2: the user cancelled
  if (open && !ChoosePart(facts)) {
    FillAbfInfo(account, facts);
    return {Reading::Emptied, std::move(facts)};
  }
  const Selection selection = SelectSamples(episodeSamples, facts);
  const bool slow = selection.span > MaxUncountedSamples;
  if (slow) ShowProgress(0.0, PleaseWait);
  CutSweep(destination.size(), questions, facts);
  std::string why;
  const bool loaded = file.Load(facts.channel, facts.episode, facts.episode, why);
  const std::size_t read = loaded ? ReadSamples(file, facts, selection, destination) : 0;
  if (slow) ResetProgress();
  if (read == 0) return RefuseWithoutSamples(facts.path);
  facts.points = static_cast<int>(read);
  FillAbfInfo(account, facts);
  NoteDamage(account, facts, questions);
  return {Reading::Done, std::move(facts), read};
}

// -- OBF --

/// Sets the valid fields of the header; the others keep their old values.
void FillObfFacts(const RecordingAccount& account, RecordingFacts& facts) {
  if (account.obf.runs > 0) facts.runs = account.obf.runs;
  if (account.intervalMs > 0.0) facts.intervalMs = static_cast<float>(account.intervalMs);
  facts.channels = 1;
  facts.episodes = 1;
  facts.episode = 1;
  facts.operationMode = GapFreeMode;
  facts.parse.result = 0;
}

/// Reads all runs, one after the other.
RecordingRead ReadObf(RecordingFile& file, RecordingFacts facts, std::span<float> destination,
                      Questions questions) {
  FillObfFacts(file.Account(), facts);
  const std::int64_t samples = std::int64_t{facts.runs} * file.Account().samples;
  const auto most = std::min<std::int64_t>(static_cast<std::int64_t>(destination.size()), MaxStimPoints);
  const auto wanted = static_cast<std::size_t>(std::clamp<std::int64_t>(samples, 0, most));
  const std::size_t read = file.Read(0, 1, 0, destination.first(wanted));
  if (read == 0) return RefuseWithoutSamples(facts.path);
  facts.points = static_cast<int>(read);
  facts.sweepSamples = facts.points;
  facts.totalSamples = facts.points;
  facts.infoLines = {"OBF File", FormatText("Number of runs %d", facts.runs),
                     FormatText("Total number of pts %d", facts.points),
                     FormatText("Digitization interval (ms) %f", static_cast<double>(facts.intervalMs))};
  if (!file.Account().note.empty()) facts.infoLines.push_back("File " + file.Account().note);
  NoteDamage(file.Account(), facts, questions);
  return {Reading::Done, std::move(facts), read};
}

/// Shows a message that the file is read as an OBF; if it is not one, shows the reason.
bool AcceptObf(const OpenedRecording& opened, const std::string& path, Questions questions) {
  if (questions != Questions::AsBefore) MessagePopup(BinaryTitle, FormatText(NotAbf, path.c_str()));
  if (opened.form == RecordingForm::Missing) {
    FileErrorPopup(FileOpenFailed);
  } else if (opened.form != RecordingForm::Obf) {
    FileErrorPopup(WrongFileFormat);
  } else if (opened.file == nullptr) {
    RefuseWithoutSamples(path);
  } else {
    return true;
  }
  return false;
}

}  // namespace

RecordingRead ReadBinary(const OpenedRecording& opened, RecordingFacts facts, std::span<float> destination,
                         Questions questions) {
  facts.text = false;  // the file is read again in the same way
  if (opened.form != RecordingForm::Abf) {
    if (!AcceptObf(opened, facts.path, questions)) return {};
    return ReadObf(*opened.file, std::move(facts), destination, questions);
  }
  if (opened.file == nullptr) {
    MessagePopup(OpenTitle, FormatText(NotOpened, facts.path.c_str()));
    return {};
  }
  return ReadAbf(*opened.file, std::move(facts), destination, questions);
}

std::optional<SweepRead> BinaryTraceRead(const std::string& path, std::span<float> destination) {
  RecordingFacts facts = StoredFacts();
  facts.path = path;
  const RecordingRead read =
      ReadBinary(OpenRecordingFile(path, OpenAs::Recording), std::move(facts), destination, Questions::Asked);
  if (read.reading != Reading::Refused) StoreRecording(read.facts);
  if (read.reading != Reading::Done) return std::nullopt;
  return SweepRead{read.facts.points, read.facts.intervalMs};
}

}  // namespace zelvane
