// The engines of the correction: closed forms of the circuit, and the plain order of operations.
#include "rscm/rs_circuit.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

namespace zelvane {
namespace {

constexpr float Pico = 1e-12F;

std::vector<float> Noisy(std::size_t size, unsigned seed) {
  std::mt19937 random(seed);
  std::normal_distribution<float> normal(-300.0F, 200.0F);
  std::vector<float> samples(size);
  for (float& sample : samples) sample = normal(random);
  return samples;
}

/// The non-linear correction read aloud, with a search from the first point for every sample.
void PlainNonlinear(std::span<float> x, const RsCircuit& c, const RsFractions& fractions,
                    std::span<const float> volt, std::span<const float> current) {
  const auto relative = [&](float v) {
    for (std::size_t i = 1; i < volt.size() && v >= volt[0]; ++i) {
      if (v < volt[i]) {
        const float share = (v - volt[i - 1]) / (volt[i] - volt[i - 1]);
        return current[i - 1] + share * (current[i] - current[i - 1]);
      }
    }
    return 0.0F;
  };
  const auto membrane = [&](float i) { return c.vHold - c.rs * i * Pico; };
  const float lag =
      1.0F - static_cast<float>(std::exp(static_cast<double>(-6.283185308F * c.dt * fractions.lagFc)));
  float before = membrane(x[0]);
  const float f = before == c.vRev ? 0.0F : fractions.volt * (1.0F - (c.vHold - c.vRev) / (before - c.vRev));
  x[0] = x[0] - f * x[0];
  for (std::size_t k = 1; k < x.size(); ++k) {
    const float v = membrane(x[k]);
    const float charging = c.cm * (v - before) / c.dt * lag;
    x[k - 1] = x[k - 1] - 1e12F * fractions.cap * charging;
    const float gn = relative(v);
    const float gh = relative(c.vHold);
    if (gn != 0.0F && gh != 0.0F) x[k - 1] = (gh * fractions.volt / gn) * x[k - 1];
    before = v;
  }
}

TEST(RsCircuitTest, FractionsOfZeroLeaveTheTrace) {
  const std::vector<float> in = Noisy(500, 1);
  std::vector<float> out = in;
  CorrectLinear(out, {}, {0.0F, 0.0F, 1e5F});
  EXPECT_EQ(out, in);
}

// A steady current I through Rs leaves V = Vhold - Rs I; at V the conductance is I / V, and clamped to Vhold
// it would carry I Vhold / V.
TEST(RsCircuitTest, ASteadyCurrentBecomesWhatAPerfectClampWouldCarry) {
  std::vector<float> trace(50, -2000.0F);
  CorrectLinear(trace, {}, {});
  const double volt = -0.1 + 1e7 * 2000e-12;
  for (std::size_t i = 1; i + 1 < trace.size(); ++i) EXPECT_NEAR(trace[i], -2000.0 * -0.1 / volt, 0.01);
  EXPECT_EQ(trace.back(), -2000.0F);
  EXPECT_NEAR(trace[0], -2000.0 * (0.1 / 0.08) * (0.1 / 0.08), 0.01);  // scaled twice
}

TEST(RsCircuitTest, ASampleAtTheReversalPotentialKeepsItsSize) {
  RsCircuit circuit;
  circuit.vHold = 0.0F;  // V = -Rs I is 0 for I = 0 alone
  std::vector<float> trace = {0.0F, 0.0F, 0.0F, 0.0F};
  CorrectLinear(trace, circuit, {});
  for (const float sample : trace) EXPECT_EQ(sample, 0.0F);
}

TEST(RsCircuitTest, TheLagDecidesOverTheCapacitiveCurrent) {
  std::vector<float> step(20, 0.0F);
  std::fill(step.begin() + 10, step.end(), -100.0F);
  const auto before = [&](float lagFc) {
    std::vector<float> trace = step;
    CorrectLinear(trace, {}, {0.0F, 1.0F, lagFc});
    return trace[9];
  };
  // Cm Rs I / dt = 1e-11 F x 1e7 ohm x -100 pA / 1e-5 s: the step of the voltage is upward by 1 mV
  EXPECT_NEAR(before(1e12F), -1000.0F, 0.1F);
  EXPECT_EQ(before(0.0F), 0.0F);
  EXPECT_NEAR(before(1e4F), -1000.0 * (1.0 - std::exp(-0.6283185308)), 0.1);
}

TEST(RsCircuitTest, TheGuidedSearchEqualsTheSearchFromTheFirstPointBitForBit) {
  std::mt19937 random(3);
  std::uniform_real_distribution<float> step(0.00001F, 0.01F);
  for (const std::size_t points : {2U, 3U, 6U, 300U, 2048U}) {
    std::vector<float> volt = {-0.15F};
    std::vector<float> current = {-80.0F};
    while (volt.size() < points) {
      volt.push_back(volt.back() + step(random) * 100.0F / static_cast<float>(points));
      current.push_back(current.back() + step(random) * 50000.0F / static_cast<float>(points));
    }
    std::vector<float> plain = Noisy(5000, 4);
    plain[77] = std::numeric_limits<float>::quiet_NaN();
    std::vector<float> fast = plain;
    PlainNonlinear(plain, {}, {0.9F, 0.5F, 1e4F}, volt, current);
    CorrectNonlinear(fast, {}, {0.9F, 0.5F, 1e4F}, MakeIvRelation(volt, current));
    for (std::size_t i = 0; i < fast.size(); ++i) {
      ASSERT_TRUE(fast[i] == plain[i] || (std::isnan(fast[i]) && std::isnan(plain[i])))
          << points << ", " << i;
    }
  }
}

TEST(RsCircuitTest, NothingIsScaledWhereTheRelationDoesNotReach) {
  const std::vector<float> in = {-100.0F, -100.0F, -100.0F, -100.0F};
  const std::vector<float> current = {-1.0F, 0.0F, 2.0F};
  // V is -0.099: above, below and on a relation; held at -0.1; one whose points fall, and one of a single
  // voltage
  struct Case {
    std::vector<float> volt;
    bool scales;
  };
  for (const Case& c : {Case{{-0.3F, -0.2F, -0.1F}, false}, Case{{0.1F, 0.2F, 0.3F}, false},
                        Case{{-0.3F, 0.0F, 0.3F}, true}, Case{{0.3F, 0.0F, -0.3F}, true},
                        Case{{-0.1F, -0.1F, -0.1F}, false}, Case{{-0.1F}, false}, Case{{}, false}}) {
    std::vector<float> trace = in;
    CorrectNonlinear(trace, {}, {1.0F, 0.0F, 0.0F}, MakeIvRelation(c.volt, current));
    EXPECT_EQ(trace[1] != in[1], c.scales);
    EXPECT_TRUE(std::isfinite(trace[1]));
  }
}

// A slow conductance seen through the circuit and corrected again is G x (Vhold - Vrev) but for two things:
// the leak through Rm, which the correction takes for a part of the current, and the voltage error, which it
// takes from the next sample.
TEST(RsCircuitTest, TheCorrectionUndoesWhatTheCircuitDidToASlowConductance) {
  RsCircuit circuit;
  circuit.rm = 1e10F;
  std::vector<float> trace(20000);
  std::vector<double> ideal(trace.size());
  for (std::size_t i = 0; i < trace.size(); ++i) {
    const double ms = 0.01 * static_cast<double>(i);
    const double picosiemens = 20000.0 * (1.0 - std::exp(-ms / 5.0)) * std::exp(-ms / 40.0);
    trace[i] = static_cast<float>(picosiemens);
    ideal[i] = (picosiemens + 100.0) * -0.1;  // the leak of 10 Gohm is 100 pS
  }
  FilterConductance(trace, circuit);
  double lost = 0.0;
  for (std::size_t i = 0; i < trace.size(); ++i) lost = std::max(lost, std::abs(trace[i] / ideal[i] - 1.0));
  EXPECT_GT(lost, 0.1);  // what there is to undo
  CorrectLinear(trace, circuit, {});
  for (std::size_t i = 200; i + 1 < trace.size(); ++i) ASSERT_NEAR(trace[i] / ideal[i], 1.0, 0.03) << i;
}

TEST(RsCircuitTest, AVoltageStepGivesTheCapacitiveTransientOfTheCell) {
  const RsCircuit circuit;
  std::vector<float> trace(2000, 0.0F);
  std::fill(trace.begin() + 1000, trace.end(), 0.01F);
  FilterVoltage(trace, circuit);
  const double both = 1.01e9;
  EXPECT_NEAR(trace[999], -0.1 / both * 1e12, 0.1);            // at rest: Vhold / (Rm + Rs)
  EXPECT_NEAR(trace[1999], (-0.1 + 0.01) / both * 1e12, 0.1);  // 10 mV further on
  double charge = 0.0;                                         // C = Cm dV, as it enters through Rs
  for (std::size_t i = 1000; i < 1999; ++i) charge += (trace[i] - trace[1999]) * 1e-12 * 1e-5;
  const double membrane = 0.01 * 1e9 / both;
  EXPECT_NEAR(charge, 1e-11 * membrane * 1e9 / both, 1e-11 * membrane * 0.03);
}

TEST(RsCircuitTest, NoTraceAndASingleSampleAreNoProblem) {
  std::vector<float> none;
  std::vector<float> one = {-100.0F};
  const IvRelation relation =
      MakeIvRelation(std::vector<float>{-0.3F, 0.3F}, std::vector<float>{-1.0F, 1.0F});
  for (std::vector<float>* trace : {&none, &one}) {
    CorrectLinear(*trace, {}, {});
    CorrectNonlinear(*trace, {}, {}, relation);
    FilterConductance(*trace, {});
    FilterVoltage(*trace, {});
  }
  EXPECT_TRUE(std::isfinite(one[0]));
}

}  // namespace
}  // namespace zelvane
