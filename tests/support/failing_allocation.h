// Memory that is used up when a test asks for it. Only test programs with failing_allocation.cpp have it: it
// replaces operator new.
#pragma once

#include <cstddef>

namespace zelvane {

/// Lets the memory be used up at one allocation: the one at which `left` comes to 0, among those of `least`
/// bytes or more. From then on an allocation takes from what was released meanwhile. While that is too little,
/// operator new calls the new handler, as in every program. There is memory again after the catch.
struct FailingAllocation {
  long left = 0;  // 0 = there is memory for every allocation
  std::size_t least = 0;
  bool reserveIsUsed = false;  // what the handler releases at its first call is used up as well
  bool failed = false;
  bool usedUp = false;
  std::size_t released = 0;  // bytes, since the memory is used up
};
inline FailingAllocation Failing;

}  // namespace zelvane
