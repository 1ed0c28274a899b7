// Recorded traces: the choice of a reader, episodes, and the commands around them.
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

/// Reads the binary recording at `path`; a file that is none is refused.
Outcome ReadWaveFile(const std::string& path);

/// What a caller answers in the user's place to the questions that a text recording raises.
struct ReadAnswers {
  int signal = 1;                     // of an ATF file with several
  std::optional<float> intervalMs{};  // of a column of numbers, above 0; without one its first line tells it
};

/// Reads the file at `path` as TraceRead does, without the parse panel, and shows all of it; with `answers` without the questions of a text.
/// @return Done; Refused, with everything as it was; or Failed, when the reading was given up half-way and no trace came
///         of it. Refused and Failed show a message, unless the user has cancelled
Outcome TraceReadFile(const std::string& path, const std::optional<ReadAnswers>& answers = {});

/// Whether the file begins with the mark of a recording: "ABF", "OBF" or "ATF".
bool BeginsLikeRecording(const std::string& path);

/// Reads episode `Trace.EpisodeIndex` of the recording (ABF or OBF) at `path` into `destination`, at most as many
/// samples as it holds. The rest of `destination` is left as it was. Writes:  the file fields of `Trace`,
/// `Model.NumPoints`, `Model.ADInterval`; after a refusal all are as they were.
/// @return whether samples came in; otherwise the user has been told, or has cancelled
bool BinaryTraceRead(const std::string& path, std::span<float> destination);

/// Reads a text recording (ATF or one number a line) into `destination`.
/// @return 1 when more than 100 samples were read, else 0
int TextTraceRead(std::span<float> destination, const std::string& path);

/// Every episode of the text recording in `Trace`, signal `Trace.RecordedSignal`, read in one pass. Nothing,
/// the user told, when it can no longer be read. A line that cannot be understood is told; it ends an
/// episode.
std::vector<std::vector<float>> ReadTextEpisodes();

/// Reads an ABF 1.x recording straight from its header fields, first channel only, all episodes one behind
/// the other.
bool AbfDirectRead(const std::string& path, std::span<float> destination);

/// Reads episode `Trace.EpisodeIndex` again from its file, by the reader that read it first, and corrects it
/// when `RsCm.RsCmAuto` is set. No question is asked twice.
void TraceReloadEpisode();

/// Moves to the next (+1) or last (-1) episode, around the ends, and reads it.
void StepEpisode(int by);

/// Moves to an episode, by the same rule, and reads it.
void GoToEpisode(int episode);

/// Keeps every `Trace.ParseConstant`-th sample of the trace in place.
void ParseTrace();

/// Sets the samples of the trace to 0 and `Trace.TraceValid` to 0.
void EraseTrace();

}  // namespace zelvane
