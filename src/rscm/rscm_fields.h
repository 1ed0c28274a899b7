// Series resistance and membrane capacitance, by name.
#pragma once

namespace zelvane {

/// Adds the fields to the registry. Needs the memory of the large arrays.
void RegisterRscmFields();

}  // namespace zelvane
