// The random generators of the whole program.
#pragma once

#include <array>
#include <cstdint>

namespace zelvane {

/// One value in the open interval (0, 1): the Wichmann-Hill generator AS 183 (Applied Statistics 31, 188,
/// 1982) over the three seeds of the process. A result of exactly 0 is thrown away.
double UniformRandom();

/// One value of a normal distribution with mean 0 and standard deviation 1, by the polar Box-Muller method
/// (Marsaglia & Bray 1964). Values come in pairs; the second is held for the next call.
float GaussianNoise();

/// Seeds the generators from a clock reading, then from their own first numbers.
void SeedGenerators(std::uint32_t clock);

/// Sets the three seeds and drops a held Gaussian value.
void SetSeeds(const std::array<double, 3>& seeds);

}  // namespace zelvane
