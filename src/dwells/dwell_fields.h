// Dwell lists, the idealised record and their fit, by name.
#pragma once

namespace zelvane {

/// Adds the fields to the registry. Needs the memory of the large arrays.
void RegisterDwellFields();

}  // namespace zelvane
