// The two integrator engines: closed forms, the plain form bit for bit, refusals and limits.
#include <gtest/gtest.h>

#include <bit>
#include <cstdint>
#include <cstring>
#include <limits>

#include "sim/integrator_cases.h"
#include "sim/internal/lanes.h"

namespace zelvane {
namespace {

using Matrix = std::vector<std::vector<double>>;

Matrix Times(const Matrix& a, const Matrix& b) {
  Matrix c(a.size(), std::vector<double>(a.size()));
  for (std::size_t i = 0; i < a.size(); ++i) {
    for (std::size_t j = 0; j < a.size(); ++j) {
      for (std::size_t k = 0; k < a.size(); ++k) c[i][j] += a[i][k] * b[k][j];
    }
  }
  return c;
}

/// exp(a) by scaling, the Taylor series and squaring.
Matrix Exponential(Matrix a) {
  constexpr int squarings = 12;
  for (auto& row : a) {
    for (double& x : row) x = std::ldexp(x, -squarings);
  }
  Matrix sum(a.size(), std::vector<double>(a.size()));
  for (std::size_t i = 0; i < a.size(); ++i) sum[i][i] = 1.0;
  Matrix term = sum;
  for (int k = 1; k <= 14; ++k) {
    term = Times(term, a);
    for (std::size_t i = 0; i < a.size(); ++i) {
      for (std::size_t j = 0; j < a.size(); ++j) sum[i][j] += (term[i][j] /= k);
    }
  }
  for (int k = 0; k < squarings; ++k) sum = Times(sum, sum);
  return sum;
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
  IntegratorCase c(700);
  c.numPoints = 400;
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

TEST(FixedStepTest, RelaxesBetweenTwoStatesAsTheClosedFormSays) {
  const IntegratorCase c = TwoStates(1000.0F, 500.0F);
  IntegratorOutput out(c.numPoints);
  RunFixed(c, out);
  for (int p = 1; p <= c.numPoints + 1; p += 50) {
    const double t = (p - 1) * 1e-5;
    const double open = 1000.0 / 1500.0 * (1.0 - std::exp(-1500.0 * t));
    EXPECT_NEAR(out.room[2][static_cast<std::size_t>(p)], open, 5e-6) << p;  // 2000 float roundings
    EXPECT_NEAR(out.room[1][static_cast<std::size_t>(p)], 1.0 - open, 5e-6) << p;
  }
}

TEST(FixedStepTest, FollowsTheMatrixExponentialUnderAConstantStimulus) {
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
  IntegratorOutput fixed(c.numPoints);
  IntegratorOutput adaptive(c.numPoints);
  RunFixed(c, fixed);
  const AdaptiveResult steps = RunAdaptive(c, adaptive);
  const auto expected = [&](double t) {
    const Matrix e = Exponential({{-binding * t, 800.0 * t, 0.0},
                                  {binding * t, (-800.0 - opening) * t, 1500.0 * t},
                                  {0.0, opening * t, -1500.0 * t}});
    std::array<double, 4> y{};
    for (std::size_t s = 1; s <= 3; ++s) y[s] = 0.9 * e[s - 1][0] + 0.1 * e[s - 1][2];
    return y;
  };
  for (std::size_t p = 1; p <= 1001; p += 100) {
    const auto y = expected(static_cast<double>(p - 1) * 1e-5);
    for (std::size_t s = 1; s <= 3; ++s) EXPECT_NEAR(fixed.room[s][p], y[s], 1e-5) << p;
  }
  ASSERT_TRUE(steps.finished);
  for (std::size_t q = 1; q <= static_cast<std::size_t>(steps.saved); ++q) {
    const auto y = expected(static_cast<double>(adaptive.saved[q]) * 1e-3);
    for (std::size_t s = 1; s <= 3; ++s) EXPECT_NEAR(adaptive.room[s][q], y[s], 5e-4) << q;  // its precision
  }
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
    EXPECT_NEAR(there / here, 1.0, 1e-5) << s;
    sum += static_cast<double>(out.room[s][5001]);
  }
  EXPECT_NEAR(sum, 1.0, 1e-5);
}

TEST(FixedStepTest, EqualsThePlainFormBitForBit) {
  int failedPasses = 0;
  for (unsigned seed = 1; seed <= 40; ++seed) {
    SCOPED_TRACE(seed);
    const IntegratorCase c = RandomCase(seed);
    IntegratorOutput plain(c.numPoints);
    IntegratorOutput fast(c.numPoints);
    const FixedStepResult expected =
        PlainFixedStep(c.Tables(), c.View(), c.start, c.numPoints, c.maxStepMs, plain.rows);
    const FixedStepResult result = RunFixed(c, fast);
    EXPECT_EQ(result.reductions, expected.reductions);
    EXPECT_EQ(result.stalledPasses, expected.stalledPasses);
    failedPasses += result.reductions;
    ExpectSameRows(fast, plain);
  }
  EXPECT_GT(failedPasses, 0);  // the range test was met as well
}

TEST(FixedStepTest, EqualsThePlainFormWhenNothingMovesAnyMore) {
  IntegratorCase c = TwoStates(90000.0F, 20000.0F);
  c.WithDrug(1, 1, 2);
  c.numPoints = 900;
  c.maxStepMs = 0.004F;
  std::fill(c.profiles[1].begin() + 300, c.profiles[1].begin() + 603, 0.7F);
  IntegratorOutput plain(c.numPoints);
  IntegratorOutput fast(c.numPoints);
  PlainFixedStep(c.Tables(), c.View(), c.start, c.numPoints, c.maxStepMs, plain.rows);
  RunFixed(c, fast);
  ExpectSameRows(fast, plain);
  EXPECT_EQ(fast.room[2][250], 0.0F);
  EXPECT_GT(fast.room[2][600], 0.7F);
}

TEST(FixedStepTest, HalvesTheStepUntilOccupanciesStayInRange) {
  struct Row {
    float perSecond;  // of both rates: a step is stable up to h x 2 x rate = 2.785
    int reductions;
  };
  for (const Row& row : {Row{1e5F, 0}, Row{2e5F, 1}, Row{4e5F, 2}, Row{1e7F, MaxReductions}}) {
    SCOPED_TRACE(row.perSecond);
    IntegratorCase c = TwoStates(row.perSecond, row.perSecond);
    c.maxStepMs = 0.01F;
    IntegratorOutput out(c.numPoints);
    EXPECT_EQ(RunFixed(c, out).reductions, row.reductions);
  }
}

TEST(FixedStepTest, TakesAnOccupancyThatIsNoNumberForOneOutOfRange) {
  IntegratorCase c = TwoStates(1000.0F, 500.0F);
  c.start[2] = std::numeric_limits<float>::quiet_NaN();
  IntegratorOutput out(c.numPoints);
  EXPECT_EQ(RunFixed(c, out).reductions, MaxReductions);
}

TEST(FixedStepTest, TakesTruncatedQuotientOfIntervalAndStepAsSubsteps) {
  struct Row {
    float intervalMs, stepMs;
    long long substeps;
  };
  for (const Row& row :
       {Row{0.01F, 0.005F, 2}, Row{0.01F, 0.0025F, 4}, Row{0.01F, 0.01F, 1}, Row{0.01F, 1.0F, 1},
        Row{0.01F, 0.007F, 1}, Row{0.01F, 0.001F, 9}, Row{0.01F, 1e-8F, 999999}}) {
    EXPECT_EQ(SubstepsPerPoint(row.intervalMs, row.stepMs), row.substeps) << row.stepMs;
  }
}

TEST(FixedStepTest, RunsOfFewPointsReportAtEachPoint) {
  struct Row {
    int numPoints, calls;
  };
  for (const Row& row : {Row{1, 1}, Row{2, 2}, Row{19, 19}, Row{20, 20}, Row{1000, 20}}) {
    IntegratorCase c = TwoStates(1000.0F, 500.0F);
    c.numPoints = row.numPoints;
    IntegratorOutput out(c.numPoints);
    int calls = 0;
    const auto result = RunFixed(c, out, [&](double) { return ++calls < 0; });
    EXPECT_EQ(calls, row.calls);
    EXPECT_FALSE(result.stopped);
    EXPECT_GT(out.room[2][static_cast<std::size_t>(row.numPoints) + 1], 0.0F);
  }
}

TEST(FixedStepTest, StopsWhereTheHookSays) {
  const IntegratorCase c = TwoStates(1000.0F, 500.0F);
  IntegratorOutput out(c.numPoints);
  EXPECT_TRUE(RunFixed(c, out, [](double fraction) { return fraction >= 0.5; }).stopped);
  EXPECT_GT(out.room[2][500], 0.0F);
  EXPECT_EQ(out.room[2][502], 0.0F);
}

TEST(FixedStepTest, LeavesRowsOfStatesThatAreOffAlone) {
  IntegratorCase c = TwoStates(1000.0F, 0.0F);
  c.on[1] = 0;  // a constant source
  c.start[1] = 0.5F;
  IntegratorOutput out(c.numPoints);
  out.rows[1] = {};
  RunFixed(c, out);
  EXPECT_NEAR(out.room[2][101], 0.5 * 1000.0 * 1e-3, 2e-5);  // 200 float roundings of the sum
}

TEST(FixedStepTest, DoesNothingWithoutPointsOrTime) {
  IntegratorCase c = TwoStates(1000.0F, 500.0F);
  IntegratorOutput out(10);
  c.numPoints = 0;
  EXPECT_EQ(RunFixed(c, out).reductions, 0);
  c.numPoints = 10;
  for (const float interval : {0.0F, -1.0F, std::numeric_limits<float>::quiet_NaN()}) {
    c.intervalMs = interval;
    EXPECT_EQ(RunFixed(c, out).reductions, 0);
  }
  EXPECT_EQ(out.room[1][1], 0.0F);
}

TEST(AdaptiveStepTest, EqualsThePlainFormBitForBit) {
  for (unsigned seed = 101; seed <= 130; ++seed) {
    SCOPED_TRACE(seed);
    IntegratorCase c = RandomCase(seed);
    const int offset = seed % 3 == 0 ? 450 : 0;  // runs off the end of the profiles
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
  }
}

TEST(AdaptiveStepTest, SavesTimesThatRiseFromZeroToTheEnd) {
  IntegratorCase c = TwoStates(1000.0F, 500.0F);
  for (const int numPoints : {1, 2, 19, 1000}) {
    SCOPED_TRACE(numPoints);
    c.numPoints = numPoints;
    IntegratorOutput out(numPoints);
    const AdaptiveResult result = RunAdaptive(c, out);
    ASSERT_TRUE(result.finished);
    EXPECT_LE(result.saved, numPoints);
    const auto last = static_cast<std::size_t>(result.saved);
    for (std::size_t q = 2; q <= last; ++q) EXPECT_GT(out.saved[q], out.saved[q - 1]);
    EXPECT_NEAR(out.saved[last], static_cast<float>(numPoints) * c.intervalMs, 1e-5);
    EXPECT_NEAR(out.room[2][last], 2.0 / 3.0 * (1.0 - std::exp(-1.5 * 0.01 * numPoints)), 1e-3);
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
  IntegratorOutput out(c.numPoints);
  IntegratorOutput plain(c.numPoints);
  const AdaptiveResult result = RunAdaptive(c, out);
  EXPECT_TRUE(result.precisionReduced);
  EXPECT_GT(result.precision, c.precision);
  const AdaptiveResult expected =
      PlainAdaptive(c.Tables(), c.View(), c.start, c.numPoints, c.precision, plain.saved, plain.rows);
  EXPECT_EQ(result.precision, expected.precision);
  ExpectSameRows(out, plain);
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

TEST(StimulusStretchTest, EndsWhereAProfileThatMattersChanges) {
  IntegratorCase c(40000);
  c.SetRate(1, 2, 1000.0F);
  c.WithDrug(1, 1, 2);
  std::fill(c.profiles[1].begin() + 700, c.profiles[1].begin() + 1213, 1e-3F);
  c.profiles[2][5] = 1.0F;  // enters no rate
  const CompiledScheme scheme = CompileScheme(c.Tables());
  const StimulusView view = c.View();
  StimulusCursor cursor;
  StartCursor(cursor, scheme);
  EXPECT_EQ(StretchAt(cursor, scheme, view, 0).end, 700);
  const StimulusStretch& step = StretchAt(cursor, scheme, view, 705);
  EXPECT_EQ(step.end, 1213);
  EXPECT_EQ(PointIndex(view, step.endTime), 1213);
  EXPECT_EQ(PointIndex(view, std::nextafter(step.endTime, 0.0F)), 1212);
  EXPECT_EQ(StretchAt(cursor, scheme, view, 39999).endTime, std::numeric_limits<float>::infinity());
}

TEST(LanesTest, PicksAcrossVectorsAndTellsBits) {
  std::array<float, MaxLanes> y;
  std::array<std::int32_t, LanesPerVector> index{23, 0, 15, 8, 7, 16, 9, 1};
  for (std::size_t k = 0; k < y.size(); ++k) y[k] = static_cast<float>(k);
  const Lanes vectors[3] = {LoadLanes<Lanes>(&y[0]), LoadLanes<Lanes>(&y[8]), LoadLanes<Lanes>(&y[16])};
  std::array<float, LanesPerVector> picked;
  StoreLanes(picked.data(), Pick(vectors, LoadLanes<LaneIndex>(index.data())));
  for (std::size_t k = 0; k < picked.size(); ++k) EXPECT_EQ(picked[k], static_cast<float>(index[k]));
  EXPECT_FALSE(AnyOutside(vectors[0], 0.0F, 7.0F));
  EXPECT_TRUE(AnyOutside(vectors[0], 0.0F, 6.5F));
  EXPECT_TRUE(AnyOutside(Spread(std::numeric_limits<float>::quiet_NaN()), 0.0F, 1.0F));
  EXPECT_TRUE(AnyBitDiffers(Spread(0.0F), Spread(-0.0F)));
  EXPECT_FALSE(AnyBitDiffers(vectors[1], vectors[1]));
}

}  // namespace
}  // namespace zelvane
