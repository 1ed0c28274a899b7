// The simulator of single channels, compared with its plain form bit for bit, and the golden run.
#include <cstring>
#include <random>

#include "kinetics/monte_carlo.h"
#include "kinetics/plain_monte_carlo.h"
#include "model/model.h"
#include "run/run_fixtures.h"

namespace zelvane {
namespace {

using Seeds = std::array<double, 3>;
constexpr Seeds GoldenSeeds{1234.0, 5678.0, 9012.0};

testing::AssertionResult SameFloats(std::span<const float> a, std::span<const float> b, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) {
    if (std::memcmp(&a[i], &b[i], sizeof(float)) != 0) {
      return testing::AssertionFailure() << "entry " << i << " of " << count << ": " << a[i] << ", " << b[i];
    }
  }
  return testing::AssertionSuccess();
}

/// A simple AMPA scheme: a closed state that binds twice, an open one, and a desensitised one.
class MonteCarloFormsTest : public RunTest {
 protected:
  MonteCarloFormsTest() {
    Model.SimulatorKind = MonteCarlo;
    Model.ModelIs2D = 0;
    SetRate(1, 2, 4.6e6F, 0.0F, 1);
    SetRate(2, 1, 4260.0F);
    SetRate(2, 3, 28.4e6F, 0.0F, 1);
    SetRate(3, 2, 3260.0F);
    SetRate(3, 4, 4240.0F);
    SetRate(4, 3, 900.0F);
    SetRate(3, 5, 2890.0F, 0.4F);
    SetRate(5, 3, 39.2F);
    SetRate(4, 5, 172.0F);
    SetRate(2, 5, 1e-8F);
    SetRate(5, 4, 0.7F, -0.5F, 2);
    Model.StateMonitored = {};
    Model.StateMonitored[4] = Model.StateMonitored[3] = 1;
    Model.StateConductance = {};
    Model.StateConductance[4] = 10.0F;
    Model.StateConductance[3] = 4.0F;
    Model.OpenState = 4;
    Model.NumPoints = 400;
    Model.NumChannels = 60;
    for (int p = 100; p < 200; ++p) Stimulus.Profile[1][p] = 1e-3F;
    for (int p = 0; p < 500; ++p) Stimulus.Profile[0][p] = p < 250 ? -0.06F : 0.04F;
  }

  static void SetRate(std::size_t from, std::size_t to, float rate, float steepness = 0.0F,
                      std::size_t drug = 0) {
    Model.TableRate[from][to] = rate;
    Model.TableDepend.Volt[from][to] = steepness != 0.0F ? 1 : 0;
    Model.TableDepend.Steepness[from][to] = steepness;
    if (drug != 0) Model.TableDepend.Drug[drug][from][to] = 1;
  }

  /// Runs both forms and compares all their results.
  static void ExpectSameForms(const char* name) {
    for (const Seeds& seeds : {GoldenSeeds, Seeds{1.0, 2.0, 3.0}, Seeds{30000.0, 111.0, 29999.0}}) {
      SCOPED_TRACE(testing::Message() << name << ", seed " << seeds[0]);
      const auto start = Model.StartOccupancy;
      Show();
      ActivateTableModel();
      Model.StartOccupancy = start;
      PlainMonteCarlo plain(seeds);
      plain.Run();
      SetSeeds(ProgramRandom, seeds);
      RunAsSet();
      ExpectSame(plain);
      Model.StartOccupancy = start;
    }
  }

  static void ExpectSame(const PlainMonteCarlo& plain) {
    EXPECT_EQ(Dwell.OpenStateExits, plain.exits);
    EXPECT_EQ(Dwell.MonitoredChannels, plain.monitored);
    EXPECT_EQ(Model.StartOccupancy, plain.start);
    const DwellStore& lists = plain.lists;
    ASSERT_EQ(Dwell.NumIdealEvents, lists.NumIdealEvents);
    const auto events = static_cast<std::size_t>(lists.NumIdealEvents) + 1;  // the end marker too
    EXPECT_TRUE(SameFloats(Dwell.IdealDuration, lists.IdealDuration, events));
    EXPECT_TRUE(SameFloats(Dwell.IdealClass, lists.IdealClass, events));
    const auto expectSame = [](std::span<const float> a, float countA, std::span<const float> b,
                               float countB) {
      ASSERT_EQ(countA, countB);
      EXPECT_TRUE(SameFloats(a, b, static_cast<std::size_t>(countB)));
    };
    expectSame(Dwell.OpenTimes, Dwell.NumOpenTimes, lists.OpenTimes, lists.NumOpenTimes);
    expectSame(Dwell.ClosedTimes, Dwell.NumClosedTimes, lists.ClosedTimes, lists.NumClosedTimes);
    expectSame(Dwell.Latencies, Dwell.NumLatencies, lists.Latencies, lists.NumLatencies);
    const auto points = static_cast<std::size_t>(Model.NumPoints) + 1;
    for (std::size_t s = 1; s <= MaxStates; ++s) {
      EXPECT_TRUE(SameFloats(Result.Occupancy[s], plain.occupancy[s], points)) << "state " << s;
      for (auto p = static_cast<std::size_t>(Result.OccupancyUsed[s]); p < points; ++p) {
        ASSERT_EQ(plain.occupancy[s][p], 0.0F) << "beyond what counts as used of state " << s;
      }
    }
    if (Model.MultiSubunit == 0) return;
    EXPECT_TRUE(SameFloats(Trace.SimTrace, plain.subunitTrace, points - 1));
  }
};

TEST_F(MonteCarloFormsTest, AgreeUnderAPulseAndAVoltageStep) {
  ExpectSameForms("60 channels");
  Model.NumChannels = 1;
  ExpectSameForms("one channel");
  Model.NumChannels = 3000;
  Model.StartOccupancy[1] = 0.7F;
  Model.StartOccupancy[3] = 0.2F;
  Model.StartOccupancy[5] = 0.1F;
  ExpectSameForms("3000 channels in three states");
}

TEST_F(MonteCarloFormsTest, AgreeWhereProfilesHoldNoNumbers) {
  Stimulus.Profile[1][150] = NAN;
  Stimulus.Profile[0][151] = INFINITY;
  Stimulus.Profile[1][152] = -5e-3F;
  Stimulus.Profile[2][300] = 1.0F;
  ExpectSameForms("no numbers");
}

TEST_F(MonteCarloFormsTest, AgreeOverRunsIntervalsReseedingAndDrawnNumbersOfChannels) {
  Model.NumRuns = 3;
  Model.ChannelsGaussian = 1;
  Model.ChannelsSTD = 20.0F;
  ExpectSameForms("drawn numbers of channels");
  Model.ReseedSimulation = 1;
  ExpectSameForms("reseeded");
  Model.NumIntervals = 2;
  ExpectSameForms("with intervals");
  Model.ReseedSimulation = 0;
  Model.NumPoints = 60;  // reseeding uses the last point
  ExpectSameForms("short");
}

TEST_F(MonteCarloFormsTest, AgreeOverSubunits) {
  Model.MultiSubunit = 1;
  Model.NumChannels = 40;
  Model.DisplayUnits = UnitsProbability;
  Model.StartOccupancy[1] = Model.StartOccupancy[2] = 0.5F;
  ExpectSameForms("subunits");
}

TEST_F(MonteCarloFormsTest, AgreeWhereDwellsAreShortAgainstThePoints) {
  Model.ADInterval = 0.8F;  // the points are late against the time
  Model.NumPoints = 150;
  ExpectSameForms("long interval");
  Model.NumPoints = 1;
  ExpectSameForms("one point");
  Model.NumPoints = 400;
  Model.ADInterval = 1e-6F;
  ExpectSameForms("nothing happens");
}

TEST_F(MonteCarloFormsTest, AgreeOnRandomSchemes) {
  std::mt19937 random(2718);
  const auto chance = [&random](double p) { return std::bernoulli_distribution(p)(random); };
  for (int scheme = 0; scheme < 25; ++scheme) {
    Model.TableRate = {};
    Model.TableDepend = {};
    std::array<int, MaxStates + 1> exits{};
    for (int link = 0; link < 24; ++link) {
      const std::size_t from = 1 + random() % 7;
      const std::size_t to = 1 + random() % 7;
      if (from == to || Model.TableRate[from][to] > 0.0F || ++exits[from] > MaxConnections) continue;
      const float fastest = chance(0.1) ? 1e-6F : 3000.0F;
      SetRate(from, to, std::uniform_real_distribution<float>(0.0F, fastest)(random),
              chance(0.3) ? std::uniform_real_distribution<float>(-2.0F, 2.0F)(random) : 0.0F, 0);
      if (chance(0.2)) Model.TableDepend.Drug[1 + random() % 2][from][to] = 1;
    }
    // Every state has an exit, so that no channel ends the run.
    for (std::size_t s = 1; s <= 7; ++s) {
      if (exits[s] == 0) SetRate(s, s % 7 + 1, 200.0F);
    }
    for (int p = 0; p < 500; ++p) {
      Stimulus.Profile[0][p] = p % 90 < 30 ? -0.05F : 0.001F * static_cast<float>(p % 90);
      Stimulus.Profile[1][p] = p % 130 < 70 ? 0.0F : 1.5F;
      Stimulus.Profile[2][p] = p > 200 && p < 260 ? 0.3F : 0.0F;
    }
    ExpectSameForms(("scheme " + std::to_string(scheme)).c_str());
    ASSERT_TRUE(!HasFailure());
  }
}

/// Returns FNV-1a over the bytes of floats.
std::uint64_t Digest(std::span<const float> values) {
  std::uint64_t digest = 14695981039346656037ULL;
  for (const float value : values) {
    std::array<unsigned char, sizeof value> bytes;
    std::memcpy(bytes.data(), &value, sizeof value);
    for (const unsigned char byte : bytes) digest = (digest ^ byte) * 1099511628211ULL;
  }
  return digest;
}

// Frozen on purpose, from the plain form: the order of the draws is part of the program's results.
TEST_F(MonteCarloFormsTest, TheGoldenRunStaysAsItIs) {
  Model.NumRuns = 2;
  Model.NumIntervals = 1;
  Model.ChannelsGaussian = 1;
  Model.ChannelsSTD = 10.0F;
  SetSeeds(ProgramRandom, GoldenSeeds);
  RunAsSet();
  const auto events = static_cast<std::size_t>(Dwell.NumIdealEvents);
  EXPECT_EQ(Dwell.OpenStateExits, 48);
  EXPECT_EQ(Dwell.MonitoredChannels, 41);
  EXPECT_EQ(Dwell.NumOpenTimes, 194.0F);
  EXPECT_EQ(events, 730U);
  EXPECT_EQ(Digest(Dwell.OpenTimes.first(194)), 16068384842167976321U);
  EXPECT_EQ(Digest(Dwell.IdealDuration.first(events)), 13919466223606571716U);
  EXPECT_EQ(Digest(Dwell.IdealClass.first(events)), 14724069339736432675U);
  EXPECT_EQ(Digest(Result.Occupancy[4].first(401)), 4001689596299683055U);
  EXPECT_NEAR(UniformRandom(ProgramRandom), 0.526161, 1e-6);  // depends on the number of values drawn
}

TEST(WholePointsTest, AreTheIntegerPartOfTheText) {
  for (const int whole : {0, 1, 2, 3, 4, 5, 7, 8, 9, 15, 16, 17, 1000, 65536, 8388608, 16777216}) {
    auto below = static_cast<float>(whole);
    auto above = below;
    for (int k = 0; k < 4000; ++k) {
      for (const float quotient : {std::max(below, 0.0F), above}) {
        ASSERT_EQ(static_cast<double>(WholePoints(quotient, 1.0F)), WholePointsOfText(quotient)) << quotient;
      }
      below = std::nextafter(below, -1.0F);
      above = std::nextafter(above, INFINITY);
    }
  }
  EXPECT_EQ(WholePoints(1e30F, 1.0F), NeverChanges);
  EXPECT_EQ(WholePoints(INFINITY, 1.0F), NeverChanges);
  EXPECT_EQ(WholePoints(0.0F, 1e-45F), 0);
}

}  // namespace
}  // namespace zelvane
