#include "numerics/random.h"

#include <cmath>
#include <cstddef>
#include <tuple>

#include "numerics/rounding.h"
#include "platform/vector_clones.h"

namespace zelvane {
namespace {

constexpr std::uint32_t StrideMultiplier(const Congruence& generator) {
  std::uint32_t power = 1;
  for (std::size_t k = 0; k < RandomStrides; ++k) power = power * generator.multiplier % generator.modulus;
  return power;
}

constexpr int CoarseMax = 32767;
constexpr std::size_t SeedTableSize = 100;
constexpr int LastDrawnEntry = 99;  // indices are drawn as trunc(99 u): never the last entry
using SeedTable = std::array<double, SeedTableSize>;

/// Returns 0..32767 by the example generator of the C standard (ISO/IEC 9899:1999, 7.20.2.2). It spreads the
/// bits of the clock and, unlike a library's rand(), gives the same values on every machine.
int CoarseRandom(std::uint32_t& state) {
  state = state * 1103515245U + 12345U;
  return static_cast<int>(state / 65536U % 32768U);
}

/// Returns a seed with which its generator does not repeat one value: whole and 1..modulus - 1.
std::uint32_t ValidSeed(double seed, std::uint32_t modulus) {
  if (!std::isfinite(seed)) return 1;
  double rest = std::fmod(std::trunc(seed), modulus);
  if (rest < 0.0) rest += modulus;
  return rest == 0.0 ? 1 : static_cast<std::uint32_t>(rest);
}

/// Returns seed `n` of generator K over its modulus, and advances the seed.
template <std::size_t K>
ZELVANE_INLINE double Quotient(RandomStream& stream, std::size_t n) {
  // Seeds are whole numbers below 2^15: 32-bit integers hold every product exactly, as doubles would.
  constexpr Congruence generator = RandomGenerators[K];
  constexpr std::uint32_t multiplier = StrideMultiplier(generator);
  const std::uint32_t seed = stream.seeds[K][n];
  stream.seeds[K][n] = seed * multiplier % generator.modulus;
  return static_cast<double>(static_cast<std::int32_t>(seed)) / static_cast<double>(generator.modulus);
}

/// Writes the next RandomStrides values; some may be 0. The sum of three quotients is below 3, so removing
/// its whole part does not round.
ZELVANE_INLINE void NextStride(RandomStream& stream, double* values) {
  for (std::size_t n = 0; n < RandomStrides; ++n) {
    const double sum = Quotient<0>(stream, n) + Quotient<1>(stream, n) + Quotient<2>(stream, n);
    values[n] = sum - static_cast<double>(static_cast<std::int32_t>(sum));
  }
}

std::size_t DrawnEntry(double u) {
  return static_cast<std::size_t>(LastDrawnEntry * u);
}

void SeedFromClock(RandomStream& stream, std::uint32_t clock) {
  SeedTable table;
  for (double& entry : table) entry = CoarseRandom(clock);
  std::array<double, 3> seeds;
  for (double& seed : seeds) seed = table[DrawnEntry(CoarseRandom(clock) / static_cast<double>(CoarseMax))];
  SetSeeds(stream, seeds);
}

/// Seeds with three different entries of a table of the generators' own first numbers.
void SeedFromOwnNumbers(RandomStream& stream) {
  SeedTable table;
  for (double& entry : table) entry = RoundCount(1.0 + 32764.0 * UniformRandom(stream));
  const std::size_t first = DrawnEntry(UniformRandom(stream));
  std::size_t second = first;
  while (second == first) second = DrawnEntry(UniformRandom(stream));
  std::size_t third = first;
  while (third == first || third == second) third = DrawnEntry(UniformRandom(stream));
  SetSeeds(stream, {table[first], table[second], table[third]});
}

}  // namespace

ZELVANE_CLONES void DrawAhead(RandomStream& stream) {
  stream.next = stream.end = 0;
  while (stream.end == 0) {
    std::array<double, std::tuple_size_v<decltype(stream.ahead)>> drawn;
    for (std::size_t first = 0; first < drawn.size(); first += RandomStrides) {
      NextStride(stream, &drawn[first]);
    }
    for (const double u : drawn) {
      stream.ahead[stream.end] = u;
      stream.end += u != 0.0 ? 1 : 0;
    }
  }
}

float GaussianNoise(RandomStream& stream) {
  if (stream.held) {
    const float value = *stream.held;
    stream.held.reset();
    return value;
  }
  double a = 0.0;
  double b = 0.0;
  double r = 0.0;
  do {
    a = 2.0 * UniformRandom(stream) - 1.0;
    b = 2.0 * UniformRandom(stream) - 1.0;
    r = a * a + b * b;
  } while (r >= 1.0 || r == 0.0);  // the centre has no direction
  const double f = std::sqrt(-2.0 * std::log(r) / r);
  stream.held = static_cast<float>(f * a);
  return static_cast<float>(f * b);
}

void SetSeeds(RandomStream& stream, const std::array<double, 3>& seeds) {
  std::array<std::uint32_t, RandomGenerators.size()> valid{};
  for (std::size_t k = 0; k < seeds.size(); ++k) valid[k] = ValidSeed(seeds[k], RandomGenerators[k].modulus);
  stream.seeds = StridesFrom(valid);
  stream.held.reset();
  stream.next = stream.end = 0;
}

void SeedGenerators(RandomStream& stream, std::uint32_t clock) {
  SeedFromClock(stream, clock);
  SeedFromOwnNumbers(stream);
  UniformRandom(stream);  // the first value once seeded another generator: the series begins after it
}

}  // namespace zelvane
