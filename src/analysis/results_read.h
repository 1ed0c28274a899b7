// Reads a results table again, and the model and the recording that it names.
#pragma once

#include <string>

#include "platform/outcome.h"

namespace zelvane {

/// Asks for a table file (*.tbl), empties the table, reads the model and the recording that the file names,
/// and fills the table with its rows. A file of another kind changes nothing. A table of simulated
/// responses has no recording. While autosave is on, refuses a table with a recording and changes nothing.
/// @return Done; Refused without a name or because of autosave; Failed, with a message, when the file is no table or its recording
///         cannot be read
Outcome ReadResultsTable();

/// Does the same for a file with a known name.
Outcome ReadResultsTableNamed(const std::string& path);

}  // namespace zelvane
