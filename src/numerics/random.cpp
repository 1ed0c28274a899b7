#include "numerics/random.h"

#include <cmath>
#include <cstddef>
#include <optional>

#include "numerics/rounding.h"
#include "platform/vector_clones.h"

namespace zelvane {
namespace {

/// Multipliers and moduli of AS 183.
struct Congruence {
  std::uint32_t multiplier;
  std::uint32_t modulus;
};
constexpr std::array<Congruence, 3> Generators{{{171, 30269}, {172, 30307}, {170, 30323}}};

/// Values made side by side: seed n + Strides follows from seed n by the multiplier to the power of Strides.
constexpr std::size_t Strides = 16;

constexpr std::uint32_t StrideMultiplier(const Congruence& generator) {
  std::uint32_t power = 1;
  for (std::size_t k = 0; k < Strides; ++k) power = power * generator.multiplier % generator.modulus;
  return power;
}

/// The next Strides seeds of each generator.
using SeedStrides = std::array<std::array<std::uint32_t, Strides>, Generators.size()>;

/// The strides of the three seeds, which are whole and 1..modulus - 1.
constexpr SeedStrides StridesFrom(const std::array<std::uint32_t, Generators.size()>& seeds) {
  SeedStrides strides{};
  for (std::size_t k = 0; k < Generators.size(); ++k) {
    std::uint32_t seed = seeds[k];
    for (std::uint32_t& next : strides[k]) {
      seed = Generators[k].multiplier * seed % Generators[k].modulus;
      next = seed;
    }
  }
  return strides;
}

struct GeneratorState {
  SeedStrides seeds = StridesFrom({1, 2, 3});  // until SeedGenerators or SetSeeds is called
  std::optional<float> held;                   // second value of a Gaussian pair
  std::uint32_t coarse = 1;                    // state of CoarseRandom
};
GeneratorState State;

constexpr int CoarseMax = 32767;
constexpr std::size_t SeedTableSize = 100;
constexpr int LastDrawnEntry = 99;  // indices are drawn as trunc(99 u): the last entry is never taken
using SeedTable = std::array<double, SeedTableSize>;

/// 0..32767: the example generator of the C standard (ISO/IEC 9899:1999, 7.20.2.2). It spreads the bits of
/// the clock, and unlike the rand() of a library it does so alike on every machine.
int CoarseRandom() {
  State.coarse = State.coarse * 1103515245U + 12345U;
  return static_cast<int>(State.coarse / 65536U % 32768U);
}

/// A seed that its generator does not stick at: whole and 1..modulus - 1.
std::uint32_t ValidSeed(double seed, std::uint32_t modulus) {
  if (!std::isfinite(seed)) return 1;
  double rest = std::fmod(std::trunc(seed), modulus);
  if (rest < 0.0) rest += modulus;
  return rest == 0.0 ? 1 : static_cast<std::uint32_t>(rest);
}

/// Seed `n` of generator K over its modulus; the seed is moved on.
template <std::size_t K>
ZELVANE_INLINE double Quotient(std::size_t n) {
  // Seeds are whole numbers below 2^15: 32-bit integers hold every product, as doubles would.
  constexpr Congruence generator = Generators[K];
  constexpr std::uint32_t multiplier = StrideMultiplier(generator);
  const std::uint32_t seed = State.seeds[K][n];
  State.seeds[K][n] = seed * multiplier % generator.modulus;
  return static_cast<double>(static_cast<std::int32_t>(seed)) / static_cast<double>(generator.modulus);
}

/// Writes the next Strides values, 0 among them where one comes out. The sum of three quotients is below 3;
/// taking off its whole part rounds nothing.
ZELVANE_INLINE void NextStride(double* values) {
  for (std::size_t n = 0; n < Strides; ++n) {
    const double sum = Quotient<0>(n) + Quotient<1>(n) + Quotient<2>(n);
    values[n] = sum - static_cast<double>(static_cast<std::int32_t>(sum));
  }
}

std::size_t DrawnEntry(double u) {
  return static_cast<std::size_t>(LastDrawnEntry * u);
}

void SeedFromClock(std::uint32_t clock) {
  State.coarse = clock;
  SeedTable table;
  for (double& entry : table) entry = CoarseRandom();
  std::array<double, 3> seeds;
  for (double& seed : seeds) seed = table[DrawnEntry(CoarseRandom() / static_cast<double>(CoarseMax))];
  SetSeeds(seeds);
}

/// Three different entries of a table of the generators' own first numbers.
void SeedFromOwnNumbers() {
  SeedTable table;
  for (double& entry : table) entry = RoundCount(1.0 + 32764.0 * UniformRandom());
  const std::size_t first = DrawnEntry(UniformRandom());
  std::size_t second = first;
  while (second == first) second = DrawnEntry(UniformRandom());
  std::size_t third = first;
  while (third == first || third == second) third = DrawnEntry(UniformRandom());
  SetSeeds({table[first], table[second], table[third]});
}

}  // namespace

ZELVANE_CLONES void DrawAhead() {
  Ahead.next = Ahead.end = 0;
  while (Ahead.end == 0) {
    std::array<double, Ahead.value.size()> drawn;
    for (std::size_t first = 0; first < drawn.size(); first += Strides) NextStride(&drawn[first]);
    for (const double u : drawn) {
      Ahead.value[Ahead.end] = u;
      Ahead.end += u != 0.0 ? 1 : 0;
    }
  }
}

float GaussianNoise() {
  if (State.held) {
    const float value = *State.held;
    State.held.reset();
    return value;
  }
  double a = 0.0;
  double b = 0.0;
  double r = 0.0;
  do {
    a = 2.0 * UniformRandom() - 1.0;
    b = 2.0 * UniformRandom() - 1.0;
    r = a * a + b * b;
  } while (r >= 1.0 || r == 0.0);  // the centre has no direction
  const double f = std::sqrt(-2.0 * std::log(r) / r);
  State.held = static_cast<float>(f * a);
  return static_cast<float>(f * b);
}

void SetSeeds(const std::array<double, 3>& seeds) {
  std::array<std::uint32_t, Generators.size()> valid{};
  for (std::size_t k = 0; k < seeds.size(); ++k) valid[k] = ValidSeed(seeds[k], Generators[k].modulus);
  State.seeds = StridesFrom(valid);
  State.held.reset();
  Ahead.next = Ahead.end = 0;
}

void SeedGenerators(std::uint32_t clock) {
  SeedFromClock(clock);
  SeedFromOwnNumbers();
  State.coarse = static_cast<std::uint32_t>(RoundCount(CoarseMax * UniformRandom()));
}

}  // namespace zelvane
