// Schemes and stimuli for tests and benchmarks of the integrators.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstring>
#include <random>
#include <vector>

#include "kinetics/plain_integrator.h"

namespace zelvane {

/// A scheme with its stimulus, start and run settings, outside the stores.
struct IntegratorCase {
  explicit IntegratorCase(std::size_t profilePoints = 1024) {
    profiles.assign(MaxDrugs + 1, std::vector<float>(profilePoints));
  }

  void SetRate(std::size_t from, std::size_t to, float perSecond) {
    rate[from][to] = perSecond;
    on[from] = on[to] = 1;
  }
  void WithDrug(std::size_t drug, std::size_t from, std::size_t to) { depend.Drug[drug][from][to] = 1; }
  void WithVoltage(std::size_t from, std::size_t to, float steepness) {
    depend.Volt[from][to] = 1;
    depend.Steepness[from][to] = steepness;
  }

  SchemeTables Tables() const { return {rate, depend, on, temperature}; }
  StimulusView View(int offset = 0) const {
    StimulusView view;
    for (std::size_t p = 0; p < profiles.size(); ++p) view.profile[p] = profiles[p];
    view.intervalMs = intervalMs;
    view.offset = offset;
    return view;
  }

  StateTable<float> rate{};
  DependenceTables depend;
  std::array<int, MaxStates + 1> on{};
  States start{};
  std::vector<std::vector<float>> profiles;
  float temperature = 25.0F;
  float intervalMs = 0.01F;
  int numPoints = 1000;
  float maxStepMs = 0.005F;
  float precision = 0.0005F;
};

/// Room for the result of a case.
struct IntegratorOutput {
  explicit IntegratorOutput(int numPoints) : saved(static_cast<std::size_t>(numPoints) + 2) {
    for (std::size_t s = 1; s <= MaxStates; ++s) {
      room[s].resize(static_cast<std::size_t>(numPoints) + 2);
      rows[s] = room[s];
    }
  }
  std::array<std::vector<float>, MaxStates + 1> room;
  std::vector<float> saved;
  OccupancyRows rows;
};

inline bool SameBits(const std::vector<float>& a, const std::vector<float>& b) {
  return a.size() == b.size() && std::memcmp(a.data(), b.data(), a.size() * sizeof(float)) == 0;
}

inline FixedStepResult RunFixed(const IntegratorCase& c, IntegratorOutput& out, const RunHook& hook = {}) {
  const CompiledScheme scheme = CompileScheme(c.Tables());
  const StimulusView view = c.View();
  return IntegrateFixedStep({scheme, view, c.start, c.numPoints, c.maxStepMs}, out.rows, hook);
}

inline AdaptiveResult RunAdaptive(const IntegratorCase& c, IntegratorOutput& out, int offset = 0) {
  const CompiledScheme scheme = CompileScheme(c.Tables());
  const StimulusView view = c.View(offset);
  return IntegrateAdaptive({scheme, view, c.start, c.numPoints, c.precision}, out.saved, out.rows);
}

}  // namespace zelvane
