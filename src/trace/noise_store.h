// Settings of the filters, the noise generators and the noise analysis. Data only.
#pragma once

#include <span>

namespace zelvane {

struct NoiseStore {
  float NoiseMean = 0.0F;          // mean of added noise, in units of the trace
  double HighPassFc = 1.0;         // Hz
  double LowPassFc = 4000.0;       // Hz
  int LowPassOn = 0;               // 1 = FilteredTrace is band-limited
  std::span<float> FilteredTrace;  // filtered copy of the trace; set once by AllocateStores
  int FilteredUsed = 0;            // this sample and all after it are 0
};

inline NoiseStore Noise;

}  // namespace zelvane
