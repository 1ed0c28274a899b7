// All stores together: their memory, their fields by name, their state at the start.
#pragma once

namespace zelvane {

/// Allocates the memory of the large arrays and registers every field. Only the first call does this; later
/// calls do nothing.
void AllocateStores();

/// Resets every store to its state at the start, with arrays and default fit limits. Does not change the
/// screen. Call AllocateStores first.
void ResetStores();

}  // namespace zelvane
