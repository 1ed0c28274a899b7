// The two integrator engines: closed forms, the plain form bit for bit, refusals and limits.
#include <gtest/gtest.h>

#include <bit>
#include <cstring>
#include <limits>

#include "sim/integrator_cases.h"

namespace zelvane {
namespace {

using Slopes = std::array<std::array<double, 3>, 3>;

/// exp(a t) y: a thousand Taylor series of small steps, in double precision.
std::array<double, 3> Propagated(const Slopes& a, std::array<double, 3> y, double seconds) {
  const double h = seconds / 1000.0;
  for (int step = 0; step < 1000; ++step) {
    std::array<double, 3> term = y;
    for (int k = 1; k <= 8; ++k) {
      std::array<double, 3> next{};
      for (std::size_t i = 0; i < 3; ++i) {
        for (std::size_t j = 0; j < 3; ++j) next[i] += a[i][j] * term[j] * h / k;
      }
      term = next;
      for (std::size_t i = 0; i < 3; ++i) y[i] += term[i];
    }
  }
  return y;
}

/// Two states, closed and open; all channels closed at time 0.
IntegratorCase TwoStates(float opening, float closing) {
  IntegratorCase c;
  c.SetRate(1, 2, opening);
  c.SetRate(2, 1, closing);
  c.start[1] = 1.0F;
  return c;
}

float Uniform(std::mt19937& random, float low, float high) {
  return std::uniform_real_distribution<float>(low, high)(random);
}

bool Chance(std::mt19937& random, double probability) {
  return std::bernoulli_distribution(probability)(random);
}

/// Steps, ramps, exponentials and flat stretches, one behind the other.
void RandomProfile(std::mt19937& random, float scale, std::vector<float>& profile) {
  float level = Chance(random, 0.5) ? 0.0F : Uniform(random, -scale, scale);
  std::size_t i = 0;
  while (i < profile.size()) {
    const auto length = static_cast<std::size_t>(Uniform(random, 1.0F, 200.0F));
    const float slope = Chance(random, 0.3) ? Uniform(random, -scale, scale) / 100.0F : 0.0F;
    for (std::size_t end = std::min(profile.size(), i + length); i < end; ++i) profile[i] = (level += slope);
    level = Uniform(random, -scale, scale);
  }
}

/// A scheme of the grid or the table with a stimulus. Some step is coarse enough that passes fail.
IntegratorCase RandomCase(unsigned seed) {
  std::mt19937 random(seed);
  IntegratorCase c(450);
  c.numPoints = 250;
  c.intervalMs = Chance(random, 0.5) ? 0.01F : 0.013F;
  c.maxStepMs = c.intervalMs / static_cast<float>(std::uniform_int_distribution<int>(1, 4)(random));
  c.temperature = Uniform(random, 5.0F, 37.0F);
  const bool grid = Chance(random, 0.5);
  const int states = std::uniform_int_distribution<int>(2, MaxStates)(random);
  const double density = Chance(random, 0.3) ? 1.0 : 0.25;
  const float fastest = Chance(random, 0.3) ? 80000.0F : 5000.0F;
  for (std::size_t a = 1; a <= static_cast<std::size_t>(states); ++a) {
    c.on[a] = Chance(random, 0.9) ? 1 : 0;  // one that is off still feeds others
    c.start[a] = Chance(random, 0.3) ? Uniform(random, 0.0F, 0.3F) : 0.0F;
    for (std::size_t b = 1; b <= static_cast<std::size_t>(states); ++b) {
      const bool neighbours = b == a + 1 || a == b + 1 || b == a + 5 || a == b + 5;
      if (a == b || (grid ? !neighbours : !Chance(random, density))) continue;
      c.rate[a][b] = Uniform(random, 0.0F, fastest) / (grid ? 1.0F : 10.0F);
      if (Chance(random, 0.3)) c.WithVoltage(a, b, Uniform(random, -1.5F, 1.5F));
      for (std::size_t d = 1; d <= MaxDrugs; ++d) {
        if (Chance(random, 0.05)) c.WithDrug(d, a, b);
      }
    }
  }
  RandomProfile(random, 0.08F, c.profiles[0]);
  for (std::size_t d = 1; d <= MaxDrugs; ++d) RandomProfile(random, 1.0F, c.profiles[d]);
  return c;
}

bool SameBits(const std::vector<float>& a, const std::vector<float>& b) {
  return a.size() == b.size() && std::memcmp(a.data(), b.data(), a.size() * sizeof(float)) == 0;
}

void ExpectSameRows(const IntegratorOutput& a, const IntegratorOutput& b) {
  for (std::size_t s = 1; s <= MaxStates; ++s) EXPECT_TRUE(SameBits(a.room[s], b.room[s])) << "state " << s;
}

TEST(IntegratorsTest, FollowTheMatrixExponentialUnderAConstantStimulus) {
  IntegratorCase c;
  c.SetRate(1, 2, 2e6F);
  c.WithDrug(1, 1, 2);
  c.SetRate(2, 1, 800.0F);
  c.SetRate(2, 3, 300.0F);
  c.WithVoltage(2, 3, 0.7F);
  c.SetRate(3, 2, 1500.0F);
  c.start[1] = 0.9F;
  c.start[3] = 0.1F;
  std::fill(c.profiles[1].begin(), c.profiles[1].end(), 1e-3F);
  std::fill(c.profiles[0].begin(), c.profiles[0].end(), 0.04F);
  const double binding = 2e6 * 1e-3;
  const double opening = 300.0 * std::exp(0.04 * 0.7 * 11603.0 / 298.16);
  const Slopes a{{{-binding, 800.0, 0.0}, {binding, -800.0 - opening, 1500.0}, {0.0, opening, -1500.0}}};
  const auto expectAt = [&a](const IntegratorOutput& out, std::size_t point, double seconds,
                             double tolerance) {
    const auto y = Propagated(a, {0.9, 0.0, 0.1}, seconds);
    for (std::size_t s = 1; s <= 3; ++s) EXPECT_NEAR(out.room[s][point], y[s - 1], tolerance) << point;
  };
  IntegratorOutput fixed(c.numPoints);
  RunFixed(c, fixed);
  for (std::size_t p = 1; p <= 1001; p += 100) expectAt(fixed, p, static_cast<double>(p - 1) * 1e-5, 1e-5);
  IntegratorOutput adaptive(c.numPoints);
  const AdaptiveResult steps = RunAdaptive(c, adaptive);
  ASSERT_TRUE(steps.finished);
  for (std::size_t q = 1; q <= static_cast<std::size_t>(steps.saved); ++q) {
    expectAt(adaptive, q, static_cast<double>(adaptive.saved[q]) * 1e-3, 5e-4);  // its precision
  }
}

/// Holds IntegrateFixedStep to the plain form; gives the number of passes that failed.
int ExpectPlainFixedStep(const IntegratorCase& c) {
  IntegratorOutput plain(c.numPoints);
  IntegratorOutput fast(c.numPoints);
  const auto expected = PlainFixedStep(c.Tables(), c.View(), c.start, c.numPoints, c.maxStepMs, plain.rows);
  const FixedStepResult result = RunFixed(c, fast);
  EXPECT_EQ(result.reductions, expected.reductions);
  EXPECT_EQ(result.stalledPasses, expected.stalledPasses);
  ExpectSameRows(fast, plain);
  return result.reductions;
}

/// The same for IntegrateAdaptive, from point `offset` of the profiles.
AdaptiveResult ExpectPlainAdaptive(const IntegratorCase& c, int offset = 0) {
  IntegratorOutput plain(c.numPoints);
  IntegratorOutput fast(c.numPoints);
  const AdaptiveResult expected =
      PlainAdaptive(c.Tables(), c.View(offset), c.start, c.numPoints, c.precision, plain.saved, plain.rows);
  const AdaptiveResult result = RunAdaptive(c, fast, offset);
  EXPECT_EQ(result.finished, expected.finished);
  EXPECT_EQ(result.rounds, expected.rounds);
  EXPECT_EQ(result.saved, expected.saved);
  EXPECT_EQ(result.precision, expected.precision);
  EXPECT_TRUE(SameBits(fast.saved, plain.saved));
  ExpectSameRows(fast, plain);
  return result;
}

TEST(FixedStepTest, SettlesWhereEveryFlowEqualsTheFlowBack) {
  // A cycle of four states whose rates have equal products both ways round.
  IntegratorCase c(6000);
  c.numPoints = 5000;
  const std::array<float, 5> forward{0, 4000, 900, 2500, 1200};
  const std::array<float, 5> back{0, 1500, 3000, 600, 4000};
  for (std::size_t s = 1; s <= 4; ++s) {
    c.SetRate(s, s % 4 + 1, forward[s]);
    c.SetRate(s % 4 + 1, s, back[s]);
  }
  c.start[2] = 1.0F;
  IntegratorOutput out(c.numPoints);
  RunFixed(c, out);
  double sum = 0.0;
  for (std::size_t s = 1; s <= 4; ++s) {
    const double there = static_cast<double>(out.room[s][5001]) * static_cast<double>(forward[s]);
    const double here = static_cast<double>(out.room[s % 4 + 1][5001]) * static_cast<double>(back[s]);
    EXPECT_NEAR(there / here, 1.0, 1e-5) << s;  // some 100 roundings of a float
    sum += static_cast<double>(out.room[s][5001]);
  }
  EXPECT_NEAR(sum, 1.0, 1e-5);
}

TEST(FixedStepTest, EqualsThePlainFormBitForBit) {
  int failedPasses = 0;
  for (unsigned seed = 1; seed <= 30; ++seed) {
    SCOPED_TRACE(seed);
    failedPasses += ExpectPlainFixedStep(RandomCase(seed));
  }
  EXPECT_GT(failedPasses, 0);  // the range test was met as well
}

TEST(FixedStepTest, EqualsThePlainFormWhenNothingMovesAnyMore) {
  IntegratorCase c = TwoStates(90000.0F, 20000.0F);
  c.WithDrug(1, 1, 2);
  c.numPoints = 900;
  c.maxStepMs = 0.004F;
  std::fill(c.profiles[1].begin() + 300, c.profiles[1].begin() + 603, 0.7F);
  ExpectPlainFixedStep(c);
}

TEST(FixedStepTest, HalvesTheStepUntilOccupanciesStayInRange) {
  const float noNumber = std::numeric_limits<float>::quiet_NaN();
  struct Row {
    float perSecond;  // of both rates: a step is stable up to h x 2 x rate = 2.785
    float start;      // of state 2
    int reductions;
  };
  for (const Row& row : {Row{1e5F, 0, 0}, Row{2e5F, 0, 1}, Row{4e5F, 0, 2}, Row{1e7F, 0, MaxReductions},
                         Row{1e3F, noNumber, MaxReductions}}) {
    SCOPED_TRACE(row.perSecond);
    IntegratorCase c = TwoStates(row.perSecond, row.perSecond);
    c.start[2] = row.start;
    c.maxStepMs = 0.01F;
    IntegratorOutput out(c.numPoints);
    EXPECT_EQ(RunFixed(c, out).reductions, row.reductions);
  }
}

TEST(FixedStepTest, TakesTruncatedQuotientOfIntervalAndStepAsSubsteps) {
  for (const auto& [stepMs, substeps] : {std::pair{0.005F, 2},
                                         {0.0025F, 4},
                                         {0.01F, 1},
                                         {1.0F, 1},
                                         {0.007F, 1},
                                         {0.001F, 9},
                                         {1e-8F, 999999}}) {
    EXPECT_EQ(SubstepsPerPoint(0.01F, stepMs), substeps) << stepMs;
  }
}

TEST(FixedStepTest, RunsOfFewPointsReportAtEachPoint) {
  for (const auto& [numPoints, expected] :
       {std::pair{0, 0}, {1, 1}, {2, 2}, {19, 19}, {20, 20}, {1000, 20}}) {
    IntegratorCase c = TwoStates(1000.0F, 500.0F);
    c.numPoints = numPoints;
    IntegratorOutput out(c.numPoints);
    int calls = 0;
    RunFixed(c, out, [&](double) { return ++calls < 0; });
    EXPECT_EQ(calls, expected);
    EXPECT_EQ(out.room[2][static_cast<std::size_t>(numPoints) + 1] > 0.0F, numPoints > 0);
  }
}

TEST(FixedStepTest, DoesNothingWithoutTime) {
  IntegratorCase c = TwoStates(1000.0F, 500.0F);
  IntegratorOutput out(c.numPoints);
  for (const float interval : {0.0F, -1.0F, std::numeric_limits<float>::quiet_NaN()}) {
    c.intervalMs = interval;
    EXPECT_EQ(RunFixed(c, out).reductions, 0);
  }
  EXPECT_EQ(out.room[1][1], 0.0F);
}

TEST(FixedStepTest, EndsWhenTheTimeOverflows) {
  IntegratorCase c = TwoStates(1000.0F, 500.0F);
  c.intervalMs = c.maxStepMs = 3e38F;
  IntegratorOutput out(c.numPoints);
  EXPECT_EQ(RunFixed(c, out).reductions, MaxReductions);
}

TEST(AdaptiveStepTest, EqualsThePlainFormBitForBit) {
  for (unsigned seed = 101; seed <= 130; ++seed) {
    SCOPED_TRACE(seed);
    IntegratorCase c = RandomCase(seed);
    if (seed > 125) c.numPoints = static_cast<int>(seed) - 125;
    ExpectPlainAdaptive(c, seed % 3 == 0 ? 450 : 0);  // runs off the end of the profiles
  }
}

TEST(AdaptiveStepTest, LoosensAPrecisionThatNoStepCanReach) {
  // Rates so high that the step that they ask for no longer moves a time of seconds.
  IntegratorCase c = TwoStates(1e12F, 1e12F);
  c.WithDrug(1, 1, 2);
  c.intervalMs = 1000.0F;
  c.numPoints = 20;
  c.precision = 1e-9F;
  std::fill(c.profiles[1].begin() + 5, c.profiles[1].end(), 1.0F);
  const AdaptiveResult result = ExpectPlainAdaptive(c);
  EXPECT_TRUE(result.precisionReduced);
  EXPECT_GT(result.precision, c.precision);
}

TEST(AdaptiveStepTest, GivesUpWhenSlopesAreNoNumbers) {
  IntegratorCase c = TwoStates(std::numeric_limits<float>::infinity(), 1.0F);
  IntegratorOutput out(c.numPoints);
  EXPECT_FALSE(RunAdaptive(c, out).finished);
}

TEST(FirstActivePointTest, WaitsForTheStimulusThatPopulatedStatesNeed) {
  IntegratorCase c = TwoStates(1000.0F, 500.0F);
  c.profiles[1][300] = 1e-3F;
  c.profiles[2][200] = 1e-3F;
  c.profiles[0][100] = -0.05F;
  const auto first = [&] { return FirstActivePoint(c.Tables(), c.start, c.View(), c.numPoints); };
  EXPECT_EQ(first(), 0);  // a rate that depends on nothing leaves state 1
  c.WithDrug(1, 1, 2);
  EXPECT_EQ(first(), 300);  // the rate out of state 2 is free, but nothing is there
  c.WithDrug(2, 1, 2);
  EXPECT_EQ(first(), 200);
  c.WithVoltage(1, 2, 1.0F);
  EXPECT_EQ(first(), 100);
  c.depend.Volt[1][2] = 2;  // selects nothing
  EXPECT_EQ(first(), 200);
  c.numPoints = 150;
  EXPECT_EQ(first(), 150);  // nothing happens in this run
  c.start[2] = 0.1F;
  EXPECT_EQ(first(), 0);
}

TEST(PointIndexTest, TruncatesAndStaysInsideTheProfiles) {
  IntegratorCase c(50);
  const auto index = [&](float t, int offset) { return PointIndex(c.View(offset), t); };
  EXPECT_EQ(index(0.0F, 0), 0);
  EXPECT_EQ(index(1.99e-5F, 0), 1);
  EXPECT_EQ(index(1.99e-5F, 40), 41);
  EXPECT_EQ(index(2e-4F, 40), 49);
  EXPECT_EQ(index(1e30F, 0), 49);
  EXPECT_EQ(index(std::numeric_limits<float>::infinity(), 60), 49);
  EXPECT_EQ(index(-1.0F, 3), 3);
}

}  // namespace
}  // namespace zelvane
