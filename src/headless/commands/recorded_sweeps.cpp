#include "headless/commands/recorded_sweeps.h"

#include <algorithm>
#include <filesystem>
#include <ostream>
#include <utility>

#include "formats/abf/abf.h"
#include "headless/commands/one_job.h"
#include "headless/words.h"
#include "model/model_store.h"
#include "platform/index.h"
#include "trace/trace.h"
#include "trace/trace_read.h"
#include "trace/trace_store.h"

namespace zelvane {
namespace {

/// Chooses the channel of the options, or the first. Writes a message and returns false when the file has no
/// such channel.
bool ChooseChannel(const RecordingChoice& choice, Recording& recording, std::ostream& err) {
  const std::vector<RecordedInput>& inputs = recording.abf->Account().inputs;
  if (inputs.empty()) return false;
  recording.channel = choice.channel.value_or(inputs.front().number);
  const auto taken = std::find_if(inputs.begin(), inputs.end(), [&](const RecordedInput& input) {
    return input.number == recording.channel;
  });
  if (taken != inputs.end()) {
    recording.units = taken->units;
    return true;
  }
  err << choice.file << ": no channel " << recording.channel << "; it has";
  for (const RecordedInput& input : inputs) err << ' ' << input.number;
  err << '\n';
  return false;
}

int OpenAbf(const RecordingChoice& choice, Recording& recording, std::ostream& err) {
  OpenedRecording opened = OpenRecordingFile(choice.file);
  if (!opened.file) {
    err << choice.file << ": " << opened.why << '\n';
    return JobFailed;
  }
  recording.abf = std::move(opened.file);
  const RecordingAccount& account = recording.abf->Account();
  recording.sweeps = account.sweeps;
  if (!account.note.empty()) err << choice.file << ": " << account.note << '\n';
  if (!ChooseChannel(choice, recording, err)) return JobMisused;
  if (account.samples > MaxStimPoints) {
    err << choice.file << ": a sweep of " << account.samples << " samples; " << MaxStimPoints
        << " can be measured\n";
    return JobFailed;
  }
  Trace.TraceFromFile = 1;
  Trace.TraceFileName = choice.file;
  Trace.EpisodeCount = recording.sweeps;
  Trace.RecordedChannel = recording.channel;
  Model.ADInterval = static_cast<float>(account.intervalMs);
  return JobDone;
}

/// Reads a sweep into the trace. Returns its samples; 0 when the file does not hold the sweep.
int ReadAbfSweep(const Recording& recording, int sweep) {
  const int samples = recording.abf->SweepSamples(sweep);
  if (samples < 1 || samples > MaxStimPoints) return 0;
  const std::span<float> trace = Trace.SimTrace.first(Index(samples));
  return recording.abf->Read(recording.channel, sweep, 0, trace) == trace.size() ? samples : 0;
}

int CopyTextSweep(const Recording& recording, int sweep) {
  if (Index(sweep) > recording.episodes.size()) return 0;
  const std::vector<float>& samples = recording.episodes[Index(sweep) - 1];
  std::copy(samples.begin(), samples.end(), Trace.SimTrace.begin());
  return static_cast<int>(samples.size());
}

}  // namespace

std::optional<SweepRange> ParseSweeps(std::string_view text) {
  const std::size_t dash = text.find('-');
  const auto first = WholeNumber(text.substr(0, dash));
  const auto last = dash == std::string_view::npos ? first : WholeNumber(text.substr(dash + 1));
  if (!first || !last || *first < 1 || *last < *first) return std::nullopt;
  return SweepRange{*first, *last};
}

int OpenRecording(const RecordingChoice& choice, Recording& recording, std::ostream& err) {
  std::error_code error;
  if (!std::filesystem::is_regular_file(choice.file, error)) {
    const bool exists = std::filesystem::exists(choice.file, error);
    err << choice.file << (exists ? ": not a file\n" : ": no such file\n");
    return JobFailed;
  }
  int format = 0;
  if (IsABFFile(choice.file, format)) return OpenAbf(choice, recording, err);
  ReadAnswers answers{.signal = choice.channel.value_or(1)};
  if (choice.intervalMs) answers.intervalMs = static_cast<float>(*choice.intervalMs);
  const Outcome read = TraceReadFile(choice.file, answers);
  if (read == Outcome::Failed) err << choice.file << ": no recording that can be read\n";
  if (read != Outcome::Done) return JobFailed;
  recording.sweeps = Trace.EpisodeCount;
  if (recording.sweeps > 1) recording.episodes = ReadTextEpisodes();
  return JobDone;
}

bool ReadSweepOf(const Recording& recording, int sweep) {
  Trace.EpisodeIndex = sweep;
  if (!recording.abf && recording.sweeps == 1) return TraceReloadEpisode() == Outcome::Done;
  const int samples = recording.abf ? ReadAbfSweep(recording, sweep) : CopyTextSweep(recording, sweep);
  if (samples < 1) return false;
  Trace.SimTraceUsed = std::max(Trace.SimTraceUsed, samples);
  Model.NumPoints = samples;
  Model.RecordPoints = samples;
  BeginTrace(TraceOrigin::Recording);
  return true;
}

}  // namespace zelvane
