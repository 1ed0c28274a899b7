#include "kinetics/plain_integrator.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "kinetics/cash_karp.h"
#include "kinetics/rate_factor.h"

namespace zelvane {
namespace {

/// The part of a model that the integrators need.
struct PlainScheme {
  const SchemeTables& tables;
  const StimulusView& stimulus;

  float Factor(std::size_t a, std::size_t b, std::size_t point) const {
    float factor = 1.0F;
    for (std::size_t d = 1; d <= MaxDrugs; ++d) {
      if (tables.depend.Drug[d][a][b] != 0) factor *= stimulus.profile[d][point];
    }
    if (tables.depend.Volt[a][b] != 1) return factor;
    const double coefficient = VoltageCoefficient(tables.depend.Steepness[a][b], tables.temperature);
    return static_cast<float>(static_cast<double>(factor) *
                              std::exp(static_cast<double>(stimulus.profile[0][point]) * coefficient));
  }

  /// Returns dy/dt at `t` seconds.
  States Slope(float t, const States& y) const {
    const double moment = static_cast<double>(t) / (0.001 * static_cast<double>(stimulus.intervalMs));
    const std::size_t point =
        std::min(static_cast<std::size_t>(std::trunc(moment)) + static_cast<std::size_t>(stimulus.offset),
                 stimulus.profile[0].size() - 1);
    States slope{};
    for (std::size_t c = 1; c <= MaxStates; ++c) {
      if (tables.on[c] == 0) continue;
      for (std::size_t v = 1; v <= MaxStates; ++v) {
        if (v == c) continue;
        slope[c] += y[v] * tables.rate[v][c] * Factor(v, c, point);
        slope[c] -= y[c] * tables.rate[c][v] * Factor(c, v, point);
      }
    }
    return slope;
  }

  void Save(const States& y, std::size_t point, const OccupancyRows& rows) const {
    for (std::size_t s = 1; s <= MaxStates; ++s) {
      if (tables.on[s] != 0) rows[s][point] = y[s];
    }
  }
};

/// Applies a rule to every state.
States ForAll(auto rule) {
  States result{};
  for (std::size_t s = 1; s <= MaxStates; ++s) result[s] = rule(s);
  return result;
}

float RunSeconds(const StimulusView& stimulus, int numPoints) {
  const float ms = stimulus.intervalMs * static_cast<float>(numPoints);
  return static_cast<float>(static_cast<double>(ms) * 0.001);
}

/// rk4 of Numerical Recipes.
States PlainRungeKutta(const PlainScheme& scheme, float t, float h, const States& y) {
  const float half = h * 0.5F;
  const float sixth = h / 6.0F;
  const States k1 = scheme.Slope(t, y);
  const States k2 = scheme.Slope(t + half, ForAll([&](std::size_t s) { return y[s] + half * k1[s]; }));
  const States k3 = scheme.Slope(t + half, ForAll([&](std::size_t s) { return y[s] + half * k2[s]; }));
  const States k4 = scheme.Slope(t + h, ForAll([&](std::size_t s) { return y[s] + h * k3[s]; }));
  return ForAll([&](std::size_t s) { return y[s] + sixth * (k1[s] + k4[s] + 2.0F * (k3[s] + k2[s])); });
}

/// Runs one pass. Returns false when an occupancy left its range.
bool PlainPass(const PlainScheme& scheme, const States& start, int numPoints, float stepMs,
               const OccupancyRows& rows, FixedStepResult& result) {
  const long long substeps = SubstepsPerPoint(scheme.stimulus.intervalMs, stepMs);
  const float h = RunSeconds(scheme.stimulus, numPoints) / static_cast<float>(numPoints * substeps);
  States y = start;
  scheme.Save(y, 1, rows);
  float t = 0.0F;
  bool stalled = false;
  for (long long k = 1; k <= numPoints * substeps; ++k) {
    y = PlainRungeKutta(scheme, t, h, y);
    if (t + h == t && !stalled) ++result.stalledPasses;
    stalled = stalled || t + h == t;
    t = t + h;
    if (k % substeps != 0) continue;
    const auto point = static_cast<std::size_t>(k / substeps) + 1;
    for (std::size_t s = 1; s <= MaxStates; ++s) {
      if (scheme.tables.on[s] == 0) continue;
      rows[s][point] = y[s];
      if (!(static_cast<double>(y[s]) <= 1.01 && static_cast<double>(y[s]) >= -0.01)) return false;
    }
  }
  return true;
}

/// rkck: gives the fifth-order solution of a step and its error estimate.
void PlainCashKarp(const PlainScheme& scheme, float x, float h, const States& y, const States& k1,
                   States& out, States& error) {
  using namespace cash_karp;
  const auto slope = [&](float node, auto rise) {
    return scheme.Slope(x + node * h, ForAll([&](std::size_t s) { return y[s] + rise(s); }));
  };
  const States k2 = slope(A2, [&](std::size_t s) { return B21 * h * k1[s]; });
  const States k3 = slope(A3, [&](std::size_t s) { return h * (B31 * k1[s] + B32 * k2[s]); });
  const States k4 = slope(A4, [&](std::size_t s) { return h * (B41 * k1[s] + B42 * k2[s] + B43 * k3[s]); });
  const States k5 =
      slope(A5, [&](std::size_t s) { return h * (B51 * k1[s] + B52 * k2[s] + B53 * k3[s] + B54 * k4[s]); });
  const States k6 = slope(A6, [&](std::size_t s) {
    return h * (B61 * k1[s] + B62 * k2[s] + B63 * k3[s] + B64 * k4[s] + B65 * k5[s]);
  });
  out = ForAll([&](std::size_t s) { return y[s] + h * (C1 * k1[s] + C3 * k3[s] + C4 * k4[s] + C6 * k6[s]); });
  error = ForAll(
      [&](std::size_t s) { return h * (D1 * k1[s] + D3 * k3[s] + D4 * k4[s] + D5 * k5[s] + D6 * k6[s]); });
}

/// rkqs; returns false when the step shrinks to 0.
bool PlainControlledStep(const PlainScheme& scheme, float& x, float h, float tolerance, const States& dydx,
                         const States& scale, States& y, AdaptiveResult& result, float& next) {
  States out{}, error{};
  float worst = 0.0F;
  while (true) {
    PlainCashKarp(scheme, x, h, y, dydx, out, error);
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
      result.precisionLost = result.precision >= CoarsestPrecision;
      if (result.precisionLost) return false;
      result.precision = std::min(result.precision * 10.0F, CoarsestPrecision);
      result.precisionReduced = true;
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
void PlainLoop(const PlainScheme& scheme, const States& start, int numPoints, std::span<float> savedTime,
               const OccupancyRows& rows, AdaptiveResult& result) {
  const float end = RunSeconds(scheme.stimulus, numPoints);
  const auto spacing = static_cast<float>(static_cast<double>(scheme.stimulus.intervalMs) * 0.001);
  const auto smallest = static_cast<float>(static_cast<double>(scheme.stimulus.intervalMs) * 1e-5);
  States y = start;
  float x = 0.0F, h = spacing, lastSaved = x - 2.0F * spacing, tolerance = result.precision;
  const auto save = [&] {
    const auto q = static_cast<std::size_t>(++result.saved);
    savedTime[q] = x * 1000.0F;
    scheme.Save(y, q, rows);
    lastSaved = x;
  };
  result.saved = 0;
  result.finished = false;
  for (result.rounds = 1; result.rounds <= 10 * numPoints; ++result.rounds) {
    const States dydx = scheme.Slope(x, y);
    const States scale =
        ForAll([&](std::size_t s) { return std::fabs(y[s]) + std::fabs(h * dydx[s]) + 1e-27F; });
    if (result.saved < numPoints - 1 && std::fabs(x - lastSaved) > spacing) save();
    if (x + h > end) h = end - x;
    float next = 0.0F;
    if (!PlainControlledStep(scheme, x, h, tolerance, dydx, scale, y, result, next)) return;
    if (result.precisionReduced) tolerance = result.precision;
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

FixedStepResult PlainFixedStep(const SchemeTables& tables, const StimulusView& stimulus, const States& start,
                               int numPoints, float maxStepMs, const OccupancyRows& rows) {
  FixedStepResult result;
  float stepMs = std::max(maxStepMs, SmallestStepMs);
  while (!PlainPass({tables, stimulus}, start, numPoints, stepMs, rows, result)) {
    stepMs /= 2.0F;
    if (++result.reductions == MaxReductions) break;
  }
  return result;
}

AdaptiveResult PlainAdaptive(const SchemeTables& tables, const StimulusView& stimulus, const States& start,
                             int numPoints, float precision, std::span<float> savedTime,
                             const OccupancyRows& rows) {
  const PlainScheme scheme{tables, stimulus};
  AdaptiveResult result;
  result.precision = std::clamp(precision, FinestPrecision, CoarsestPrecision);
  PlainLoop(scheme, start, numPoints, savedTime, rows, result);
  if (result.precisionReduced && !result.finished) {
    result.precisionLost = result.precision >= CoarsestPrecision;
    if (result.precisionLost) return result;
    result.precision = std::min(result.precision * 10.0F, CoarsestPrecision);
    PlainLoop(scheme, start, numPoints, savedTime, rows, result);
  }
  return result;
}

}  // namespace zelvane
