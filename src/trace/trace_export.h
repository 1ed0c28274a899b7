// Writes traces as text files for other programs.
//
//   Files    TraceFormatOf  WriteTraceFile  WriteSweepsFile
//   Blocks   TraceTextBlocks  CsvBlocks  BehindLastLine
//
// Numbers have a full stop in every locale. An old file is replaced only when the new one is complete
// (safe_file.h). Only one block of the file is in memory.
#pragma once

#include <cstddef>
#include <functional>
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

/// Writes several sweeps in the same formats. Each sweep begins at time 0. ATF and CSV have one column per
/// sweep. In a CSV the cells after the end of a sweep are empty. A single column has the sweeps one after
/// the other. In an ATF the sweeps are episodes of one signal and must have equal lengths.
/// @param units  units of the samples, at the end of the column titles: "IN 0 (pA)"; empty = no units
/// @return false on failure, or for sweeps of unequal length in an ATF; the old file stays unchanged
using Sweeps = std::vector<std::vector<float>>;
bool WriteSweepsFile(const std::string& path, const Sweeps& sweeps, float intervalMs,
                     std::string_view signalName, std::string_view units);

/// Returns the text of WriteTraceFile, block after block. `samples` must stay valid during this time.
NextBlock TraceTextBlocks(TraceFormat format, std::span<const float> samples, float intervalMs,
                          std::string_view signalName);

/// A column of a CSV file; its rows after the end of `values` are empty.
struct CsvColumn {
  std::string title;
  std::span<const float> values;
};

/// Returns the text of a CSV file, block after block. Each row has the time `timeOf(row)` (ms) and a value of
/// each column. The values must stay valid during this time.
NextBlock CsvBlocks(std::size_t rows, const std::vector<CsvColumn>& columns,
                    const std::function<double(std::size_t row)>& timeOf);

/// Returns the blocks for appending to the text file `path`. If its last line has no line end, adds one
/// first, so that two numbers do not become one.
NextBlock BehindLastLine(const std::string& path, NextBlock blocks);

}  // namespace zelvane
