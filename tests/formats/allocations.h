// Counts the memory that a test takes from the heap.
#pragma once

#include <cstddef>

namespace zelvane {

/// Returns the bytes from `operator new` since the program began, including those that were returned.
std::size_t AllocatedBytes();

}  // namespace zelvane
