// The fields of the scheme, of the run settings and of the ties between rates, by name.
#pragma once

namespace zelvane {

/// Adds the fields to the registry. Needs the memory of the large arrays.
void RegisterModelFields();

}  // namespace zelvane
