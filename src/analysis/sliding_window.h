// The window of samples with the largest deviation from a baseline.
#pragma once

#include <cstdint>
#include <span>

namespace zelvane {

/// Finds the window with the largest absolute sum of deviations from `baseline`, and the first of equal ones.
/// Tries windows of `width` samples that begin at `start` .. `start` + `positions`, but not after the end of
/// the trace. Leaves out samples after the end.
///
/// @param start  a sample of the trace
/// @param width  at least 1
///
/// The sum of a window is a 32-bit float over rising samples. Vector lanes hold different windows, so they do
/// not change this order. Windows wider than WidestPlainWindow samples are summed as differences of running
/// sums in double, so that a search takes no more than one pass.
/// @return the sample at which the window begins
std::int64_t BestWindow(std::span<const float> trace, std::int64_t start, std::int64_t positions,
                        float baseline, std::int64_t width);

inline constexpr std::int64_t WidestPlainWindow = 4096;

}  // namespace zelvane
