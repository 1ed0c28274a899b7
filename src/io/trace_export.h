// The result of a run as text files for other programs.
//
//   A trace         TraceFormatOf  WriteTraceFile  WriteSweepsFile  TraceTextBlocks  BehindLastLine
//   Occupancies     WriteOccupancyCsv
//
// Numbers have a full stop in every locale. A file is replaced only when the new one is whole (safe_file.h);
// nothing is held in memory but one block of it.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/safe_file.h"

namespace zelvane {

enum class TraceFormat {
  SingleColumn,  // .txt, .asc: the interval in ms, then one sample a line
  Atf,           // .atf: Axon text file 1.0, time in seconds beside each sample
  Csv,           // .csv: time in ms, sample
};

/// The format that the extension of `path` names, in letters of either kind. Nothing for any other extension.
std::optional<TraceFormat> TraceFormatOf(const std::string& path);

/// Writes a trace to `path` in the format of its extension.
///
/// @param samples     sample i stands for time i x `intervalMs`
/// @param intervalMs  ms, as stored: its shortest decimal form counts, so that 0.01F is a hundredth
/// @param signalName  what the samples are, with their unit ("Macroscopic Current pA")
///
/// Single column and ATF carry seven digits ("%.6e"), CSV nine, enough to read each sample back to the bit.
/// @return false, with a former file untouched, for another extension or when the file cannot be written
bool WriteTraceFile(const std::string& path, std::span<const float> samples, float intervalMs,
                    std::string_view signalName);

/// Several sweeps that begin at time 0 each, in the same formats: ATF and CSV have a column for each sweep,
/// empty in a CSV where a sweep has ended; a single column has one sweep behind the other. In an ATF the
/// sweeps are episodes of one signal and must be of equal length.
/// @param units  of the samples; the titles of the columns end in them: "IN 0 (pA)". Empty without any
/// @return false, with a former file untouched, also for sweeps that an ATF cannot hold
using Sweeps = std::vector<std::vector<float>>;
bool WriteSweepsFile(const std::string& path, const Sweeps& sweeps, float intervalMs,
                     std::string_view signalName, std::string_view units);

/// The text that WriteTraceFile writes, block after block. `samples` must outlast it.
NextBlock TraceTextBlocks(TraceFormat format, std::span<const float> samples, float intervalMs,
                          std::string_view signalName);

/// The blocks for appending to the text file `path`, in front of them the end of its last line where that has
/// none, so that two numbers do not become one.
NextBlock BehindLastLine(const std::string& path, NextBlock blocks);

/// Writes the occupancies of the last run as CSV: time in ms, then a column for each state that is on, under
/// its label or, without one, its number. There is a row for each point of the run, or for each saved step of
/// an adaptive one.
///
/// Reads: `Result` (Occupancy, SavedTime, ResultKind, KeptSteps, IntegrationOffset), `Model` (NumPoints,
/// ADInterval, ModelIs2D, states and labels).
/// @return false, with a former file untouched, when it cannot be written
bool WriteOccupancyCsv(const std::string& path);

}  // namespace zelvane
