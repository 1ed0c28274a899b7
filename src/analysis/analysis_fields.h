// Measures of a response and their table, by name.
#pragma once

namespace zelvane {

/// Adds the fields to the registry. Needs the memory of the large arrays.
void RegisterAnalysisFields();

}  // namespace zelvane
