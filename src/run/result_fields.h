// The results of a run, by name.
#pragma once

namespace zelvane {

/// Adds the fields to the registry. Needs the memory of the large arrays.
void RegisterResultFields();

}  // namespace zelvane
