// The random generators of the whole program.
//
// There is one stream of uniform values, and its order is part of what the program computes: the same seeds
// give the same channels. Who draws, and in which order, during a simulation of single channels:
//   1. each run, with a Gaussian number of channels: one GaussianNoise (pairs of uniform values until one
//      pair falls into the unit circle; every second call draws nothing);
//   2. each sweep: the channels one after the other, sorted by the state that they start in;
//   3. each dwell of a channel: one value for the next state where two or more can follow, then one for the
//      duration (constant rates) or one for each point (rates that depend on the stimulus); see
//      monte_carlo.h;
//   4. the trace of each run, with noise added: one GaussianNoise a point, in the order of time.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace zelvane {

/// Values of UniformRandom drawn ahead of their use. DrawAhead refills it.
struct UniformStream {
  std::array<double, 512> value{};
  std::size_t next = 0;
  std::size_t end = 0;
};
inline UniformStream Ahead;
void DrawAhead();

/// One value in the open interval (0, 1): the Wichmann-Hill generator AS 183 (Applied Statistics 31, 188,
/// 1982) over the three seeds of the process. A result of exactly 0 is thrown away.
inline double UniformRandom() {
  if (Ahead.next == Ahead.end) DrawAhead();
  return Ahead.value[Ahead.next++];
}

/// One value of a normal distribution with mean 0 and standard deviation 1, by the polar Box-Muller method
/// (Marsaglia & Bray 1964). Values come in pairs; the second is held for the next call.
float GaussianNoise();

/// Seeds the generators from a clock reading, then from their own first numbers.
void SeedGenerators(std::uint32_t clock);

/// Sets the three seeds and drops a held Gaussian value.
void SetSeeds(const std::array<double, 3>& seeds);

}  // namespace zelvane
