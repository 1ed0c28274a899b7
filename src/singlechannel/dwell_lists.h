// The lists of open and closed times and of latencies: choosing, importing and exporting them.
//
//   Choosing    UseOpenList
//   Importing   ReadSingleColumnList
//   Exporting   ExportDwellLists  ExportDwellList
//
// Lists and settings are in dwell_store.h, recordings come through dwell_reading.h, the commands are in
// dwell_lists_panel.h.
#pragma once

#include <optional>
#include <span>
#include <string>

#include "platform/outcome.h"

namespace zelvane {

/// Copies the list that `Dwell.OpenListSelector` names into the open times, with its count: 0 the raw open
/// times, 1 to 5 a class list. Any other selector counts as 0.
void UseOpenList();

/// Reads durations (ms), one a line, into a list.
///
/// An ATF file has its header: "ATF", a line with the numbers of header lines and of columns, that many lines
/// and the titles. Of several columns the first is read, with a warning. Any other file begins with its first
/// value. Lines are taken up to 300 bytes; one that does not begin with a finite number is passed over.
///
/// @param list          MaxDwells entries, of which MaxFileDwells are filled at most
/// @param replace       writes from the first entry on; otherwise behind `currentCount`
/// @param currentCount  entries that the list holds
/// @return  the new count, 0 for a list of one entry. Nothing, with the list as it was and a file error told,
///          when the file cannot be opened or its header is none
std::optional<int> ReadSingleColumnList(std::span<float> list, const std::string& path, bool replace,
                                        int currentCount);

/// Lists that can be exported.
enum class DwellListKind { Open, Closed, Latencies };

/// Writes a list as an ATF file of one column, a value a line with "%.6e". On failure shows a file error and
/// keeps the existing file.
/// @return Done or Failed
Outcome ExportDwellList(DwellListKind kind, const std::string& path);

/// Writes each list that has entries to a file of its own, named like `path` up to the first full stop of its
/// last part, with .ops (open times), .sht (closed times) or .lat (latencies) behind it. The user is told
/// when there is nothing to write.
/// @return Done, also without entries, or Failed, with a message, when a file could not be written; those that
///         follow are not tried
Outcome ExportDwellLists(const std::string& path);

}  // namespace zelvane
