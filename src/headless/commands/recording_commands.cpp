#include "headless/commands/recording_commands.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <functional>
#include <memory>
#include <ostream>

#include "formats/abf/abf.h"
#include "formats/recording_file.h"
#include "headless/json_values.h"
#include "headless/words.h"
#include "model/model_store.h"
#include "platform/file_names.h"
#include "platform/index.h"
#include "screen/screen.h"
#include "stimulus/stimulus_file.h"
#include "trace/trace_export.h"

namespace zelvane {
namespace {

constexpr char Stopped[] = "stopped; nothing is written\n";
constexpr char NoInterval[] = "does not hold the time between samples";
constexpr char IntervalCan[] = "; --interval can";  // for a text
constexpr char UnequalSweeps[] =
    "its sweeps have different lengths and do not fit side by side; cut them with --length, or write .csv "
    "or .abf";
constexpr int Drug1 = 1;

/// Returns the samples of each sweep if they differ, else an empty list.
std::vector<int> UnequalLengths(const RecordingFile& file) {
  std::vector<int> lengths(Index(file.Account().sweeps));
  for (std::size_t s = 0; s < lengths.size(); ++s) lengths[s] = file.SweepSamples(static_cast<int>(s) + 1);
  const bool differ =
      std::adjacent_find(lengths.begin(), lengths.end(), std::not_equal_to<>()) != lengths.end();
  return differ ? lengths : std::vector<int>{};
}

void WriteAccount(const std::string& path, const RecordingAccount& account, bool unequal, std::ostream& out) {
  out << path << "\n  Kind      " << account.kind;
  if (account.version > 0.0) out << FormatText(" %.2f", account.version);
  const bool timed = account.intervalMs > 0.0;
  out << "\n  Interval  " << (timed ? FormatText("%.6g ms", account.intervalMs) : "not told")
      << "\n  Sweeps    " << account.sweeps << (unequal ? " of up to " : " of ") << account.samples
      << " samples";
  if (timed) out << FormatText(" (%.6g ms)", account.samples * account.intervalMs);
  out << '\n';
  for (const RecordedInput& input : account.inputs) {
    std::string texts;
    for (const std::string& text : {input.name, input.units}) texts += text.empty() ? text : text + ' ';
    if (!texts.empty()) texts.back() = ',';
    out << FormatText("  Input %-3d %s gain %g\n", input.number, texts.c_str(), input.gain);
  }
}

Json AccountJson(const std::string& path, const RecordingAccount& account, const std::vector<int>& lengths) {
  Json json = Json::object();
  json["file"] = path;
  json["kind"] = account.kind;
  if (account.version > 0.0) json["version"] = NumberJson(std::round(account.version * 100.0) / 100.0);
  const bool timed = account.intervalMs > 0.0;
  json["interval"] = timed ? NumberJson(account.intervalMs) : Json(nullptr);
  json["sweeps"] = account.sweeps;
  json["samples"] = account.samples;
  if (!lengths.empty()) json["samples_per_sweep"] = lengths;
  json["length"] = timed ? NumberJson(account.samples * account.intervalMs) : Json(nullptr);
  json["channels"] = Json::array();
  for (const RecordedInput& input : account.inputs) {
    json["channels"].push_back({{"channel", input.number},
                                {"name", input.name},
                                {"units", input.units},
                                {"gain", NumberJson(input.gain)}});
  }
  return json;
}

/// Opens a file and completes its account. On failure returns nullptr and writes the reason to `why`.
std::unique_ptr<RecordingFile> OpenWithAccount(const std::string& path, std::optional<double> intervalMs,
                                               std::string& why) {
  OpenedRecording opened = OpenRecordingFile(path);
  why = opened.why;
  if (opened.file != nullptr && !opened.file->CompleteAccount(intervalMs, why)) opened.file = nullptr;
  return std::move(opened.file);
}

/// The chosen sweeps of one input, each cut and thinned.
struct Excerpt {
  Sweeps sweeps;
  double intervalMs = 0.0;
  RecordedInput input{};
};

/// Returns why the options cannot be met, or an empty string.
std::string Misuse(const ConvertOptions& options) {
  if (options.every < 1) return "--every takes a whole number of 1 or more";
  if (!(options.startMs >= 0.0) || !std::isfinite(options.startMs))
    return "--start takes a time of 0 ms or more";
  if (options.lengthMs && !(*options.lengthMs > 0.0)) return "--length takes a time above 0 ms";
  if (options.sweep != "all" && WholeNumber(options.sweep).value_or(0) < 1)
    return "--sweep takes a number of 1 or more, or all";
  if (options.intervalMs && !(*options.intervalMs > 0.0 && std::isfinite(*options.intervalMs)))
    return "--interval takes a time above 0 ms";
  const std::string extension = ExtensionOf(options.out);
  const int profile = options.channel.value_or(Drug1);
  if (extension == ".stm" && (profile < 0 || profile > MaxDrugs))
    return "--channel names the profile of a .stm: 0 voltage, 1 to 6 drugs";
  if (!TraceFormatOf(options.out) && extension != ".abf" && extension != ".stm")
    return options.out + ": the name of the new file ends in .atf, .txt, .asc, .csv, .abf or .stm";
  return {};
}

/// Returns the samples in a time; for a very long time a number larger than any file holds.
std::int64_t SamplesOf(double timeMs, double intervalMs) {
  constexpr double Most = 1e15;
  return static_cast<std::int64_t>(std::min(std::round(timeMs / intervalMs), Most));
}

std::optional<Excerpt> ReadExcerpt(const ConvertOptions& options, std::optional<int> channel,
                                   RecordingFile& file, const JobStreams& streams) {
  const RecordingAccount& account = file.Account();
  const bool profiles = account.kind == "stimulus";
  SweepExtract wanted;
  wanted.input = channel.value_or(profiles ? Drug1 : account.inputs.front().number);
  wanted.first = WholeNumber(options.sweep).value_or(1);
  wanted.last = options.sweep == "all" ? account.sweeps : wanted.first;
  wanted.start = SamplesOf(options.startMs, account.intervalMs);
  if (options.lengthMs) wanted.length = SamplesOf(*options.lengthMs, account.intervalMs);
  wanted.every = options.every;
  const auto goOn = [&](double done) {
    ShowProgress(done, "reading");
    return !StopAsked(streams);
  };
  std::string why;
  auto sweeps = ReadExtract(file, wanted, goOn, why);
  ResetProgress();
  if (!sweeps) {
    streams.err << (why.empty() ? Stopped
                                : FormatText("%s: channel %d, sweep %s: %s\n", options.in.c_str(),
                                             wanted.input, options.sweep.c_str(), why.c_str()));
    return std::nullopt;
  }
  Excerpt excerpt{.sweeps = std::move(*sweeps), .intervalMs = account.intervalMs * options.every};
  for (const RecordedInput& input : account.inputs) {
    if (input.number == wanted.input) excerpt.input = input;
  }
  return excerpt;
}

bool WriteAbf(const std::string& path, const Excerpt& excerpt) {
  AbfHeader header;
  InitializeHeader(header);
  const bool episodic = excerpt.sweeps.size() > 1;
  header.operationMode = episodic ? 5 : 3;
  header.sampleInterval = excerpt.intervalMs * 1000.0;
  if (!excerpt.input.name.empty()) header.channelName[0] = excerpt.input.name;
  header.channelUnits[0] = excerpt.input.units;
  AbfWriteHandle writer = OldABF_OpenWrite(path, header);
  if (writer == nullptr) return false;
  for (const std::vector<float>& sweep : excerpt.sweeps) {
    if (!OldABF_WriteRawSweep(*writer, sweep)) return false;
  }
  return OldABF_UpdateHeader(*writer, header) && OldABF_Close(writer);
}

std::vector<float> Joined(const Excerpt& excerpt) {
  std::vector<float> joined;
  for (const std::vector<float>& sweep : excerpt.sweeps)
    joined.insert(joined.end(), sweep.begin(), sweep.end());
  return joined;
}

/// Writes a stimulus file in which only the given profile is not 0.
Outcome WriteProfile(const std::string& path, const Excerpt& excerpt, int profile) {
  std::vector<float> samples = Joined(excerpt);
  std::vector<float> zeros(samples.size());
  StimProfileSpans profiles;
  profiles.fill(zeros);
  profiles[Index(profile)] = samples;
  return WriteStimProfiles(path, static_cast<float>(excerpt.intervalMs), profiles);
}

/// Writes the new file. On failure writes a message and returns false.
bool WriteExcerpt(const ConvertOptions& options, const Excerpt& excerpt, bool fromProfiles,
                  const JobStreams& streams) {
  const std::string extension = ExtensionOf(options.out);
  const auto intervalMs = static_cast<float>(excerpt.intervalMs);
  Outcome outcome = Outcome::Done;
  bool written = true;
  if (extension == ".abf") {
    written = WriteAbf(options.out, excerpt);
  } else if (extension == ".stm") {
    outcome = WriteProfile(options.out, excerpt, options.channel.value_or(Drug1));
  } else if (extension == ".asc" && fromProfiles) {
    outcome = WriteStimColumn(options.out, intervalMs, Joined(excerpt));
  } else {
    written =
        WriteSweepsFile(options.out, excerpt.sweeps, intervalMs, excerpt.input.name, excerpt.input.units);
  }
  if (!written || outcome == Outcome::Stopped) TellUnwritten(options.out, streams);
  return written && outcome == Outcome::Done;
}

/// Returns why the new file cannot hold the samples, or an empty string.
std::string NoRoom(const ConvertOptions& options, const Sweeps& sweeps) {
  std::size_t samples = 0;
  bool unequal = false;
  for (const std::vector<float>& sweep : sweeps) {
    samples += sweep.size();
    unequal = unequal || sweep.size() != sweeps.front().size();
  }
  if (unequal && TraceFormatOf(options.out) == TraceFormat::Atf) return UnequalSweeps;
  if (ExtensionOf(options.out) == ".stm" && samples > Index(MaxStimPoints))
    return FormatText("a stimulus file has room for %d samples", MaxStimPoints);
  return {};
}

}  // namespace

int InfoCommand(const std::vector<std::string>& files, bool json, const JobStreams& streams,
                std::optional<double> intervalMs) {
  int status = JobDone;
  for (const std::string& path : files) {
    std::string why;
    const auto file = OpenWithAccount(path, intervalMs, why);
    if (file == nullptr) {
      streams.err << path << ": " << why << '\n';
      status = JobFailed;
      continue;
    }
    const RecordingAccount& account = file->Account();
    if (!account.note.empty()) streams.err << path << ": " << account.note << '\n';
    const std::vector<int> lengths = UnequalLengths(*file);
    if (json) {
      streams.out << JsonLine(AccountJson(path, account, lengths)) << '\n';
    } else {
      WriteAccount(path, account, !lengths.empty(), streams.out);
    }
  }
  return status;
}

int ConvertCommand(const ConvertOptions& options, const JobStreams& streams) {
  if (const std::string misuse = Misuse(options); !misuse.empty()) {
    streams.err << misuse << '\n';
    return JobMisused;
  }
  const JobScreen screen(streams);
  std::error_code error;
  if (std::filesystem::equivalent(options.in, options.out, error)) {
    streams.err << options.out << ": the new file must have another name\n";
    return JobFailed;
  }
  std::string why;
  const auto file = OpenWithAccount(options.in, options.intervalMs, why);
  if (file == nullptr || !(file->Account().intervalMs > 0.0)) {
    const bool text =
        file != nullptr && (file->Account().kind == "single column" || file->Account().kind == "ATF");
    streams.err << options.in << ": " << (file == nullptr ? why : NoInterval) << (text ? IntervalCan : "")
                << '\n';
    return JobFailed;
  }
  const bool fromProfiles = file->Account().kind == "stimulus";
  // The channel is then the profile to write; the input must be the first.
  const bool namesProfile = ExtensionOf(options.out) == ".stm" && !fromProfiles;
  const auto excerpt = ReadExcerpt(options, namesProfile ? std::nullopt : options.channel, *file, streams);
  if (!excerpt) return JobFailed;
  if (!file->Account().note.empty()) streams.err << options.in << ": " << file->Account().note << '\n';
  if (const std::string noRoom = NoRoom(options, excerpt->sweeps); !noRoom.empty()) {
    streams.err << options.in << ": " << noRoom << '\n';
    return JobFailed;
  }
  return WriteExcerpt(options, *excerpt, fromProfiles, streams) ? JobDone : JobFailed;
}

}  // namespace zelvane
