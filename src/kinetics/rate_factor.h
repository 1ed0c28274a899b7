// The effect of the stimulus on a rate.
#pragma once

#include <array>

#include "kinetics/scheme_tables.h"

namespace zelvane {

/// Elementary charge over Boltzmann's constant (kelvin per volt), and the offset of degrees Celsius, with
/// the values that the program has always used.
inline constexpr double KelvinPerVolt = 11603.0;
inline constexpr double CelsiusOffset = 273.16;

/// The stimulus at one time: element 0 is the voltage (volts), 1..6 the concentrations of the drugs (molar).
using StimulusValues = std::array<float, MaxDrugs + 1>;

/// Returns the coefficient of voltage, 1/V, in the exponential of a rate:
/// steepness x 11603 / (273.16 + temperature).
///
/// @param steepness    elementary charges
/// @param temperature  degrees Celsius
double VoltageCoefficient(float steepness, float temperature);

/// Returns the factor of the rate from state `from` to state `to`: the product of the concentrations of its
/// drugs. If its voltage flag is 1, also multiplied by exp(voltage x VoltageCoefficient).
///
/// @param temperature  degrees Celsius
float RateFactor(const DependenceTables& depend, float temperature, int from, int to,
                 const StimulusValues& stimulus);

}  // namespace zelvane
