// Signed counts as indices of arrays.
#pragma once

#include <cassert>
#include <concepts>
#include <cstddef>

namespace zelvane {

/// Returns `i`, at least 0, as the index of a container: counts of this program are signed, those of the
/// library are not.
template <std::signed_integral Number>
constexpr std::size_t Index(Number i) {
  assert(i >= 0);
  return static_cast<std::size_t>(i);
}

}  // namespace zelvane
