#include "kinetics/loops.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace zelvane {
namespace {

double RateBetween(const StateTable<float>& rates, int from, int to) {
  return IsState(from) && IsState(to) && from != to ? static_cast<double>(rates[from][to]) : 0.0;
}

}  // namespace

LoopProducts MultiplyLoop(const StateTable<float>& rates, std::span<const int> states, int from, int to) {
  const auto cycle = states.first(static_cast<std::size_t>(std::ranges::find(states, 0) - states.begin()));
  LoopProducts loop;
  for (std::size_t i = 0; i < cycle.size(); ++i) {
    const int s = cycle[i];
    const int t = cycle[(i + 1) % cycle.size()];
    if (s == from && t == to) {
      loop.inForward = true;
    } else {
      loop.forward *= RateBetween(rates, s, t);
    }
    if (t == from && s == to) {
      loop.inBackward = true;
    } else {
      loop.backward *= RateBetween(rates, t, s);
    }
  }
  return loop;
}

float BalancingRate(const LoopProducts& loop) {
  return static_cast<float>(loop.inForward ? loop.backward / loop.forward : loop.forward / loop.backward);
}

bool WellFormed(const LoopProducts& loop) {
  if (!(loop.forward > 0.0 && loop.backward > 0.0) || loop.inForward == loop.inBackward) return false;
  const float rate = BalancingRate(loop);
  return std::isfinite(rate) && rate > 0.0F;
}

}  // namespace zelvane
