// Writes the result of a run as text files for other programs.
//
//   A trace         TraceFormatOf  WriteTraceFile  WriteSweepsFile  TraceTextBlocks  BehindLastLine
//   Occupancies     WriteOccupancyCsv
//
// Numbers have a full stop in every locale. An old file is replaced only when the new one is complete
// (safe_file.h). Only one block of the file is in memory.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/safe_file.h"

namespace zelvane {

enum class TraceFormat {
  SingleColumn,  // .txt, .asc: the interval in ms, then one sample per line
  Atf,           // .atf: Axon text file 1.0, time in seconds beside each sample
  Csv,           // .csv: time in ms, sample
};

/// Returns the format for the extension of `path`, in small or capital letters. Returns an empty result for
/// any other extension.
std::optional<TraceFormat> TraceFormatOf(const std::string& path);

/// Writes a trace to `path` in the format of its extension.
///
/// @param samples     sample i belongs to time i x `intervalMs`
/// @param intervalMs  ms; its shortest decimal form is used, so 0.01F is exactly 0.01
/// @param signalName  name of the signal with its unit ("Macroscopic Current pA")
///
/// Single column and ATF have seven digits ("%.6e"). CSV has nine, which give the same bits when they are
/// read.
/// @return false for another extension or when the write fails; the old file stays unchanged
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

/// Returns the text of WriteTraceFile, block after block. `samples` must stay valid during this time.
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
