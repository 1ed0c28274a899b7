// The schemes that the integrators are timed on, and their stimuli.
#pragma once

#include <array>

#include "kinetics/compiled_scheme.h"
#include "model/model_store.h"

namespace zelvane {

/// A scheme apart from the stores.
struct BenchScheme {
  StateTable<float> rate{};
  DependenceTables depend;
  std::array<int, MaxStates + 1> on{};
  std::array<float, MaxStates + 1> start{};
  float temperature = 25.0F;

  SchemeTables Tables() const { return {rate, depend, on, temperature}; }
};

/// The scheme of a model file of the program's data folder. Ends the program when it cannot be read.
BenchScheme SchemeOfFile(const char* name);

/// 20 states with all 380 rates, 254 of them on voltage, each with a steepness of its own.
BenchScheme FullTable();

/// The stimulus of a workload, written to the profiles of the store at 0.01 ms a point.
enum class BenchStimulus {
  Pulse,        // 1 mM of the first drug for 1 ms, 1 ms after the start
  VoltageStep,  // from -100 to -10 mV, 1 ms after the start
  VoltageRamp   // from -100 mV up by 2 uV a point: no two points are alike
};
void SetStimulus(BenchStimulus stimulus, int points);

inline constexpr float BenchIntervalMs = 0.01F;

/// The profiles of the store.
StimulusView StoreStimulus();

}  // namespace zelvane
