// Small files with two or three numbers per row.
//
//   PairTextRead  PairTextWrite  TripleTextWrite
//
// When a file cannot be opened ("IO Error 100: FileOpen failed") or written, the functions show a message
// and keep the old file.
#pragma once

#include <span>
#include <string>

#include "platform/outcome.h"

namespace zelvane {

/// Reads rows "first, second" into two arrays, up to the end of the file, a row without two numbers, or one
/// row less than the size of the arrays. Writes `Model.RecordPoints`, the length of the analysed record.
/// @param first, second  of equal length
/// @return the number of rows, plus 1 while `Parameters.FitMode` is FitSublevels; 0 when the file cannot be opened
int PairTextRead(const std::string& path, std::span<float> first, std::span<float> second);

/// Writes a row "%.6e, %.6e" for each pair. `first` and `second` have one length.
Outcome PairTextWrite(const std::string& path, std::span<const float> first, std::span<const float> second);

/// Writes a row "%.6e, %.6e, %.6e" for the values from `start` on: (i - start) x `Model.ADInterval` (ms),
/// then element i of each array. `first` and `second` have one length; `start` is not below 0.
Outcome TripleTextWrite(const std::string& path, std::span<const double> first,
                        std::span<const double> second, int start);

}  // namespace zelvane
