// The effect of the stimulus on a rate.
#pragma once

#include "model/model_store.h"

namespace zelvane {

/// Elementary charge over Boltzmann's constant (kelvin per volt), and the offset of degrees Celsius, with
/// the values that the program has always used.
inline constexpr double KelvinPerVolt = 11603.0;
inline constexpr double CelsiusOffset = 273.16;

/// Returns the coefficient of voltage (1/V) in the exponential of a rate:
/// steepness x 11603 / (273.16 + temperature).
double VoltageCoefficient(float steepness, float temperature);

/// Returns the factor of the rate from `a` to `b` at point `i` of the profiles: the product of the
/// concentrations of its drugs. If its voltage flag is 1, also multiplied by exp(voltage x
/// VoltageCoefficient). `i` must be inside the profiles.
///
/// Reads: `Model.Depend`, `Model.Temperature`, `Stimulus.Profile`.
float StimulusFactor(int a, int b, int i);

}  // namespace zelvane
