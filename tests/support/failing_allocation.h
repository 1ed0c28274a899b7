// An allocation that fails when a test asks for it. Only test programs with failing_allocation.cpp have it: it
// replaces operator new.
#pragma once

#include <cstddef>

namespace zelvane {

/// Lets one allocation fail: the one at which `left` comes to 0, among those of `least` bytes or more.
struct FailingAllocation {
  long left = 0;  // 0 = every allocation succeeds
  std::size_t least = 0;
  bool failed = false;
};
inline FailingAllocation Failing;

}  // namespace zelvane
