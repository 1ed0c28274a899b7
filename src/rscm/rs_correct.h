// Correction of the trace for series resistance and membrane capacitance.
//
//   Corrections   RsCorrectLinear  RsCorrectNonlinear  RsCorrectTrace
//   Filters       RcFilterConductance  RcFilterVoltage
//   The relation  SetLinearIv  LoadIvFile
//
// The functions read the settings of `RsCm` and change `Trace.SimTrace` in place. The calculations are in
// rs_circuit.h.
#pragma once

#include <string>

#include "platform/outcome.h"

namespace zelvane {

/// Corrects the first `Model.NumPoints` samples of the trace (pA) for a linear current-voltage relation.
///
/// @param fracVolt  fraction of the voltage error to correct
/// @param fracCap   fraction of the capacitive current to correct
/// @param lagFc     Hz, one-pole filter of the capacitive current
///
/// Reads: `RsCm.RcRs`, `RcCm`, `RcVhold`, `RcVrev`, `Model.ADInterval`. When the interval is not above 0,
/// shows a message, keeps the trace and returns Refused.
Outcome RsCorrectLinear(float fracVolt, float fracCap, float lagFc);

/// Does the same with the measured relation of `RsCm.RcIvVolt` and `RcIvCurrent`.
Outcome RsCorrectNonlinear(float fracVolt, float fracCap, float lagFc);

/// Corrects a trace that was just read: calls RsCorrectLinear with the fractions of `RsCm` and sets
/// `Trace.RsCorrected` to 1.
Outcome RsCorrectTrace();

/// Converts a trace of conductance (pS) to the current (pA) of a whole-cell recording, over
/// `Model.RecordPoints` samples. When the settings of the circuit are invalid, shows a message, keeps the
/// trace and returns Refused.
Outcome RcFilterConductance();

/// Converts a trace of command voltage to the current (pA) of a whole-cell recording in the same way.
Outcome RcFilterVoltage();

/// Sets the linear relation through 0, with three points.
void SetLinearIv();

/// The result of LoadIvFile: the file is unreadable, it is too short, or it is the relation in use.
enum class IvFile { Unreadable, TooShort, InUse };

/// Reads a current-voltage relation from a file with two columns, V and relative current. A comma or blanks
/// separate the columns. Reads up to the first line without two numbers, and at most MaxIvPoints lines.
/// With fewer than 5 points sets the linear relation. Keeps the old relation when the file is unreadable.
/// Writes the result to the console.
IvFile LoadIvFile(const std::string& path);

}  // namespace zelvane
