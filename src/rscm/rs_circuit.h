// The circuit of a whole-cell recording: corrects a current for series resistance and membrane capacitance,
// or applies both to a trace.
//
//   Correction  CorrectLinear  CorrectNonlinear
//   Filtering   FilterConductance  FilterVoltage
//
// The functions use only their arguments. They calculate in 32-bit floats in a fixed order, in one pass.
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

/// The fractions of the errors that a correction removes.
struct RsFractions {
  float volt = 1.0F;        // fraction of the voltage error
  float cap = 1.0F;         // fraction of the capacitive current
  float lagFc = 100000.0F;  // Hz, one-pole filter of the capacitive current
};

/// Corrects a current (pA) in place for a linear current-voltage relation.
///
/// The voltage at the membrane is V = vHold - rs I. First subtracts the current that charges the membrane:
/// cm dV/dt to the next sample, multiplied by the lag 1 - exp(-2 pi dt lagFc). Then scales the sample from
/// its driving force V - vRev to the intended one, vHold - vRev. Does not scale a sample with V equal to
/// vRev. The last sample stays unchanged. The first sample is scaled twice.
void CorrectLinear(std::span<float> current, const RsCircuit& circuit, const RsFractions& fractions);

/// A current-voltage relation, prepared for search: points in rising order of voltage.
struct IvRelation {
  std::vector<float> volt;
  std::vector<float> current;
  std::vector<int> guide;  // for each equal step of voltage: the first point that may be above it
  float first = 0.0F;
  float stepsPerVolt = 0.0F;
};

/// Makes a relation from points (V, relative current) in any order. Fewer than two points give an empty
/// relation: RelativeCurrent is then 0 everywhere.
IvRelation MakeIvRelation(std::span<const float> volt, std::span<const float> current);

/// Interpolates linearly between the two points around `volt`. Returns 0 outside the relation (below its
/// first point, at or above its last point).
float RelativeCurrent(const IvRelation& relation, float volt);

/// Corrects a current (pA) in place for a measured current-voltage relation.
///
/// Works as CorrectLinear, but the scale of a sample is fractions.volt x g(vHold) / g(V), where g is the
/// relation. Does not scale a sample when g(vHold) or g(V) is 0 or outside the relation.
void CorrectNonlinear(std::span<float> current, const RsCircuit& circuit, const RsFractions& fractions,
                      const IvRelation& relation);

/// Converts a conductance (pS) in place to the current (pA) that the circuit would record. The circuit is
/// in its steady state at the first sample.
void FilterConductance(std::span<float> trace, const RsCircuit& circuit);

/// Converts a change of the command (V, relative to vHold) in place to the current (pA) that the circuit
/// would record.
void FilterVoltage(std::span<float> trace, const RsCircuit& circuit);

}  // namespace zelvane
