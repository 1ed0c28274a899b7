// Writes the occupancies of a run as a file for other programs.
#pragma once

#include <string>

namespace zelvane {

/// Writes the occupancies of the last run as CSV: time in ms, then a column for each state that is on, with
/// its label or its number as the title. There is a row for each point of the run, or for each saved step of
/// an adaptive run.
///
/// Reads: `Result` (Occupancy, SavedTime, ResultKind, KeptSteps, IntegrationOffset), `Model` (NumPoints,
/// ADInterval, ModelIs2D, states and labels).
/// @return false when the file cannot be written; the old file stays unchanged
bool WriteOccupancyCsv(const std::string& path);

}  // namespace zelvane
