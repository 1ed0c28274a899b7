// Memory for the large arrays of the stores.
#pragma once

#include <cstddef>
#include <span>

namespace zelvane {

/// Returns `count` floats, all 0. A page uses memory only after a write. The floats live until the process
/// ends. Without free address space, ends the process with a message on standard error.
std::span<float> TakeZeroPages(std::size_t count);

/// Sets all `floats` to 0 and returns their complete pages to the system. `floats` is all or a part of a span
/// from TakeZeroPages. Takes almost no time for pages without a write.
void ReleaseZeroPages(std::span<float> floats);

/// Sets elements 0..end - 1 of `values` to 0. Elements at and after `used` are already 0 and are skipped.
/// `used` becomes 0 when only zeros are left.
void ClearUsed(std::span<float> values, int& used, int end);

}  // namespace zelvane
