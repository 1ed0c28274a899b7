// Engines that run in two threads at once give the same bits as alone. With ThreadSanitizer (the preset
// "tsan") the same runs also show what they share.
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <thread>

#include "analysis/measures.h"
#include "kinetics/integrator_cases.h"
#include "kinetics/q_matrix.h"
#include "kinetics/simulate.h"
#include "numerics/butterworth.h"
#include "numerics/gaussian_kernel.h"

namespace zelvane {
namespace {

using Floats = std::vector<float>;

constexpr int Points = 1000;

/// Returns a scheme with two bindings of a drug and an opening that voltage speeds up, with a pulse of both;
/// `input` sets the rates.
IntegratorCase CaseOf(int input) {
  IntegratorCase c(Points + 2);
  const auto n = static_cast<float>(input);
  c.SetRate(1, 2, 2e6F + 1e5F * n);
  c.SetRate(2, 1, 500.0F);
  c.SetRate(2, 3, 1e6F);
  c.SetRate(3, 2, 900.0F + 10.0F * n);
  c.SetRate(3, 4, 2000.0F);
  c.SetRate(4, 3, 800.0F + 25.0F * n);
  c.WithDrug(1, 1, 2);
  c.WithDrug(1, 2, 3);
  c.WithVoltage(3, 4, 0.7F);
  c.start[1] = 1.0F;
  for (std::size_t p = 100; p < 600; ++p) c.profiles[1][p] = 1e-3F;
  for (std::size_t p = 300; p < 800; ++p) c.profiles[0][p] = 0.02F + 0.001F * n;
  c.numPoints = Points;
  return c;
}

/// Appends the numbers of a vector, as floats.
template <typename Numbers>
void Append(Floats& all, const Numbers& numbers) {
  for (const auto number : numbers) all.push_back(static_cast<float>(number));
}

Floats Simulated(Simulator simulator, int input) {
  const IntegratorCase c = CaseOf(input);
  IntegratorOutput out(Points);
  RandomStream random;
  SetSeeds(random, {1234.0 + input, 5678.0, 9012.0});
  std::vector<Floats> lists(5, Floats(50000));
  DwellRecorder recorder;
  recorder.lists = {lists[0], lists[1], lists[2], lists[3], lists[4]};
  recorder.monitored[4] = 1;
  recorder.openClass[4] = 2;
  const SimulationSettings settings{
      .simulator = simulator, .numPoints = Points, .start = c.start, .channels = 200, .openState = 4};
  const SimulationRoom room{out.rows, out.saved, &random, &recorder};
  const SimulationResult result = Simulate(c.Tables(), c.View(), settings, room);
  EXPECT_EQ(result.outcome, Outcome::Done);
  Floats all{static_cast<float>(result.openStateExits), static_cast<float>(recorder.lists.numIdealEvents)};
  for (const Floats& row : out.room) Append(all, row);
  Append(all, out.saved);
  for (const Floats& list : lists) Append(all, list);
  return all;
}

Floats Wave(int input) {
  Floats wave(5000);
  for (std::size_t i = 0; i < wave.size(); ++i) {
    const auto t = static_cast<float>(i);
    const float response = i < 1000 ? 0.0F : (t - 1000.0F) * std::exp(-(t - 1000.0F) / 300.0F);
    wave[i] = response + std::sin(t * (0.1F + 0.01F * static_cast<float>(input)));
  }
  return wave;
}

Floats Filtered(int input) {
  Floats wave = Wave(input);
  std::vector<double> samples(wave.begin(), wave.end());
  Bw_BPF(samples, 1e5, 10.0 + input, 5000.0, BwMaxOrder, samples);
  EXPECT_EQ(GaussianLowPass(wave, 0.01F + 0.001F * static_cast<float>(input), 5000),
            LowPassOutcome::Filtered);
  Append(wave, samples);
  return wave;
}

Floats SolvedQMatrix(int input) {
  const IntegratorCase c = CaseOf(input);
  const QMatrixSolution solution =
      SolveQMatrix(CompileQMatrix(c.Tables(), {0.02F, 1e-3F, 0.0F, 0.0F, 0.0F, 0.0F, 0.0F}), true);
  EXPECT_EQ(solution.matrix.states.size(), 4U);
  Floats all = solution.matrix.rates.element;
  Append(all, solution.equilibrium.occupancy);
  for (const RelaxationTime& time : solution.relaxation) all.push_back(time.ms);
  return all;
}

Floats Measured(int input) {
  const MeasureSettings settings{.intervalMs = 0.01F,
                                 .baselinePts = 900,
                                 .startAnalysis = 9.0F,
                                 .peakSearchPts = 3000,
                                 .peakAvePts = 21,
                                 .integralPts = 3000};
  ResponseMeasures measures;
  EXPECT_EQ(MeasureResponse(Wave(input), settings, measures), RiseFault::None);
  return {measures.BaselineVar, measures.PeakValue, measures.Integral, measures.RiseSlope,
          measures.LatencyRise};
}

TEST(EnginesInThreadsTest, TwoThreadsAtOnceGiveTheBitsOfOne) {
  using Engine = std::pair<std::string, std::function<Floats(int input)>>;
  const std::vector<Engine> engines{
      {"fixed step", [](int input) { return Simulated(Simulator::FixedStep, input); }},
      {"adaptive", [](int input) { return Simulated(Simulator::Adaptive, input); }},
      {"single channels", [](int input) { return Simulated(Simulator::Channels, input); }},
      {"filters", Filtered},
      {"Q matrix", SolvedQMatrix},
      {"measures", Measured},
  };
  constexpr int Inputs = 4;  // two for each thread, in turn
  constexpr int Rounds = 3;
  for (const auto& [name, run] : engines) {
    SCOPED_TRACE(name);
    std::vector<Floats> alone;
    for (int input = 0; input < Inputs; ++input) alone.push_back(run(input));
    EXPECT_FALSE(SameBits(alone[0], alone[1])) << "the inputs must differ to show a mix-up";
    std::array<int, 2> different{};
    const auto work = [&](std::size_t thread) {
      for (int round = 0; round < Rounds; ++round) {
        for (std::size_t input = thread; input < Inputs; input += 2) {
          different[thread] += SameBits(run(static_cast<int>(input)), alone[input]) ? 0 : 1;
        }
      }
    };
    std::thread other(work, 1U);
    work(0U);
    other.join();
    EXPECT_EQ(different, (std::array<int, 2>{}));
  }
}

}  // namespace
}  // namespace zelvane
