// The random generators: compared with their plain form, and seeding.
#include "numerics/random.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <set>

#include "kinetics/plain_monte_carlo.h"

namespace zelvane {
namespace {

std::vector<double> Draw(RandomStream& stream, int count) {
  std::vector<double> values;
  for (int i = 0; i < count; ++i) values.push_back(UniformRandom(stream));
  return values;
}

TEST(UniformRandomTest, IntegersGiveTheSameBitsAsTheDoublesOfThePlainForm) {
  for (const std::array<double, 3>& seeds :
       {std::array<double, 3>{1234.0, 5678.0, 9012.0}, {1.0, 1.0, 1.0}, {30268.0, 30306.0, 30322.0}}) {
    PlainGenerator plain(seeds);
    RandomStream stream;
    SetSeeds(stream, seeds);
    for (int i = 0; i < 100000; ++i) ASSERT_EQ(UniformRandom(stream), plain.Uniform()) << i;
    for (int i = 0; i < 1001; ++i)
      ASSERT_EQ(GaussianNoise(stream), plain.Gaussian()) << i;  // one value is kept for the next call
  }
}

TEST(SeedsTest, EverySeedIsBroughtIntoTheRangeOfItsGenerator) {
  constexpr double Infinite = std::numeric_limits<double>::infinity();
  RandomStream stream;
  SetSeeds(stream, {1.0, 1.0, 1.0});
  const std::vector<double> ones = Draw(stream, 50);
  for (const std::array<double, 3>& seeds : {std::array<double, 3>{0.0, 0.0, 0.0},
                                             {30269.0, 30307.0, 30323.0},
                                             {30270.0, 30308.0, 30324.0},
                                             {Infinite, -Infinite, std::nan("")},
                                             {1.9, -30306.0, 30323.0 * 1e6 + 1.0}}) {
    SetSeeds(stream, seeds);
    EXPECT_EQ(Draw(stream, 50), ones) << seeds[0];
  }
}

TEST(SeedsTest, TheClockDecidesTheSeries) {
  std::set<double> firsts;
  RandomStream stream;
  for (const std::uint32_t clock : {0U, 1U, 2U, 1'700'000'000U, 1'700'000'001U, 0xFFFFFFFFU}) {
    SeedGenerators(stream, clock);
    const std::vector<double> first = Draw(stream, 5);
    SeedGenerators(stream, clock);
    EXPECT_EQ(Draw(stream, 5), first) << clock;
    firsts.insert(first.front());
  }
  EXPECT_EQ(firsts.size(), 6U);
}

}  // namespace
}  // namespace zelvane
