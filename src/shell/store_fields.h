// The contents of the registry: all store fields that a user can see.
#pragma once

namespace zelvane {

/// Registers every field. Needs the memory of the large arrays.
void RegisterStoreFields();

}  // namespace zelvane
