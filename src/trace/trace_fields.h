// The trace, its file and its filters, by name.
#pragma once

namespace zelvane {

/// Adds the fields to the registry. Needs the memory of the large arrays.
void RegisterTraceFields();

}  // namespace zelvane
