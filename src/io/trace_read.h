// Recorded traces: the choice of a reader, the episodes and their commands.
//
//   Reading       TraceRead  TraceReadFile  BinaryTraceRead  TextTraceRead  AbfDirectRead  ReadTextEpisodes
//                 ReadAsciiData  ReadWaveFile
//   Episodes      TraceReloadEpisode  StepEpisode  GoToEpisode
//   The trace     ParseTrace  EraseTrace
#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "platform/outcome.h"

namespace zelvane {

/// Reads the recording at `path` into the trace: all of it, or what the parse panel is set to while
/// `Trace.ParseRequested` is 1. Asks before it takes a text.
/// @return as TraceReadFile
Outcome TraceRead(const std::string& path);

/// Reads the text recording at `path`. The trace becomes a result only when it has more than 100 samples.
Outcome ReadAsciiData(const std::string& path);

/// Reads the binary recording at `path`. Refuses any other file.
Outcome ReadWaveFile(const std::string& path);

/// What a caller answers in the user's place to the questions that a text recording raises.
struct ReadAnswers {
  int signal = 1;                     // of an ATF file with several
  std::optional<float> intervalMs{};  // of a column of numbers, above 0; without one its first line tells it
};

/// Reads the file at `path` as TraceRead does, without the parse panel, and shows all of it; with `answers`
/// without the questions of a text.
/// @return Done; Refused, with everything as it was; or Failed, when the reading was given up half-way and
///         no trace came of it. Refused and Failed show a message, unless the user has cancelled
Outcome TraceReadFile(const std::string& path, const std::optional<ReadAnswers>& answers = {});

/// Returns whether the file begins with the mark of a recording: "ABF", "OBF" or "ATF".
bool BeginsLikeRecording(const std::string& path);

/// Reads episode `Trace.EpisodeIndex` of the recording (ABF or OBF) at `path` into `destination`, at most
/// as many samples as it holds. The rest of `destination` is left as it was. Writes:  the file fields of
/// `Trace`, `Model.NumPoints`, `Model.ADInterval`; after a refusal all are as they were.
/// @return whether samples came in; otherwise the user has been told, or has cancelled
bool BinaryTraceRead(const std::string& path, std::span<float> destination);

/// Reads a text recording (ATF or one number per line) into `destination`.
/// @return 1 when more than 100 samples were read, else 0
int TextTraceRead(std::span<float> destination, const std::string& path);

/// Reads all episodes of the text recording in `Trace`, signal `Trace.RecordedSignal`, in one pass. When
/// the file is no longer readable, shows a message and returns an empty result. A line that is not a row of
/// numbers ends an episode; a message gives its number.
std::vector<std::vector<float>> ReadTextEpisodes();

/// Reads an ABF 1.x recording directly from its header fields: only the first channel, all episodes one
/// after the other.
bool AbfDirectRead(const std::string& path, std::span<float> destination);

/// Reads episode `Trace.EpisodeIndex` again from its file with the same reader, and corrects it when
/// `RsCm.RsCmAuto` is set. Asks no question a second time.
void TraceReloadEpisode();

/// Moves to the next (+1) or last (-1) episode and reads it. After the last episode follows the first.
void StepEpisode(int by);

/// Moves to an episode by the same rule and reads it.
void GoToEpisode(int episode);

/// Keeps every `Trace.ParseConstant`-th sample of the trace in place.
void ParseTrace();

/// Sets the samples of the trace to 0 and `Trace.TraceValid` to 0.
void EraseTrace();

}  // namespace zelvane
