// The random generators: golden numbers by integer arithmetic, moments, seeding.
#include "sim/random.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <set>
#include <vector>

#include "sim/plain_monte_carlo.h"

namespace zelvane {
namespace {

std::vector<double> Draw(int count) {
  std::vector<double> values;
  for (int i = 0; i < count; ++i) values.push_back(UniformRandom());
  return values;
}

// Wichmann & Hill's own integer form, in a common denominator: u = (x/30269 + y/30307 + z/30323) mod 1.
TEST(UniformRandomTest, FollowsTheGeneratorOfWichmannAndHill) {
  std::int64_t x = 1234;
  std::int64_t y = 5678;
  std::int64_t z = 9012;
  SetSeeds({1234.0, 5678.0, 9012.0});
  for (int i = 0; i < 10000; ++i) {
    x = 171 * x % 30269;
    y = 172 * y % 30307;
    z = 170 * z % 30323;
    constexpr std::int64_t Denominator = std::int64_t{30269} * 30307 * 30323;
    const std::int64_t numerator = (x * 30307 * 30323 + y * 30269 * 30323 + z * 30269 * 30307) % Denominator;
    // Three quotients and two sums below 3, each rounded once.
    ASSERT_NEAR(UniformRandom(), static_cast<double>(numerator) / static_cast<double>(Denominator), 2e-15)
        << i;
  }
}

TEST(UniformRandomTest, IntegersGiveTheSameBitsAsTheDoublesOfThePlainForm) {
  for (const std::array<double, 3>& seeds :
       {std::array<double, 3>{1234.0, 5678.0, 9012.0}, {1.0, 1.0, 1.0}, {30268.0, 30306.0, 30322.0}}) {
    PlainGenerator plain(seeds);
    SetSeeds(seeds);
    for (int i = 0; i < 100000; ++i) ASSERT_EQ(UniformRandom(), plain.Uniform()) << i;
    for (int i = 0; i < 1000; ++i) ASSERT_EQ(GaussianNoise(), plain.Gaussian()) << i;
  }
}

TEST(SeedsTest, EverySeedIsBroughtIntoTheRangeOfItsGenerator) {
  constexpr double Infinite = std::numeric_limits<double>::infinity();
  SetSeeds({1.0, 1.0, 1.0});
  const std::vector<double> ones = Draw(50);
  for (const std::array<double, 3>& seeds : {std::array<double, 3>{0.0, 0.0, 0.0},
                                             {30269.0, 30307.0, 30323.0},
                                             {30270.0, 30308.0, 30324.0},
                                             {Infinite, -Infinite, std::nan("")},
                                             {1.9, -30306.0, 30323.0 * 1e6 + 1.0}}) {
    SetSeeds(seeds);
    EXPECT_EQ(Draw(50), ones) << seeds[0];
  }
}

TEST(SeedsTest, TheClockDecidesTheSeries) {
  std::set<double> firsts;
  for (const std::uint32_t clock : {0U, 1U, 2U, 1'700'000'000U, 1'700'000'001U, 0xFFFFFFFFU}) {
    SeedGenerators(clock);
    const std::vector<double> first = Draw(5);
    SeedGenerators(clock);
    EXPECT_EQ(Draw(5), first) << clock;
    firsts.insert(first.front());
  }
  EXPECT_EQ(firsts.size(), 6U);
}

TEST(GaussianNoiseTest, GivesPairsOfThePolarMethodAndSeedsDropAHeldOne) {
  SetSeeds({5.0, 6.0, 7.0});
  double a = 0.0;
  double b = 0.0;
  double r = 2.0;
  while (r >= 1.0) {
    a = 2.0 * UniformRandom() - 1.0;
    b = 2.0 * UniformRandom() - 1.0;
    r = a * a + b * b;
  }
  const double f = std::sqrt(-2.0 * std::log(r) / r);
  SetSeeds({5.0, 6.0, 7.0});
  EXPECT_FLOAT_EQ(GaussianNoise(), static_cast<float>(f * b));
  SetSeeds({5.0, 6.0, 7.0});
  EXPECT_FLOAT_EQ(GaussianNoise(), static_cast<float>(f * b));
  EXPECT_FLOAT_EQ(GaussianNoise(), static_cast<float>(f * a));
}

}  // namespace
}  // namespace zelvane
