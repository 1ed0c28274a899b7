#include "kinetics/rate_factor.h"

#include <cmath>
#include <cstddef>

#include "platform/index.h"

namespace zelvane {

double VoltageCoefficient(float steepness, float temperature) {
  return static_cast<double>(steepness) * KelvinPerVolt / (CelsiusOffset + static_cast<double>(temperature));
}

float RateFactor(const DependenceTables& depend, float temperature, int from, int to,
                 const StimulusValues& stimulus) {
  const auto a = Index(from);
  const auto b = Index(to);
  // The factor is a float after every step: drugs in their order, the exponential (formed in double) last.
  float factor = 1.0F;
  for (std::size_t drug = 1; drug <= MaxDrugs; ++drug) {
    if (depend.Drug[drug][a][b] != 0) factor *= stimulus[drug];
  }
  if (depend.Volt[a][b] == 1) {
    const auto volts = static_cast<double>(stimulus[0]);
    const double coefficient = VoltageCoefficient(depend.Steepness[a][b], temperature);
    factor = static_cast<float>(static_cast<double>(factor) * std::exp(volts * coefficient));
  }
  return factor;
}

}  // namespace zelvane
