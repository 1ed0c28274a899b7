#include "numerics/exponential_sum.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "platform/index.h"

namespace zelvane {
namespace {

constexpr int LongestBlock = 64;
/// Of a deviation to the time constant; the cube that the series leaves out is then below 2e-10.
constexpr double LargestShare = 1e-3;

/// Returns the number of the points from `first` with one step between them.
int PointsOfStretch(std::span<const int> sample, int first) {
  const int end = static_cast<int>(sample.size());
  if (first + 1 >= end) return end - first;
  const int step = sample[Index(first) + 1] - sample[Index(first)];
  int last = first + 1;
  while (last + 1 < end && sample[Index(last) + 1] - sample[Index(last)] == step) ++last;
  return last - first + 1;
}

int PowerOf(DecayTimes& times, double step) {
  const auto known = std::find(times.steps.begin(), times.steps.end(), step);
  if (known != times.steps.end()) return static_cast<int>(known - times.steps.begin());
  times.steps.push_back(step);
  return static_cast<int>(times.steps.size()) - 1;
}

void AddBlocks(DecayTimes& times, std::span<const int> sample, double interval) {
  const int end = static_cast<int>(sample.size());
  for (int first = 0; first < end;) {
    const int stretch = PointsOfStretch(sample, first);
    const int step = stretch > 1 ? sample[Index(first) + 1] - sample[Index(first)] : 1;
    const int power = PowerOf(times, interval * step);
    for (int done = 0; done < stretch; done += LongestBlock) {
      const int begin = first + done;
      const double start = interval * (sample[Index(begin)] - sample.front());
      times.blocks.push_back({begin, std::min(LongestBlock, stretch - done), power, start});
    }
    first += stretch;
  }
}

void NoteDeviations(DecayTimes& times) {
  for (const DecayTimes::Block& block : times.blocks) {
    for (int k = 0; k < block.count; ++k) {
      const std::size_t i = Index(block.first + k);
      times.deviation[i] = times.time[i] - (block.start + k * times.steps[Index(block.power)]);
      times.largestDeviation = std::max(times.largestDeviation, std::fabs(times.deviation[i]));
    }
  }
}

using Powers = std::array<double, LongestBlock>;

Powers PowersOf(double step, double tau) {
  Powers powers{};
  const double factor = std::exp(-step / tau);
  powers[0] = 1.0;
  for (std::size_t k = 1; k < powers.size(); ++k) powers[k] = powers[k - 1] * factor;
  return powers;
}

}  // namespace

DecayTimes PrepareTimes(std::span<const float> x, std::span<const int> sample, double interval) {
  DecayTimes times;
  times.time.resize(x.size());
  times.deviation.resize(x.size());
  for (std::size_t i = 0; i < x.size(); ++i)
    times.time[i] = static_cast<double>(x[i]) - static_cast<double>(x[0]);
  AddBlocks(times, sample, interval);
  NoteDeviations(times);
  return times;
}

void PlainDecayAt(const DecayTimes& times, double tau, std::span<double> decay) {
  for (std::size_t i = 0; i < decay.size(); ++i)
    decay[i] = times.time[i] == 0.0 ? 1.0 : std::exp(-times.time[i] / tau);
}

void DecayAt(const DecayTimes& times, double tau, std::span<double> decay) {
  if (!(times.largestDeviation < LargestShare * tau) || !std::isfinite(tau)) {
    PlainDecayAt(times, tau, decay);
    return;
  }
  const double perTau = 1.0 / tau;
  Powers powers{};
  int made = -1;  // the step whose powers these are
  for (const DecayTimes::Block& block : times.blocks) {
    if (block.power != made) powers = PowersOf(times.steps[Index(block.power)], tau);
    made = block.power;
    const double start = std::exp(-block.start * perTau);
    const double* deviation = times.deviation.data() + block.first;
    double* out = decay.data() + block.first;
    for (std::size_t k = 0; k < Index(block.count); ++k) {
      const double share = deviation[k] * perTau;
      out[k] = start * powers[k] * (1.0 - share + 0.5 * share * share);
    }
  }
}

}  // namespace zelvane
