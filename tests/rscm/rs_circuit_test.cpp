// The engines of the correction: compared with closed forms of the circuit and with the plain order of
// operations.
#include "rscm/rs_circuit.h"

#include <gtest/gtest.h>

#include <cmath>
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

// A steady current I through Rs gives V = Vhold - Rs I. At V the conductance is I / V; clamped to Vhold its
// current would be I Vhold / V.
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
  circuit.vHold = 0.0F;  // V = -Rs I is 0 only for I = 0
  std::vector<float> trace(4, 0.0F);
  CorrectLinear(trace, circuit, {});
  EXPECT_EQ(trace, std::vector<float>(4, 0.0F));
}

TEST(RsCircuitTest, TheLagDecidesOverTheCapacitiveCurrent) {
  std::vector<float> step(20, 0.0F);
  std::fill(step.begin() + 10, step.end(), -100.0F);
  const auto before = [&](float lagFc) {
    std::vector<float> trace = step;
    CorrectLinear(trace, {}, {0.0F, 1.0F, lagFc});
    return trace[9];
  };
  // Cm Rs I / dt = 1e-11 F x 1e7 ohm x -100 pA / 1e-5 s: the voltage steps up by 1 mV
  EXPECT_NEAR(before(1e12F), -1000.0F, 0.1F);
  EXPECT_EQ(before(0.0F), 0.0F);
  EXPECT_NEAR(before(1e4F), -1000.0 * (1.0 - std::exp(-0.6283185308)), 0.1);
}

// Straight lines between points at random voltages; scaled by g(Vhold) / g(V), V at the next sample.
TEST(RsCircuitTest, ARelationScalesBetweenItsPointsAtWhateverDistanceTheyStand) {
  std::mt19937 random(3);
  std::uniform_real_distribution<float> uniform(-0.16F, 0.11F);
  const auto g = [](double v) { return v < -0.02 ? 100.0 * v : -2.0 + 700.0 * (v + 0.02); };
  for (const int points : {0, 4, 300, 2046}) {
    std::vector<float> volt = {-0.2F, -0.02F, 0.15F};  // and the corner
    for (int i = 0; i < points; ++i) volt.push_back(uniform(random));
    std::vector<float> current;
    for (const float v : volt) current.push_back(static_cast<float>(g(v)));
    const std::vector<float> in = Noisy(5000, 4);
    std::vector<float> out = in;
    CorrectNonlinear(out, {}, {0.9F, 0.0F, 0.0F}, MakeIvRelation(volt, current));
    for (std::size_t i = 1; i + 1 < in.size(); ++i) {
      const double v = -0.1 - 1e-5 * static_cast<double>(in[i + 1]);
      if (std::abs(g(v)) < 0.01) continue;  // near the reversal potential rounding errors are large
      const double expected = 0.9 * g(-0.1) / g(v) * static_cast<double>(in[i]);
      ASSERT_NEAR(out[i], expected, 1e-3 * std::abs(expected)) << points << ", " << i;
    }
  }
}

TEST(RsCircuitTest, NothingIsScaledWhereTheRelationDoesNotReach) {
  const std::vector<float> in = {-100.0F, -100.0F, -100.0F, -100.0F};
  const std::vector<float> current = {-1.0F, 0.0F, 2.0F};
  // V is -0.099 and the holding voltage -0.1: above the relation, below it and inside; falling points;
  // points of a single voltage
  using Case = std::pair<std::vector<float>, bool>;
  for (const auto& [volt, scales] :
       {Case{{-0.3F, -0.2F, -0.1F}, false}, Case{{0.1F, 0.2F, 0.3F}, false}, Case{{-0.3F, 0.0F, 0.3F}, true},
        Case{{0.3F, 0.0F, -0.3F}, true}, Case{{-0.1F, -0.1F, -0.1F}, false}, Case{{-0.1F}, false},
        Case{{}, false}}) {
    std::vector<float> trace = in;
    CorrectNonlinear(trace, {}, {1.0F, 0.0F, 0.0F}, MakeIvRelation(volt, current));
    EXPECT_EQ(trace[1] != in[1], scales);
    EXPECT_TRUE(std::isfinite(trace[1]));
  }
}

// A slow conductance that is filtered by the circuit and then corrected is G x (Vhold - Vrev), with two
// differences: the correction takes the leak through Rm as a part of the current, and it calculates the
// voltage error from the next sample.
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
  EXPECT_GT(lost, 0.1);  // there is something to undo
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
  EXPECT_NEAR(trace[1999], (-0.1 + 0.01) / both * 1e12, 0.1);  // 10 mV more
  double charge = 0.0;                                         // C = Cm dV, which enters through Rs
  for (std::size_t i = 1000; i < 1999; ++i) charge += (trace[i] - trace[1999]) * 1e-12 * 1e-5;
  const double membrane = 0.01 * 1e9 / both;
  EXPECT_NEAR(charge, 1e-11 * membrane * 1e9 / both, 1e-11 * membrane * 0.03);
}

TEST(RsCircuitTest, NoTraceAndASingleSampleAreNoProblem) {
  for (const std::size_t size : {0U, 1U}) {
    std::vector<float> trace(size, -100.0F);
    CorrectLinear(trace, {}, {});
    CorrectNonlinear(trace, {}, {}, MakeIvRelation(std::vector{-0.3F, 0.3F}, std::vector{-1.0F, 1.0F}));
    FilterConductance(trace, {});
    FilterVoltage(trace, {});
    for (const float sample : trace) EXPECT_TRUE(std::isfinite(sample));
  }
}

}  // namespace
}  // namespace zelvane
