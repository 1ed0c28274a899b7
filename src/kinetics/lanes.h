// Eight 32-bit floats side by side: one lane for each state of a scheme.
//
// Every operation works lane by lane in IEEE arithmetic, so the width of the machine's registers does not
// change a bit of a result. Uses GCC's vector types; with other compilers, or with ZELVANE_PLAIN_LANES, a
// plain struct.
#pragma once

#include <cstdint>
#include <cstring>

#include "platform/vector_clones.h"

namespace zelvane {

inline constexpr int LanesPerVector = 8;

#if defined(ZELVANE_VECTOR_LANES)

// The calling convention for vectors depends on the machine; all functions here are inlined.
#pragma GCC diagnostic ignored "-Wpsabi"

using Lanes = float __attribute__((vector_size(32)));
using LaneIndex = std::int32_t __attribute__((vector_size(32)));

ZELVANE_INLINE Lanes Spread(float value) {
  return Lanes{value, value, value, value, value, value, value, value};
}

/// Sets lane k to y[index[k]], index from 0 to 7; with two or three vectors to 15 or 23.
ZELVANE_INLINE Lanes Pick(const Lanes (&y)[1], const LaneIndex& index) {
  return __builtin_shuffle(y[0], index);
}
ZELVANE_INLINE Lanes Pick(const Lanes (&y)[2], const LaneIndex& index) {
  return index < LanesPerVector ? __builtin_shuffle(y[0], index) : __builtin_shuffle(y[1], index);
}
ZELVANE_INLINE Lanes Pick(const Lanes (&y)[3], const LaneIndex& index) {
  const Lanes low = index < LanesPerVector ? __builtin_shuffle(y[0], index) : __builtin_shuffle(y[1], index);
  return index < 2 * LanesPerVector ? low : __builtin_shuffle(y[2], index);
}

/// Returns whether any lane is above `high`, below `low` or not a number.
ZELVANE_INLINE bool AnyOutside(const Lanes& y, float low, float high) {
  using Halves = std::int64_t __attribute__((vector_size(32)));
  const Halves inside = reinterpret_cast<Halves>((y >= low) & (y <= high));
  return (inside[0] & inside[1] & inside[2] & inside[3]) != -1;
}

/// Returns whether any bit differs.
ZELVANE_INLINE bool AnyBitDiffers(const Lanes& a, const Lanes& b) {
  using Halves = std::int64_t __attribute__((vector_size(32)));
  const Halves bits = reinterpret_cast<Halves>(a) ^ reinterpret_cast<Halves>(b);
  return (bits[0] | bits[1] | bits[2] | bits[3]) != 0;
}

#else

template <typename T>
struct alignas(32) EightOf {
  T lane[LanesPerVector];
};
using Lanes = EightOf<float>;
using LaneIndex = EightOf<std::int32_t>;

template <typename Operation>
ZELVANE_INLINE Lanes ForEachLane(const Lanes& a, const Lanes& b, Operation operation) {
  Lanes result;
  for (int k = 0; k < LanesPerVector; ++k) result.lane[k] = operation(a.lane[k], b.lane[k]);
  return result;
}
ZELVANE_INLINE Lanes Spread(float value) {
  return {{value, value, value, value, value, value, value, value}};
}
ZELVANE_INLINE Lanes operator+(const Lanes& a, const Lanes& b) {
  return ForEachLane(a, b, [](float x, float y) { return x + y; });
}
ZELVANE_INLINE Lanes operator*(const Lanes& a, const Lanes& b) {
  return ForEachLane(a, b, [](float x, float y) { return x * y; });
}
ZELVANE_INLINE Lanes operator*(float a, const Lanes& b) {
  return Spread(a) * b;
}

template <int W>
ZELVANE_INLINE Lanes Pick(const Lanes (&y)[W], const LaneIndex& index) {
  Lanes result;
  for (int k = 0; k < LanesPerVector; ++k) {
    const int from = index.lane[k];
    result.lane[k] = y[from / LanesPerVector].lane[from % LanesPerVector];
  }
  return result;
}

ZELVANE_INLINE bool AnyOutside(const Lanes& y, float low, float high) {
  for (const float value : y.lane) {
    if (!(value >= low && value <= high)) return true;
  }
  return false;
}

ZELVANE_INLINE bool AnyBitDiffers(const Lanes& a, const Lanes& b) {
  return std::memcmp(&a, &b, sizeof a) != 0;  // NOLINT(bugprone-suspicious-memory-comparison): bits are meant
}

#endif

template <typename T, typename Element>
ZELVANE_INLINE T LoadLanes(const Element* from) {
  T lanes;
  std::memcpy(&lanes, from, sizeof lanes);
  return lanes;
}

ZELVANE_INLINE void StoreLanes(float* to, const Lanes& lanes) {
  std::memcpy(to, &lanes, sizeof lanes);
}

}  // namespace zelvane
