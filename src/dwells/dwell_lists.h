// Chooses, imports and exports the lists of open times, closed times and latencies.
//
//   Choosing    UseOpenList
//   Importing   ReadSingleColumnList
//   Exporting   ExportDwellLists  ExportDwellList
//
// Lists and settings are in dwell_store.h, the reading of recordings is in dwell_reading.h, the commands
// are in dwell_lists_panel.h.
#pragma once

#include <optional>
#include <span>
#include <string>

#include "platform/outcome.h"

namespace zelvane {

/// Copies the list of `Dwell.OpenListSelector` and its count into the open times: 0 the raw open times, 1
/// to 5 a class list. Any other selector counts as 0.
void UseOpenList();

/// Reads durations (ms), one per line, into a list.
///
/// An ATF file has a header: "ATF", a line with the numbers of header lines and columns, the header lines,
/// and the titles. If it has several columns, reads the first and shows a warning. Any other file begins
/// with its first value. Reads at most 300 bytes of a line. Skips a line that does not begin with a finite
/// number.
///
/// @param list          MaxDwells entries; at most MaxFileDwells are filled
/// @param replace       true: writes from the first entry on; false: writes after `currentCount` entries
/// @param currentCount  present number of entries
/// @return  the new count; 0 for a list of one entry. When the file cannot be opened or its header is
///          invalid, shows a file error, keeps the list and returns an empty result
std::optional<int> ReadSingleColumnList(std::span<float> list, const std::string& path, bool replace,
                                        int currentCount);

/// The lists for an export.
enum class DwellListKind { Open, Closed, Latencies };

/// Writes a list as an ATF file of one column, with one value per line ("%.6e"). On failure shows a file
/// error and keeps the existing file.
/// @return Done or Failed
Outcome ExportDwellList(DwellListKind kind, const std::string& path);

/// Writes each list with entries to its own file. The name is `path` up to the first full stop of its last
/// part, with .ops (open times), .sht (closed times) or .lat (latencies). Shows a message when all lists
/// are empty.
/// @return Done, also without entries; Failed, with a message, after a failed write; the other files are
///         not tried
Outcome ExportDwellLists(const std::string& path);

}  // namespace zelvane
