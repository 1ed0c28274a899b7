// Ohm's law as every conversion of occupancies to current takes it.
#pragma once

#include <algorithm>
#include <cstddef>

#include "model/model_store.h"
#include "stimulus/stimulus_store.h"

namespace zelvane {

/// Driving force at point `p` of the voltage profile times the valence: volts which, times pS, give pA.
/// Points beyond the profile take its last sample.
///
/// Reads: `Model.VRev`, `Model.Valence`, `Stimulus.Profile[0]`.
inline float OhmicDrive(int p) {
  const std::size_t last = Stimulus.Profile[0].size() - 1;
  const float volts = Stimulus.Profile[0][std::min(static_cast<std::size_t>(p), last)];
  return (volts - Model.VRev / 1000.0F) * static_cast<float>(Model.Valence);
}

}  // namespace zelvane
