#include "formats/abf/user_units.h"

#include <algorithm>
#include <cstddef>
#ifdef __SSE2__
#include <emmintrin.h>

#include <bit>
#endif

namespace zelvane {

void ToUserUnits(std::span<const std::int16_t> counts, float scale, float offset, std::span<float> out) {
  for (std::size_t k = 0; k < out.size(); ++k) out[k] = static_cast<float>(counts[k]) * scale + offset;
}

#ifdef __SSE2__

void ToUserUnitsPastCaches(std::span<const std::int16_t> counts, float scale, float offset,
                           std::span<float> out) {
  constexpr std::size_t Aligned = 16;  // bytes; a stream of four floats must begin at a multiple
  const __m128 scales = _mm_set1_ps(scale);
  const __m128 offsets = _mm_set1_ps(offset);
  const auto stream = [&](float* place, __m128i fourCounts) {
    _mm_stream_ps(place, _mm_add_ps(_mm_mul_ps(_mm_cvtepi32_ps(fourCounts), scales), offsets));
  };
  const std::size_t ahead = (Aligned - std::bit_cast<std::uintptr_t>(out.data()) % Aligned) % Aligned;
  std::size_t k = std::min(ahead / sizeof(float), out.size());
  ToUserUnits(counts, scale, offset, out.first(k));
  for (; k + 8 <= out.size(); k += 8) {
    const __m128i eight = _mm_loadu_si128(reinterpret_cast<const __m128i*>(counts.data() + k));
    // Each count beside itself makes 32 bits; a shift moves their upper half down with its sign.
    stream(out.data() + k, _mm_srai_epi32(_mm_unpacklo_epi16(eight, eight), 16));
    stream(out.data() + k + 4, _mm_srai_epi32(_mm_unpackhi_epi16(eight, eight), 16));
  }
  _mm_sfence();  // makes the samples visible to their next reader
  ToUserUnits(counts.subspan(k), scale, offset, out.subspan(k));
}

#else

void ToUserUnitsPastCaches(std::span<const std::int16_t> counts, float scale, float offset,
                           std::span<float> out) {
  ToUserUnits(counts, scale, offset, out);
}

#endif

}  // namespace zelvane
