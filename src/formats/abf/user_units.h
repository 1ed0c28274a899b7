// Converter counts to user units.
#pragma once

#include <cstdint>
#include <span>

namespace zelvane {

/// Calculates out[k] = counts[k] * scale + offset in 32-bit floats, for every k of `out`. `counts` must be at
/// least as long as `out`.
void ToUserUnits(std::span<const std::int16_t> counts, float scale, float offset, std::span<float> out);

/// Calculates the same values and writes them to memory past the processor's caches. For a recording that is
/// larger than the caches: a plain store first loads the line that it replaces, and removes the pages of the
/// file from the caches.
void ToUserUnitsPastCaches(std::span<const std::int16_t> counts, float scale, float offset,
                           std::span<float> out);

}  // namespace zelvane
