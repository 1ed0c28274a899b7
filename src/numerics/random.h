// Streams of random values.
//
// A stream is an object; its owner passes it to functions. Two streams are independent. The same seeds give
// the same values. The order in which a program draws from a stream is part of its results.
//
//   Values    UniformRandom  GaussianNoise
//   Seeding   SetSeeds  SeedGenerators
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>

namespace zelvane {

/// Multipliers and moduli of the three generators of AS 183.
struct Congruence {
  std::uint32_t multiplier;
  std::uint32_t modulus;
};
inline constexpr std::array<Congruence, 3> RandomGenerators{{{171, 30269}, {172, 30307}, {170, 30323}}};

/// Number of values that are made side by side. Seed n + RandomStrides is seed n times the multiplier to
/// the power of RandomStrides.
inline constexpr std::size_t RandomStrides = 16;

/// The next RandomStrides seeds of each generator.
using SeedStrides = std::array<std::array<std::uint32_t, RandomStrides>, RandomGenerators.size()>;

/// Returns the strides of the three seeds. A seed must be a whole number in 1..modulus - 1.
constexpr SeedStrides StridesFrom(const std::array<std::uint32_t, RandomGenerators.size()>& seeds) {
  SeedStrides strides{};
  for (std::size_t k = 0; k < RandomGenerators.size(); ++k) {
    std::uint32_t seed = seeds[k];
    for (std::uint32_t& next : strides[k]) {
      seed = RandomGenerators[k].multiplier * seed % RandomGenerators[k].modulus;
      next = seed;
    }
  }
  return strides;
}

/// The Wichmann-Hill generator AS 183 (Applied Statistics 31, 188, 1982) with its seeds 1, 2 and 3 until
/// others are set. A stream belongs to one thread at a time.
struct RandomStream {
  // -- Values drawn ahead of their use; DrawAhead refills them --
  std::array<double, 512> ahead{};
  std::size_t next = 0;
  std::size_t end = 0;
  // -- Generators --
  SeedStrides seeds = StridesFrom({1, 2, 3});
  std::optional<float> held;  // second value of a Gaussian pair
};

void DrawAhead(RandomStream& stream);

/// Returns one value in the open interval (0, 1). Skips a result of exactly 0.
inline double UniformRandom(RandomStream& stream) {
  if (stream.next == stream.end) DrawAhead(stream);
  return stream.ahead[stream.next++];
}

/// Returns one value of a normal distribution with mean 0 and standard deviation 1, by the polar Box-Muller
/// method (Marsaglia & Bray 1964). The method makes pairs; the next call returns the second value.
float GaussianNoise(RandomStream& stream);

/// Seeds the generators from a time of the clock, then from their own first numbers.
void SeedGenerators(RandomStream& stream, std::uint32_t clock);

/// Sets the three seeds and drops a held Gaussian value.
void SetSeeds(RandomStream& stream, const std::array<double, 3>& seeds);

}  // namespace zelvane
