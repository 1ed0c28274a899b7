// The schemes and stimuli for timing the integrators.
#pragma once

#include <array>

#include "kinetics/compiled_scheme.h"
#include "model/model_store.h"

namespace zelvane {

/// A scheme outside the stores.
struct BenchScheme {
  StateTable<float> rate{};
  DependenceTables depend;
  std::array<int, MaxStates + 1> on{};
  std::array<float, MaxStates + 1> start{};
  float temperature = 25.0F;

  SchemeTables Tables() const { return {rate, depend, on, temperature}; }
};

/// Returns the scheme of a model file in the program's data folder. Ends the program when it cannot be read.
BenchScheme SchemeOfFile(const char* name);

/// Returns 20 states with all 380 rates, 254 of them dependent on voltage, each with its own steepness.
BenchScheme FullTable();

/// The stimulus of a workload, in the profiles of the store with 0.01 ms per point.
enum class BenchStimulus {
  Pulse,        // 1 mM of the first drug for 1 ms, 1 ms after the start
  VoltageStep,  // from -100 to -10 mV, 1 ms after the start
  VoltageRamp   // from -100 mV, 2 uV more at each point: no two points are equal
};
void SetStimulus(BenchStimulus stimulus, int points);

inline constexpr float BenchIntervalMs = 0.01F;

/// Returns the profiles of the store.
StimulusView StoreStimulus();

}  // namespace zelvane
