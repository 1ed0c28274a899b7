// Memory for the large arrays of the stores.
#pragma once

#include <cstddef>
#include <span>

namespace zelvane {

/// Takes `count` floats, all 0, whose pages cost nothing until they are written. The memory lives until the
/// process ends. Ends the process with a message on standard error when the address space is exhausted.
std::span<float> TakeZeroPages(std::size_t count);

/// Sets all of `floats`, the whole or any part of what came from TakeZeroPages, back to 0 and gives the pages
/// that lie inside it back to the system. Costs next to nothing where nothing was written.
void ReleaseZeroPages(std::span<float> floats);

/// Sets elements 0..end - 1 of `values` to 0, as far as `used` says that something was written: elements at and
/// beyond `used` hold 0. `used` falls to 0 when only zeros are left.
void ClearUsed(std::span<float> values, int& used, int end);

}  // namespace zelvane
