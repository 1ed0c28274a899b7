// What the stimulus does to a rate.
#pragma once

#include "model/model_store.h"

namespace zelvane {

/// Elementary charge over Boltzmann's constant, kelvin per volt, and the offset of degrees Celsius, as the
/// program has always used them.
inline constexpr double KelvinPerVolt = 11603.0;
inline constexpr double CelsiusOffset = 273.16;

/// Coefficient of voltage, 1/V, in the exponential of a rate: steepness x 11603 / (273.16 + temperature).
double VoltageCoefficient(float steepness, float temperature);

/// Factor of the rate from `a` to `b` at point `i` of the profiles: the product of the concentrations set on
/// it, times exp(voltage x VoltageCoefficient) when its voltage flag is 1. `i` must lie inside the profiles.
///
/// Reads: `Model.Depend`, `Model.Temperature`, `Stimulus.Profile`.
float StimulusFactor(int a, int b, int i);

}  // namespace zelvane
