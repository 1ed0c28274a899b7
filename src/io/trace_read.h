// Recorded traces: the choice of a reader, episodes, and the commands around them.
//
//   Reading       TraceRead  TraceReadFile  BinaryTraceRead  TextTraceRead  AbfDirectRead  ReadTextEpisodes
//                 ReadAsciiData  ReadWaveFile
//   Episodes      TraceReloadEpisode  StepEpisode  GoToEpisode
//   The trace     ParseTrace  EraseTrace
#pragma once

#include <span>
#include <string>
#include <vector>

namespace zelvane {

/// Reads a recording into the trace: the file `Trace.TraceFileName`, or with `ask` one chosen in a dialog.
void TraceRead(bool ask);

/// Asks for a text recording and reads it. The trace becomes a result only when it has more than 100 samples.
void ReadAsciiData();

/// Asks for a binary recording and reads it; a file that is none is refused.
void ReadWaveFile();

/// Reads the file at `path` as TraceRead does, without the dialog. False when no trace came of it.
bool TraceReadFile(const std::string& path);

/// Whether the file begins with the mark of a recording: "ABF", "OBF" or "ATF".
bool BeginsLikeRecording(const std::string& path);

/// Reads a recording (ABF or OBF) at `Trace.TraceFileName`, episode `Trace.EpisodeIndex`, into `destination`,
/// at most as many samples as it holds. The rest of `destination` is left as it was. Writes:  the file fields
/// of `Trace`, `Model.NumPoints`, `Model.ADInterval`.
/// @return whether samples came in; otherwise the user has been told, or has cancelled
bool BinaryTraceRead(std::span<float> destination);

/// Title of the question whether the first line of a column of numbers is its interval.
inline constexpr char IntervalTitle[] = "Get ADinterval";

/// Reads a text recording (ATF or one number a line) into `destination`.
/// @return 1 when more than 100 samples were read, else 0
int TextTraceRead(std::span<float> destination, const std::string& path);

/// Every episode of the text recording in `Trace`, signal `Trace.RecordedSignal`, read in one pass. Nothing,
/// the user told, when it can no longer be read. A line that cannot be understood is told; it ends an
/// episode.
std::vector<std::vector<float>> ReadTextEpisodes();

/// Reads an ABF 1.x recording straight from its header fields, first channel only, all episodes one behind
/// the other.
bool AbfDirectRead(std::span<float> destination);

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
