// The registry's contents: every store field that a user can see, by name.
#pragma once

namespace zelvane {

/// Registers every field. Needs the memory of the large arrays.
void RegisterStoreFields();

}  // namespace zelvane
