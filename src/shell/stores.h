// The stores as a whole: their memory, their fields by name, their start-up state.
#pragma once

namespace zelvane {

/// Takes the memory of the large arrays and registers every field. The first call counts, later ones do
/// nothing.
void AllocateStores();

/// Brings every store back to its start-up state, arrays and default fit limits included. What the screen
/// shows is not touched. Needs AllocateStores.
void ResetStores();

}  // namespace zelvane
