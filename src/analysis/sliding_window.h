// The window of samples that lies farthest from a baseline.
#pragma once

#include <cstdint>
#include <span>

namespace zelvane {

/// Of the windows of `width` samples that begin at `start` .. `start` + `positions`, the first one whose sum
/// of deviations from `baseline` is the largest in size. Samples past the end of the trace are left out, and
/// windows that begin there are not tried.
///
/// @param start  a sample of the trace
/// @param width  at least 1
///
/// A window's sum is a 32-bit float over rising samples, whatever the compiler makes of the loop: windows lie
/// side by side in its lanes. Windows wider than WidestPlainWindow samples are summed as differences of
/// running sums in double, so that a search costs no more than one pass.
/// @return the sample at which the window begins
std::int64_t BestWindow(std::span<const float> trace, std::int64_t start, std::int64_t positions,
                        float baseline, std::int64_t width);

inline constexpr std::int64_t WidestPlainWindow = 4096;

}  // namespace zelvane
