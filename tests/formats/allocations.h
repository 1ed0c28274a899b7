// Counts what a test asks of the heap.
#pragma once

#include <cstddef>

namespace zelvane {

/// Bytes that `operator new` has handed out since the program began, whether given back or not.
std::size_t AllocatedBytes();

}  // namespace zelvane
