// Times of the program's own form and of the plain form for the same work.
#pragma once

#include <benchmark/benchmark.h>

#include <algorithm>
#include <ctime>
#include <functional>
#include <vector>

namespace zelvane {

inline constexpr int PlainRuns = 3;

/// Returns the processor time of `work`: other programs on the machine would lengthen a long wall time more
/// than a short one.
inline double Seconds(const std::function<void()>& work) {
  const std::clock_t start = std::clock();
  work();
  return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

inline double Median(std::vector<double> values) {
  std::nth_element(values.begin(), values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2),
                   values.end());
  return values[values.size() / 2];
}

/// Times `fast` for the benchmark, and `plain` as well. `share` is the part of the fast work that the plain
/// form does.
inline void CompareTimes(benchmark::State& state, const std::function<void()>& fast,
                         const std::function<void()>& plain, double share = 1.0) {
  std::vector<double> fastTimes;
  std::vector<double> plainTimes;
  for (int run = 0; run < PlainRuns; ++run) plainTimes.push_back(Seconds(plain) / share);
  for (auto _ : state) {
    fastTimes.push_back(Seconds(fast));
    state.SetIterationTime(fastTimes.back());
  }
  state.counters["plain_ms"] = Median(plainTimes) * 1e3;
  state.counters["times_faster"] = Median(plainTimes) / Median(fastTimes);
}

}  // namespace zelvane
