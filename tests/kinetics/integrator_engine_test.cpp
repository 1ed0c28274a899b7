// The two integrator engines: compared with the plain form bit for bit, refusals and limits.
#include <gtest/gtest.h>

#include <bit>
#include <limits>

#include "kinetics/integrator_cases.h"
#include "kinetics/simulate.h"

namespace zelvane {
namespace {

/// Returns two states, closed and open; all channels are closed at time 0.
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

/// Fills a profile with consecutive steps, ramps, exponentials and flat stretches.
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

/// Returns a scheme of the grid or the table with a stimulus. Some steps are so coarse that passes fail.
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
    c.on[a] = Chance(random, 0.9) ? 1 : 0;  // a state that is off still feeds others
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

void ExpectSameRows(const IntegratorOutput& a, const IntegratorOutput& b) {
  for (std::size_t s = 1; s <= MaxStates; ++s) EXPECT_TRUE(SameBits(a.room[s], b.room[s])) << "state " << s;
}

/// Compares IntegrateFixedStep with the plain form and returns the number of failed passes.
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

/// Does the same for IntegrateAdaptive, from point `offset` of the profiles.
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
  EXPECT_EQ(result.precisionLost, expected.precisionLost);
  EXPECT_TRUE(SameBits(fast.saved, plain.saved));
  ExpectSameRows(fast, plain);
  return result;
}

TEST(FixedStepTest, EqualsThePlainFormBitForBit) {
  int failedPasses = 0;
  for (unsigned seed = 1; seed <= 30; ++seed) {
    SCOPED_TRACE(seed);
    failedPasses += ExpectPlainFixedStep(RandomCase(seed));
  }
  EXPECT_GT(failedPasses, 0);  // the test of the range was reached as well
}

TEST(FixedStepTest, EqualsThePlainFormWhenNothingMovesAnyMore) {
  IntegratorCase c = TwoStates(90000.0F, 20000.0F);
  c.WithDrug(1, 1, 2);
  c.numPoints = 900;
  c.maxStepMs = 0.004F;
  std::fill(c.profiles[1].begin() + 300, c.profiles[1].begin() + 603, 0.7F);
  ExpectPlainFixedStep(c);
}

TEST(FixedStepTest, TakesTruncatedQuotientOfIntervalAndStepAsSubsteps) {
  EXPECT_EQ(SubstepsPerPoint(0.01F, 0.005F), 2);
  EXPECT_EQ(SubstepsPerPoint(0.01F, 0.007F), 1);
  EXPECT_EQ(SubstepsPerPoint(0.01F, 0.001F), 9);
  EXPECT_EQ(SubstepsPerPoint(0.01F, 1.0F), 1);
  EXPECT_EQ(SubstepsPerPoint(0.01F, 1e-8F), 999999);
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

TEST(FixedStepTest, DoesNothingWithoutTimeAndEndsWhenNumbersDo) {
  constexpr float NoNumber = std::numeric_limits<float>::quiet_NaN();
  using Row = std::tuple<float, float, int>;
  for (const auto& [intervalMs, start, reductions] :
       {Row{0, 0, 0}, Row{-1, 0, 0}, Row{NoNumber, 0, 0}, Row{3e38F, 0, MaxReductions},
        Row{0.01F, NoNumber, MaxReductions}}) {
    IntegratorCase c = TwoStates(1000.0F, 500.0F);
    c.intervalMs = c.maxStepMs = intervalMs;
    c.start[2] = start;
    IntegratorOutput out(c.numPoints);
    EXPECT_EQ(RunFixed(c, out).reductions, reductions) << intervalMs << ", " << start;
    EXPECT_EQ(out.room[1][1], reductions == 0 ? 0.0F : 1.0F);
  }
}

TEST(AdaptiveStepTest, EqualsThePlainFormBitForBit) {
  for (unsigned seed = 101; seed <= 130; ++seed) {
    SCOPED_TRACE(seed);
    IntegratorCase c = RandomCase(seed);
    if (seed > 125) c.numPoints = static_cast<int>(seed) - 125;
    ExpectPlainAdaptive(c, seed % 3 == 0 ? 450 : 0);  // runs beyond the end of the profiles
  }
}

TEST(AdaptiveStepTest, LoosensAPrecisionThatNoStepCanReachUpToTheCoarsest) {
  // The drug comes at 5 s. From there on the fast rates need such a short step that it does not change the time.
  using Row = std::tuple<float, float, bool, bool>;
  for (const auto& [perSecond, precision, reduced, finished] :
       {Row{3e5F, 1e-9F, true, true}, Row{1e12F, 1e-9F, true, false}, Row{1e12F, 0.5F, true, false},
        Row{10.0F, 1e6F, false, true}}) {
    SCOPED_TRACE(testing::Message() << perSecond << " /s at " << precision);
    IntegratorCase c(5100);
    c.SetRate(1, 2, perSecond);
    c.SetRate(2, 1, perSecond);
    c.start[1] = 1.0F;
    c.WithDrug(1, 1, 2);
    c.intervalMs = 1.0F;
    c.numPoints = 5010;
    c.precision = precision;
    std::fill(c.profiles[1].begin() + 5000, c.profiles[1].end(), 1.0F);
    const AdaptiveResult result = ExpectPlainAdaptive(c);
    EXPECT_EQ(result.precisionReduced, reduced);
    EXPECT_EQ(result.finished, finished);
    EXPECT_EQ(result.precisionLost, !finished);
    EXPECT_LE(result.precision, 1.0F);
    EXPECT_EQ(result.precision > precision, reduced);
  }
}

TEST(AdaptiveStepTest, GivesUpWhenSlopesAreNoNumbers) {
  IntegratorCase c = TwoStates(std::numeric_limits<float>::infinity(), 1.0F);
  IntegratorOutput out(c.numPoints);
  const AdaptiveResult result = RunAdaptive(c, out);
  EXPECT_FALSE(result.finished);
  EXPECT_TRUE(result.stalled);
}

TEST(FirstActivePointTest, WaitsForTheStimulusThatPopulatedStatesNeed) {
  IntegratorCase c = TwoStates(1000.0F, 500.0F);
  c.profiles[1][300] = 1e-3F;
  c.profiles[2][200] = 1e-3F;
  c.profiles[0][100] = -0.05F;
  const auto first = [&] { return FirstActivePoint(c.Tables(), c.start, c.View(), c.numPoints); };
  EXPECT_EQ(first(), 0);  // a rate that depends on nothing leaves state 1
  c.WithDrug(1, 1, 2);
  EXPECT_EQ(first(), 300);  // the rate out of state 2 does not depend on a profile, but state 2 is empty
  c.WithDrug(2, 1, 2);
  EXPECT_EQ(first(), 200);
  c.WithVoltage(1, 2, 1.0F);
  EXPECT_EQ(first(), 100);
  c.depend.Volt[1][2] = 2;  // has no effect
  EXPECT_EQ(first(), 200);
  c.numPoints = 150;
  EXPECT_EQ(first(), 150);  // nothing happens in this run
  c.start[2] = 0.1F;
  EXPECT_EQ(first(), 0);
}

TEST(Integrators, MemoryOfEarlierSweepsChangesNoBit) {
  for (unsigned seed = 1; seed <= 12; ++seed) {
    IntegratorCase c = RandomCase(seed);
    std::mt19937 random(seed);
    SchemeMemory memory;
    for (int sweep = 0; sweep < 4; ++sweep) {
      for (const Simulator simulator : {Simulator::FixedStep, Simulator::Adaptive}) {
        const SimulationSettings settings{
            .simulator = simulator, .numPoints = c.numPoints, .start = c.start, .maxStepMs = c.maxStepMs};
        IntegratorOutput alone(c.numPoints);
        IntegratorOutput remembering(c.numPoints);
        Simulate(c.Tables(), c.View(), settings, {.rows = alone.rows, .savedTimeMs = alone.saved});
        Simulate(c.Tables(), c.View(), settings,
                 {.rows = remembering.rows, .savedTimeMs = remembering.saved, .scheme = &memory});
        ExpectSameRows(alone, remembering);
        EXPECT_TRUE(SameBits(alone.saved, remembering.saved)) << "seed " << seed << " sweep " << sweep;
      }
      for (auto& row : c.rate) {
        for (float& rate : row) rate *= Uniform(random, 0.5F, 1.2F);
      }
      if (sweep == 1) c.rate[1][2] = c.rate[1][2] == 0.0F ? 30.0F : 0.0F;  // a transition more, or one less
    }
  }
}

}  // namespace
}  // namespace zelvane
