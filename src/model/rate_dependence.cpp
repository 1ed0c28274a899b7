#include "model/rate_dependence.h"

#include <cassert>
#include <cmath>
#include <cstddef>

#include "stimulus/stimulus_store.h"

namespace zelvane {

double VoltageCoefficient(float steepness, float temperature) {
  return static_cast<double>(steepness) * KelvinPerVolt / (CelsiusOffset + static_cast<double>(temperature));
}

float StimulusFactor(int a, int b, int i) {
  const auto point = static_cast<std::size_t>(i);
  assert(i >= 0 && point < Stimulus.Profile[0].size());
  // The factor is a float after every step: drugs in their order, the exponential (formed in double) last.
  float factor = 1.0F;
  for (int drug = 1; drug <= MaxDrugs; ++drug) {
    if (Model.Depend.Drug[drug][a][b] != 0) factor *= Stimulus.Profile[drug][point];
  }
  if (Model.Depend.Volt[a][b] == 1) {
    const auto volts = static_cast<double>(Stimulus.Profile[0][point]);
    const double coefficient = VoltageCoefficient(Model.Depend.Steepness[a][b], Model.Temperature);
    factor = static_cast<float>(static_cast<double>(factor) * std::exp(volts * coefficient));
  }
  return factor;
}

}  // namespace zelvane
