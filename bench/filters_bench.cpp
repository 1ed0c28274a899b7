// Filters and corrections over 5,000,000 samples. The Gaussian filter is compared with its plain sums in the
// same process. Before the clock starts the results are compared bit for bit.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <ctime>
#include <functional>
#include <random>
#include <vector>

#include "numerics/butterworth.h"
#include "numerics/gaussian_kernel.h"
#include "numerics/plain_convolution.h"
#include "rscm/rs_circuit.h"

namespace zelvane {
namespace {

constexpr std::size_t Samples = 5'000'000;
constexpr double Rate = 100'000.0;

/// Returns the processor time of `work`, so that other programs on the machine count less.
double Seconds(const std::function<void()>& work) {
  const std::clock_t start = std::clock();
  work();
  return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

template <typename Number>
std::vector<Number> Noise(std::size_t size) {
  std::mt19937 random(1);
  std::normal_distribution<Number> normal(Number{-100}, Number{20});
  std::vector<Number> samples(size);
  for (Number& sample : samples) sample = normal(random);
  return samples;
}

/// Filters with `corner` as a fraction of the sampling rate. The plain sums cover a share of the samples,
/// because their cost per sample is constant.
void Gaussian(benchmark::State& state, float corner, std::size_t plainShare) {
  const GaussianKernel kernel = MakeGaussianKernel(corner);
  const std::vector<float> in = Noise<float>(Samples);
  std::vector<float> plain(in.begin(), in.begin() + static_cast<std::ptrdiff_t>(Samples / plainShare));
  std::vector<float> fast = plain;
  const double plainSeconds =
      Seconds([&] { PlainConvolve(plain, kernel); }) * static_cast<double>(plainShare);
  ConvolveInPlace(fast, kernel);
  if (std::memcmp(plain.data(), fast.data(), plain.size() * sizeof(float)) != 0) {
    state.SkipWithError("the two forms differ");
    return;
  }
  double least = plainSeconds;
  for (auto _ : state) {
    fast = in;
    const double seconds = Seconds([&] { ConvolveInPlace(fast, kernel); });
    least = std::min(least, seconds);
    state.SetIterationTime(seconds);
  }
  state.counters["coefficients"] = 2.0 * kernel.half + 1.0;
  state.counters["plain_ms"] = plainSeconds * 1e3;
  state.counters["times_faster"] = plainSeconds / least;
}
BENCHMARK_CAPTURE(Gaussian, corner_2_kHz, 0.02F, 1)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Gaussian, corner_60_Hz, 0.0006F, 20)->UseManualTime()->Unit(benchmark::kMillisecond);

void ButterworthPair(benchmark::State& state) {
  const std::vector<double> in = Noise<double>(Samples);
  std::vector<double> out(Samples);
  for (auto _ : state) {
    state.SetIterationTime(Seconds([&] {
      Bw_HPF(in, Rate, 1.0, 8, out);
      Bw_BPF(out, Rate, 1.0, 4000.0, 8, out);
    }));
  }
}
BENCHMARK(ButterworthPair)->UseManualTime()->Unit(benchmark::kMillisecond);

/// Returns a relation of `points` points around the potentials of the noise.
IvRelation Relation(std::size_t points) {
  std::vector<float> volt;
  std::vector<float> current;
  for (std::size_t i = 0; i < points; ++i) {
    const float share = static_cast<float>(i) / static_cast<float>(points - 1);
    volt.push_back(-0.3F + 0.6F * share);
    current.push_back(-100.0F + 190.0F * share + 10.0F * share * share);
  }
  return MakeIvRelation(volt, current);
}

void Correction(benchmark::State& state, std::size_t points) {
  const std::vector<float> in = Noise<float>(Samples);
  std::vector<float> trace(Samples);
  const IvRelation relation = Relation(std::max<std::size_t>(points, 2));
  for (auto _ : state) {
    trace = in;
    state.SetIterationTime(Seconds([&] {
      if (points == 0) {
        CorrectLinear(trace, {}, {});
      } else {
        CorrectNonlinear(trace, {}, {}, relation);
      }
    }));
  }
}
BENCHMARK_CAPTURE(Correction, linear, 0)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Correction, relation_of_6_points, 6)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Correction, relation_of_2048_points, 2048)->UseManualTime()->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace zelvane

BENCHMARK_MAIN();
