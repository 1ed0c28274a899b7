// Numbers of the program, which are signed, as indices of containers.
#pragma once

#include <cassert>
#include <cstddef>

namespace zelvane {

/// The one cast from a number to an index or size; a negative number is a mistake of the caller.
constexpr std::size_t Index(long long number) {
  assert(number >= 0);
  return static_cast<std::size_t>(number);
}

}  // namespace zelvane
