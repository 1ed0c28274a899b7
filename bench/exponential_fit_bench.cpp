// Sums of squares of an exponential fit: the quick form against one exponential of the library for each point and
// component, and the fit of every sweep of a file. Before it measures, the benchmark compares both forms.
#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "analysis/exponential_fit.h"
#include "numerics/exponential_sum.h"
#include "parameters/parameters_store.h"
#include "parameters/vertex_store.h"

namespace zelvane {
namespace {

constexpr int Points = 500;
constexpr float IntervalMs = 0.01F;

/// Fills the points of a fit with two decays and a ripple. Returns their samples.
std::vector<int> FillPoints() {
  std::vector<int> samples = FitSamples(7000, Points, 30, 20);
  for (std::size_t i = 0; i < samples.size(); ++i) {
    const double t = (samples[i] - 7000) * static_cast<double>(IntervalMs);
    Vertices.FitX[i] = IntervalMs * static_cast<float>(samples[i]);
    Vertices.FitData[i] = static_cast<float>(-40 * std::exp(-t / 5) - 60 * std::exp(-t / 40) - 7 +
                                             std::sin(1.7 * static_cast<double>(i)));
  }
  Vertices.FormulaPoints = Points;
  return samples;
}

/// The plain form.
void PlainFormula(std::span<double> value, std::span<const float> x, std::span<float> curve) {
  for (std::size_t i = 0; i < curve.size(); ++i) {
    const double t = static_cast<double>(x[i]) - static_cast<double>(x[0]);
    curve[i] = static_cast<float>(value[5] + value[1] * std::exp(-t / value[2]) +
                                  value[3] * std::exp(-t / value[4]));
  }
}

/// Sets the vertex of evaluation `k`: time constants from 1 to 100 ms.
void SetVertex(int k) {
  SimplexTable& table = Vertices.simplex;
  table.At(1, 0) = -40.0 - 0.001 * k;
  table.At(2, 0) = 1.0 + 0.001 * (k % 9000);
  table.At(3, 0) = -60.0;
  table.At(4, 0) = 20.0 + 0.008 * k;
  table.At(5, 0) = -7.0;
}

FormulaFit QuickFit() {
  FormulaFit fit;
  fit.params = 5;
  const std::vector<int> samples = FillPoints();
  const auto x = std::span<const float>(Vertices.FitX).first(Points);
  fit.formula = ExponentialFormula(FitTwoDecays, PrepareTimes(x, samples, static_cast<double>(IntervalMs)));
  return fit;
}

FormulaFit PlainFit() {
  FormulaFit fit;
  fit.params = 5;
  FillPoints();
  fit.formula = PlainFormula;
  return fit;
}

/// Ends the program when the sums of squares of the two forms differ by more than 1e-6 of them.
void ExpectEqual() {
  const FormulaFit quick = QuickFit();
  const FormulaFit plain = PlainFit();
  double largest = 0.0;
  for (int k = 0; k < 10'000; ++k) {
    SetVertex(k);
    AnalysisEval(quick, 0);
    const double sum = Vertices.simplex.At(0, 0);
    SetVertex(k);
    AnalysisEval(plain, 0);
    largest = std::max(largest, std::fabs(sum - Vertices.simplex.At(0, 0)) / Vertices.simplex.At(0, 0));
  }
  std::printf("largest relative difference of a sum of squares: %.1e\n", largest);
  if (!(largest < 1e-6)) std::exit(1);
}

void Evaluate(benchmark::State& state, const FormulaFit& fit) {
  for (auto _ : state) {
    for (int k = 0; k < 10'000; ++k) {
      SetVertex(k);
      AnalysisEval(fit, 0);
      benchmark::DoNotOptimize(Vertices.simplex.At(0, 0));
    }
  }
}

void Quick(benchmark::State& state) {
  Evaluate(state, QuickFit());
}
void Plain(benchmark::State& state) {
  Evaluate(state, PlainFit());
}
BENCHMARK(Quick)->Unit(benchmark::kMillisecond);
BENCHMARK(Plain)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace zelvane

int main(int argc, char** argv) {
  zelvane::ExpectEqual();
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
}
