// The circuit of a whole-cell recording as an engine: what series resistance and membrane capacitance do to a
// current, and the way back.
//
//   Back   CorrectLinear  CorrectNonlinear
//   There  FilterConductance  FilterVoltage
//
// Functions of their arguments alone, in 32-bit floats and in a fixed order of operations, one pass each.
// The circuit: Armstrong & Chow (1987), Biophys. J. 52, 133-136; Marty & Neher (1995), in Single-Channel
// Recording, 2nd ed., chapter 2.
#pragma once

#include <span>
#include <vector>

namespace zelvane {

/// The cell and its pipette.
struct RsCircuit {
  float rs = 1e7F;      // series resistance, ohm
  float cm = 1e-11F;    // membrane capacitance, farad
  float rm = 1e9F;      // input resistance, ohm
  float vHold = -0.1F;  // command, V
  float vRev = 0.0F;    // reversal potential, V
  float dt = 1e-5F;     // s between samples, above 0
};

/// How much of the errors is taken out.
struct RsFractions {
  float volt = 1.0F;        // of the voltage error
  float cap = 1.0F;         // of the capacitive current
  float lagFc = 100000.0F;  // Hz, one-pole filter of the capacitive current
};

/// Corrects a current (pA) in place for a linear current-voltage relation.
///
/// The voltage at the membrane is V = vHold - rs I. A sample is first relieved of the current that charges
/// the membrane, cm dV/dt taken to the next sample, times the lag 1 - exp(-2 pi dt lagFc), and then scaled
/// from the driving force that it had, V - vRev, to the one that it should have had, vHold - vRev. A sample
/// whose V equals vRev keeps its size. The last sample stays, and the first one is scaled twice.
void CorrectLinear(std::span<float> current, const RsCircuit& circuit, const RsFractions& fractions);

/// A current-voltage relation made ready for search: points in rising order of voltage.
struct IvRelation {
  std::vector<float> volt;
  std::vector<float> current;
  std::vector<int> guide;  // of each of as many even steps of voltage: the first point that may lie above it
  float first = 0.0F;
  float stepsPerVolt = 0.0F;
};

/// Points (V, relative current) as they were loaded, in any order; fewer than two give a relation that holds
/// nowhere.
IvRelation MakeIvRelation(std::span<const float> volt, std::span<const float> current);

/// Linear interpolation between the two points around `volt`; 0 outside the relation (at or above its last
/// point, below its first).
float RelativeCurrent(const IvRelation& relation, float volt);

/// Corrects a current (pA) in place for a measured current-voltage relation.
///
/// As CorrectLinear, but the scale of a sample is fractions.volt x g(vHold) / g(V), g the relation. A sample
/// for which either is 0 or not on the relation is not scaled.
void CorrectNonlinear(std::span<float> current, const RsCircuit& circuit, const RsFractions& fractions,
                      const IvRelation& relation);

/// Turns a conductance (pS) in place into the current (pA) that would be recorded through the circuit, which
/// at the first sample is in its steady state.
void FilterConductance(std::span<float> trace, const RsCircuit& circuit);

/// Turns a command (V, beside vHold) in place into the current (pA) that would be recorded through the
/// circuit.
void FilterVoltage(std::span<float> trace, const RsCircuit& circuit);

}  // namespace zelvane
