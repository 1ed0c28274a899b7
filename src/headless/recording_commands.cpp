#include "headless/recording_commands.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <ostream>

#include "headless/internal/json_values.h"
#include "headless/internal/recordings.h"
#include "headless/internal/words.h"
#include "io/stimulus_file.h"
#include "io/trace_export.h"
#include "model/model_store.h"
#include "platform/abf/abf.h"
#include "screen/screen.h"

namespace zelvane {
namespace {

constexpr char Stopped[] = "stopped; nothing is written\n";
constexpr int Drug1 = 1;

void WriteAccount(const std::string& path, const RecordingAccount& account, std::ostream& out) {
  out << path << "\n  Kind      " << account.kind;
  if (account.version > 0.0) out << FormatText(" %.2f", account.version);
  out << "\n  Interval  " << FormatText("%.6g ms", account.intervalMs) << "\n  Sweeps    " << account.sweeps
      << " of " << account.samples << " samples ("
      << FormatText("%.6g ms", account.samples * account.intervalMs) << ")\n";
  for (const RecordedInput& input : account.inputs) {
    out << FormatText("  Input %-3d %s %s, gain %g\n", input.number, input.name.c_str(), input.units.c_str(),
                      input.gain);
  }
}

Json AccountJson(const std::string& path, const RecordingAccount& account) {
  Json json;
  json["file"] = path;
  json["kind"] = account.kind;
  if (account.version > 0.0) json["version"] = NumberJson(std::round(account.version * 100.0) / 100.0);
  json["interval"] = NumberJson(account.intervalMs);
  json["sweeps"] = account.sweeps;
  json["samples"] = account.samples;
  json["length"] = NumberJson(account.samples * account.intervalMs);
  json["channels"] = Json::array();
  for (const RecordedInput& input : account.inputs) {
    json["channels"].push_back({{"channel", input.number},
                                {"name", input.name},
                                {"units", input.units},
                                {"gain", NumberJson(input.gain)}});
  }
  return json;
}

/// The sweeps of one input that are asked for, each cut and thinned.
struct Excerpt {
  std::vector<std::vector<float>> sweeps;
  double intervalMs = 0.0;
  RecordedInput input;
};

/// The part of a sweep from startMs on, every n-th sample of it.
std::vector<float> PartOf(const std::vector<float>& sweep, const ConvertOptions& options, double intervalMs) {
  const auto count = static_cast<double>(sweep.size());
  const double first = std::min(count, std::round(options.startMs / intervalMs));
  const double length = options.lengthMs ? std::round(*options.lengthMs / intervalMs) : count;
  const auto stop = static_cast<std::size_t>(std::min(count, first + length));
  std::vector<float> part;
  for (auto i = static_cast<std::size_t>(first); i < stop; i += static_cast<std::size_t>(options.every))
    part.push_back(sweep[i]);
  return part;
}

/// Why the options ask for nothing that can be; empty when they do not.
std::string Misuse(const ConvertOptions& options) {
  if (options.every < 1) return "--every takes a whole number from 1 on";
  if (!(options.startMs >= 0.0) || !std::isfinite(options.startMs))
    return "--start takes a time from 0 ms on";
  if (options.lengthMs && !(*options.lengthMs > 0.0)) return "--length takes a time above 0 ms";
  if (options.sweep != "all" && WholeNumber(options.sweep).value_or(0) < 1)
    return "--sweep takes a number from 1 on, or all";
  const std::string extension = ExtensionOf(options.out);
  if (!TraceFormatOf(options.out) && extension != ".abf" && extension != ".stm")
    return options.out + ": the name of the new file ends in .atf, .txt, .asc, .csv, .abf or .stm";
  return {};
}

std::optional<Excerpt> ReadExcerpt(const ConvertOptions& options, const RecordingAccount& account,
                                   const JobStreams& streams) {
  Excerpt excerpt;
  excerpt.intervalMs = account.intervalMs;
  const bool profiles = account.kind == "stimulus";
  const int wanted = options.channel.value_or(profiles ? Drug1 : account.inputs.front().number);
  for (const RecordedInput& input : account.inputs) {
    if (input.number == wanted) excerpt.input = input;
  }
  const bool all = options.sweep == "all";
  const int first = all ? 1 : *WholeNumber(options.sweep);
  for (int sweep = first; sweep <= (all ? account.sweeps : first); ++sweep) {
    if (streams.stop != nullptr && streams.stop->load()) {
      streams.err << Stopped;
      return std::nullopt;
    }
    ShowProgress(static_cast<double>(sweep - first) / account.sweeps, "reading");
    std::string why;
    const auto samples = SweepOf(options.in, account, wanted, sweep, why);
    if (!samples) {
      streams.err << options.in << ": channel " << wanted << ", sweep " << sweep << ": " << why << '\n';
      return std::nullopt;
    }
    excerpt.sweeps.push_back(PartOf(*samples, options, account.intervalMs));
    if (excerpt.sweeps.back().empty()) {
      streams.err << options.in << ": no samples lie between these times\n";
      return std::nullopt;
    }
  }
  excerpt.intervalMs *= options.every;
  ResetProgress();
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

/// A stimulus file whose only profile that is not 0 is the one named.
bool WriteProfile(const std::string& path, const Excerpt& excerpt, int profile) {
  std::vector<float> samples = Joined(excerpt);
  if (samples.size() > static_cast<std::size_t>(MaxStimPoints)) samples.resize(MaxStimPoints);
  std::vector<float> zeros(samples.size());
  StimProfileSpans profiles;
  profiles.fill(zeros);
  profiles[static_cast<std::size_t>(profile)] = samples;
  return WriteStimProfiles(path, static_cast<float>(excerpt.intervalMs), profiles);
}

bool WriteExcerpt(const ConvertOptions& options, const Excerpt& excerpt, bool fromProfiles) {
  const std::string extension = ExtensionOf(options.out);
  if (extension == ".abf") return WriteAbf(options.out, excerpt);
  if (extension == ".stm") return WriteProfile(options.out, excerpt, options.channel.value_or(Drug1));
  const auto intervalMs = static_cast<float>(excerpt.intervalMs);
  if (extension == ".asc" && fromProfiles) return WriteStimColumn(options.out, intervalMs, Joined(excerpt));
  std::string name = excerpt.input.name;
  if (!excerpt.input.units.empty()) name += (name.empty() ? "" : " ") + excerpt.input.units;
  return WriteTraceFile(options.out, Joined(excerpt), intervalMs, name);
}

}  // namespace

int InfoCommand(const std::vector<std::string>& files, bool json, const JobStreams& streams) {
  int status = JobDone;
  for (const std::string& file : files) {
    std::string why;
    const auto account = AccountOf(file, why);
    if (!account) {
      streams.err << file << ": " << why << '\n';
      status = JobFailed;
    } else if (json) {
      streams.out << JsonLine(AccountJson(file, *account)) << '\n';
    } else {
      WriteAccount(file, *account, streams.out);
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
    streams.err << options.out << ": a file cannot take its own place\n";
    return JobFailed;
  }
  ConvertOptions asked = options;
  std::string why;
  const auto account = AccountOf(options.in, why);
  if (!account || !(account->intervalMs > 0.0) || account->inputs.empty()) {
    streams.err << options.in << ": " << (account ? "does not tell the time between samples" : why) << '\n';
    return JobFailed;
  }
  const bool toProfile = ExtensionOf(options.out) == ".stm";
  if (toProfile && (options.channel.value_or(Drug1) < 0 || options.channel.value_or(Drug1) > MaxDrugs)) {
    streams.err << "--channel names the profile of a .stm: 0 voltage, 1 to 6 drugs\n";
    return JobMisused;
  }
  if (toProfile && account->kind != "stimulus") asked.channel.reset();  // it names the profile written
  const auto excerpt = ReadExcerpt(asked, *account, streams);
  if (!excerpt) return JobFailed;
  if (WriteExcerpt(options, *excerpt, account->kind == "stimulus")) return JobDone;
  streams.err << options.out << ": cannot be written\n";
  return JobFailed;
}

}  // namespace zelvane
