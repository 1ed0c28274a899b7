// Series resistance and membrane capacitance, on the trace.
//
//   Corrections   RsCorrectLinear  RsCorrectNonlinear  RsCorrectTrace
//   Filters       RcFilterConductance  RcFilterVoltage
//   The relation  SetLinearIv  LoadIvFile
//
// They read the settings of `RsCm` and change `Trace.SimTrace` in place; the engines are in rs_circuit.h.
#pragma once

#include <string>

namespace zelvane {

/// Corrects the first `Model.NumPoints` samples of the trace (pA) for a linear current-voltage relation.
///
/// @param fracVolt  fraction of the voltage error to correct
/// @param fracCap   fraction of the capacitive current to correct
/// @param lagFc     Hz, one-pole filter of the capacitive current
///
/// Reads: `RsCm.RcRs`, `RcCm`, `RcVhold`, `RcVrev`, `Model.ADInterval`. Without time between the samples the
/// user is told and the trace stays. False then.
bool RsCorrectLinear(float fracVolt, float fracCap, float lagFc);

/// The same for the measured relation of `RsCm.RcIvVolt` and `RcIvCurrent`.
bool RsCorrectNonlinear(float fracVolt, float fracCap, float lagFc);

/// What a trace gets on reading: RsCorrectLinear with the fractions in force; `Trace.RsCorrected` becomes 1.
void RsCorrectTrace();

/// Turns a trace of conductance (pS) into the current (pA) that a whole-cell recording would show of it, over
/// `Noise.RecordPoints` samples. False, with the trace as it was, when the circuit is none: the user is told.
bool RcFilterConductance();

/// Turns a trace of command voltage into the current (pA) that a whole-cell recording would show of it,
/// likewise.
bool RcFilterVoltage();

/// Makes the relation the linear one through 0: three points.
void SetLinearIv();

/// What a file has become: nothing, the linear relation, or the relation in use.
enum class IvFile { Unreadable, TooShort, InUse };

/// Reads a current-voltage relation: two columns, V and relative current, with a comma or blanks between
/// them, up to the first line without two numbers, MaxIvPoints at most. With fewer than 5 points the relation
/// becomes the linear one; with a file that cannot be read it stays as it was. What became of it is written
/// to the console.
IvFile LoadIvFile(const std::string& path);

}  // namespace zelvane
