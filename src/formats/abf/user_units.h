// Converter counts to user units.
#pragma once

#include <cstdint>
#include <span>

namespace zelvane {

/// out[k] = counts[k] * scale + offset in 32-bit floats, for every k of `out`; `counts` is at least as long.
void ToUserUnits(std::span<const std::int16_t> counts, float scale, float offset, std::span<float> out);

/// The same values, written to memory past the processor's caches. For a recording that is larger than the
/// caches: a plain store first fetches the line that it is about to replace, and pushes the file's own pages
/// out.
void ToUserUnitsPastCaches(std::span<const std::int16_t> counts, float scale, float offset,
                           std::span<float> out);

}  // namespace zelvane
