// Recorded traces: the choice of a reader, the episodes and their commands.
//
//   Reading       TraceRead  TraceReadFile  BinaryTraceRead  SweepReadInto  AbfDirectRead  ReadAllEpisodes
//                 ReadTextEpisodes  ReadAsciiData  ReadWaveFile
//   Episodes      TraceReloadEpisode  StepEpisode  GoToEpisode
//   The trace     ParseTrace  EraseTrace
#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "platform/outcome.h"

namespace zelvane {

/// Reads the recording at `path` into the trace: the whole recording or, while `Trace.ParseRequested` is 1,
/// the part that the parse panel selects. Asks before it reads a text.
/// @return as TraceReadFile
Outcome TraceRead(const std::string& path);

/// Reads the text recording at `path`. The trace becomes a result only when it has more than 100 samples.
Outcome ReadAsciiData(const std::string& path);

/// Reads the binary recording at `path`. Refuses any other file.
Outcome ReadWaveFile(const std::string& path);

/// The answers of a caller, instead of the user, to the questions about a text recording.
struct ReadAnswers {
  int signal = 1;                     // of an ATF file with several signals
  std::optional<float> intervalMs{};  // of a column of numbers, above 0; empty = its first line
};

/// Reads the file at `path` as TraceRead does, without the parse panel, and shows the whole trace. With
/// `answers` asks no questions about a text.
/// @return Done; Refused, without a change; or Failed, when the read stopped before its end and there is no
///         trace. Refused and Failed show a message, except after a cancel
Outcome TraceReadFile(const std::string& path, const std::optional<ReadAnswers>& answers = {});

/// What BinaryTraceRead read.
struct SweepRead {
  int samples = 0;
  float intervalMs = 0.0F;
};

/// Reads episode `Trace.EpisodeIndex` of the recording (ABF or OBF) at `path` into `destination`, at most
/// as many samples as it holds. Keeps the rest of `destination`. Writes the file fields of `Trace`,
/// `Model.NumPoints` and `Model.ADInterval`. Changes nothing after a refusal.
/// @return empty when no samples were read, after a message or a cancel
std::optional<SweepRead> BinaryTraceRead(const std::string& path, std::span<float> destination);

/// Reads all episodes of the text recording in `Trace`, signal `Trace.RecordedSignal`, in one pass. When
/// the file is no longer readable, shows a message and returns an empty result. A line that is not a row of
/// numbers ends an episode; a message gives its number.
std::vector<std::vector<float>> ReadTextEpisodes();

/// Reads episode `Trace.EpisodeIndex` of a recording of any format in the same way. Asks the questions about a
/// text; with `asksText` also whether to read it at all.
std::optional<SweepRead> SweepReadInto(const std::string& path, std::span<float> destination, bool asksText);

/// The part of a recording that a caller chooses, instead of the user.
struct SweepChoice {
  int sweep = 1;
  std::optional<int> channel{};       // input of an ABF, signal of a text; empty = the first
  std::optional<float> intervalMs{};  // of a column of numbers; empty = its first line
};

/// Does the same for a chosen part, without questions. A sweep or a channel that the file does not have is refused.
std::optional<SweepRead> SweepReadInto(const std::string& path, std::span<float> destination,
                                       const SweepChoice& choice);

/// Reads an ABF 1.x recording directly from its header fields: only the first channel, all episodes one
/// after the other.
bool AbfDirectRead(const std::string& path, std::span<float> destination);

/// Reads a recording as AbfDirectRead does into the trace, as a new recording. Does not correct or plot it. On
/// failure shows a message, leaves an empty trace and returns false.
bool ReadAllEpisodes(const std::string& path);

/// Reads episode `Trace.EpisodeIndex` again from its file with the same reader, and corrects it when
/// `RsCm.RsCmAuto` is set. Asks no question that was answered before.
/// @return Done; Refused without a recording; Failed, after a message, when the episode cannot be read. The
///         trace then stays
Outcome TraceReloadEpisode();

/// Moves to the next (+1) or last (-1) episode and reads it. After the last episode follows the first.
void StepEpisode(int by);

/// Moves to an episode by the same rule and reads it. An episode that cannot be read leaves the present one.
/// @return as TraceReloadEpisode
Outcome GoToEpisode(int episode);

/// Keeps every `Trace.ParseConstant`-th sample of the trace in place.
void ParseTrace();

/// Sets the samples of the trace to 0 and `Trace.TraceValid` to 0.
void EraseTrace();

}  // namespace zelvane
