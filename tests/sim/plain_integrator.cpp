#include "sim/plain_integrator.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "model/rate_dependence.h"
#include "sim/internal/cash_karp.h"

namespace zelvane {
namespace {

float PlainFactor(const SchemeTables& tables, const StimulusView& stimulus, std::size_t a, std::size_t b,
                  std::size_t point) {
  float factor = 1.0F;
  for (std::size_t d = 1; d <= MaxDrugs; ++d) {
    if (tables.depend.Drug[d][a][b] != 0) factor *= stimulus.profile[d][point];
  }
  if (tables.depend.Volt[a][b] == 1) {
    const double coefficient = VoltageCoefficient(tables.depend.Steepness[a][b], tables.temperature);
    factor = static_cast<float>(static_cast<double>(factor) *
                                std::exp(static_cast<double>(stimulus.profile[0][point]) * coefficient));
  }
  return factor;
}

std::size_t PlainIndex(const StimulusView& stimulus, float t) {
  const double point = static_cast<double>(t) / (0.001 * static_cast<double>(stimulus.intervalMs));
  const auto index = static_cast<std::size_t>(std::trunc(point)) + static_cast<std::size_t>(stimulus.offset);
  return std::min(index, stimulus.profile[0].size() - 1);
}

float RunSeconds(const StimulusView& stimulus, int numPoints) {
  const float ms = stimulus.intervalMs * static_cast<float>(numPoints);
  return static_cast<float>(static_cast<double>(ms) * 0.001);
}

/// rk4 of Numerical Recipes.
void PlainRungeKutta(const SchemeTables& tables, const StimulusView& stimulus, float t, float h, States& y) {
  States slope1{}, slope2{}, slope3{}, slope4{}, trial{};
  const float half = h * 0.5F;
  const float sixth = h / 6.0F;
  PlainDerivatives(tables, stimulus, t, y, slope1);
  for (std::size_t s = 1; s <= MaxStates; ++s) trial[s] = y[s] + half * slope1[s];
  PlainDerivatives(tables, stimulus, t + half, trial, slope2);
  for (std::size_t s = 1; s <= MaxStates; ++s) trial[s] = y[s] + half * slope2[s];
  PlainDerivatives(tables, stimulus, t + half, trial, slope3);
  for (std::size_t s = 1; s <= MaxStates; ++s) {
    trial[s] = y[s] + h * slope3[s];
    slope3[s] += slope2[s];
  }
  PlainDerivatives(tables, stimulus, t + h, trial, slope4);
  for (std::size_t s = 1; s <= MaxStates; ++s)
    y[s] = y[s] + sixth * (slope1[s] + slope4[s] + 2.0F * slope3[s]);
}

/// One pass; false when an occupancy left its range.
bool PlainPass(const SchemeTables& tables, const StimulusView& stimulus, const States& start, int numPoints,
               float stepMs, const OccupancyRows& rows, FixedStepResult& result) {
  const long long substeps = SubstepsPerPoint(stimulus.intervalMs, stepMs);
  const float h = RunSeconds(stimulus, numPoints) / static_cast<float>(numPoints * substeps);
  States y = start;
  for (std::size_t s = 1; s <= MaxStates; ++s) {
    if (tables.on[s] != 0) rows[s][1] = y[s];
  }
  float t = 0.0F;
  bool stalled = false;
  for (long long k = 1; k <= numPoints * substeps; ++k) {
    PlainRungeKutta(tables, stimulus, t, h, y);
    if (t + h == t && !stalled) ++result.stalledPasses;
    stalled = stalled || t + h == t;
    t = t + h;
    if (k % substeps != 0) continue;
    const auto point = static_cast<std::size_t>(k / substeps) + 1;
    for (std::size_t s = 1; s <= MaxStates; ++s) {
      if (tables.on[s] == 0) continue;
      rows[s][point] = y[s];
      if (!(static_cast<double>(y[s]) <= 1.01 && static_cast<double>(y[s]) >= -0.01)) return false;
    }
  }
  return true;
}

/// rkck: the fifth-order solution of a step and its error estimate.
void PlainCashKarp(const SchemeTables& tables, const StimulusView& stimulus, float x, float h,
                   const States& y, const States& dydx, States& out, States& error) {
  using namespace cash_karp;
  States k2{}, k3{}, k4{}, k5{}, k6{}, trial{};
  const auto all = [](auto rule) {
    for (std::size_t s = 1; s <= MaxStates; ++s) rule(s);
  };
  all([&](std::size_t s) { trial[s] = y[s] + B21 * h * dydx[s]; });
  PlainDerivatives(tables, stimulus, x + A2 * h, trial, k2);
  all([&](std::size_t s) { trial[s] = y[s] + h * (B31 * dydx[s] + B32 * k2[s]); });
  PlainDerivatives(tables, stimulus, x + A3 * h, trial, k3);
  all([&](std::size_t s) { trial[s] = y[s] + h * (B41 * dydx[s] + B42 * k2[s] + B43 * k3[s]); });
  PlainDerivatives(tables, stimulus, x + A4 * h, trial, k4);
  all([&](std::size_t s) {
    trial[s] = y[s] + h * (B51 * dydx[s] + B52 * k2[s] + B53 * k3[s] + B54 * k4[s]);
  });
  PlainDerivatives(tables, stimulus, x + A5 * h, trial, k5);
  all([&](std::size_t s) {
    trial[s] = y[s] + h * (B61 * dydx[s] + B62 * k2[s] + B63 * k3[s] + B64 * k4[s] + B65 * k5[s]);
  });
  PlainDerivatives(tables, stimulus, x + A6 * h, trial, k6);
  all([&](std::size_t s) {
    out[s] = y[s] + h * (C1 * dydx[s] + C3 * k3[s] + C4 * k4[s] + C6 * k6[s]);
    error[s] = h * (D1 * dydx[s] + D3 * k3[s] + D4 * k4[s] + D5 * k5[s] + D6 * k6[s]);
  });
}

struct PlainControl {
  float precision = 0.0F;
  bool reduced = false;
};

/// rkqs; false when no step is left to take.
bool PlainControlledStep(const SchemeTables& tables, const StimulusView& stimulus, float& x, float h,
                         float tolerance, const States& dydx, const States& scale, States& y,
                         PlainControl& control, float& next) {
  States out{}, error{};
  float worst = 0.0F;
  while (true) {
    PlainCashKarp(tables, stimulus, x, h, y, dydx, out, error);
    worst = 0.0F;
    for (std::size_t s = 1; s <= MaxStates; ++s) {
      if (!(scale[s] > 1e-6F)) continue;
      const float ratio = std::fabs(error[s] / scale[s]);
      if (std::isnan(ratio)) worst = std::numeric_limits<float>::infinity();
      if (ratio > worst) worst = ratio;
    }
    worst /= tolerance;
    if (worst <= 1.0F) break;
    const auto shorter =
        static_cast<float>(0.9 * static_cast<double>(h) * std::pow(static_cast<double>(worst), -0.25));
    h = std::max(shorter, static_cast<float>(0.1 * static_cast<double>(h)));
    if (x + h == x) {
      control.precision = std::min(control.precision * 10.0F, std::numeric_limits<float>::max());
      control.reduced = true;
    }
    if (h == 0.0F) return false;
  }
  next = worst > 0.000189F
             ? static_cast<float>(0.9 * static_cast<double>(h) * std::pow(static_cast<double>(worst), -0.2))
             : 5.0F * h;
  x = x + h;
  y = out;
  return true;
}

/// odeint.
void PlainLoop(const SchemeTables& tables, const StimulusView& stimulus, const States& start, int numPoints,
               std::span<float> savedTime, const OccupancyRows& rows, PlainControl& control,
               AdaptiveResult& result) {
  const float end = RunSeconds(stimulus, numPoints);
  const auto spacing = static_cast<float>(static_cast<double>(stimulus.intervalMs) * 0.001);
  const auto smallest = static_cast<float>(static_cast<double>(stimulus.intervalMs) * 1e-5);
  States y = start, dydx{}, scale{};
  float x = 0.0F, h = spacing, lastSaved = x - 2.0F * spacing, tolerance = control.precision;
  const auto save = [&] {
    const auto q = static_cast<std::size_t>(++result.saved);
    savedTime[q] = x * 1000.0F;
    for (std::size_t s = 1; s <= MaxStates; ++s) {
      if (tables.on[s] != 0) rows[s][q] = y[s];
    }
    lastSaved = x;
  };
  result.saved = 0;
  result.finished = false;
  for (result.rounds = 1; result.rounds <= 10 * numPoints; ++result.rounds) {
    PlainDerivatives(tables, stimulus, x, y, dydx);
    for (std::size_t s = 1; s <= MaxStates; ++s) scale[s] = std::fabs(y[s]) + std::fabs(h * dydx[s]) + 1e-27F;
    if (result.saved < numPoints - 1 && std::fabs(x - lastSaved) > spacing) save();
    if (x + h > end) h = end - x;
    float next = 0.0F;
    if (!PlainControlledStep(tables, stimulus, x, h, tolerance, dydx, scale, y, control, next)) return;
    if (control.reduced) tolerance = control.precision;
    if (x >= end) {
      save();
      result.finished = true;
      return;
    }
    if (!(next > smallest)) {
      if (result.rounds >= 1000001) return;
      next = smallest;
    }
    h = next;
  }
  --result.rounds;
}

}  // namespace

void PlainDerivatives(const SchemeTables& tables, const StimulusView& stimulus, float t, const States& y,
                      States& dydt) {
  const std::size_t point = PlainIndex(stimulus, t);
  for (std::size_t c = 1; c <= MaxStates; ++c) {
    dydt[c] = 0.0F;
    if (tables.on[c] == 0) continue;
    for (std::size_t v = 1; v <= MaxStates; ++v) {
      if (v == c) continue;
      dydt[c] += y[v] * tables.rate[v][c] * PlainFactor(tables, stimulus, v, c, point);
      dydt[c] -= y[c] * tables.rate[c][v] * PlainFactor(tables, stimulus, c, v, point);
    }
  }
}

FixedStepResult PlainFixedStep(const SchemeTables& tables, const StimulusView& stimulus, const States& start,
                               int numPoints, float maxStepMs, const OccupancyRows& rows) {
  FixedStepResult result;
  float stepMs = std::max(maxStepMs, SmallestStepMs);
  while (!PlainPass(tables, stimulus, start, numPoints, stepMs, rows, result)) {
    stepMs /= 2.0F;
    if (++result.reductions == MaxReductions) break;
  }
  return result;
}

AdaptiveResult PlainAdaptive(const SchemeTables& tables, const StimulusView& stimulus, const States& start,
                             int numPoints, float precision, std::span<float> savedTime,
                             const OccupancyRows& rows) {
  AdaptiveResult result;
  PlainControl control{std::max(precision, FinestPrecision), false};
  PlainLoop(tables, stimulus, start, numPoints, savedTime, rows, control, result);
  if (control.reduced && !result.finished) {
    control.precision = std::min(control.precision * 10.0F, std::numeric_limits<float>::max());
    PlainLoop(tables, stimulus, start, numPoints, savedTime, rows, control, result);
  }
  result.precisionReduced = control.reduced;
  result.precision = control.precision;
  return result;
}

}  // namespace zelvane
