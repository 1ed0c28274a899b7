// Reading a results table back, with the model and the recording that it names.
#pragma once

#include <string>

namespace zelvane {

/// Asks for a table file (*.tbl), empties the table, reads the model and the recording that the file names,
/// and fills the table with its rows. A file of another kind changes nothing. A table without a recording (of
/// simulated responses) is read without one.
void ReadResultsTable();

/// The same for a file whose name is known.
void ReadResultsTableNamed(const std::string& path);

}  // namespace zelvane
