// The objective of a fit of rates in its plain form: every evaluation builds everything anew and integrates with the
// plain integrator. The program's own form must give the same bits.
#pragma once

namespace zelvane {

/// Returns the sum of squares of a column of `Vertices`, without penalties. Uses the fixed-step integrator. FitData is
/// that of the session.
double PlainSumOfSquares(int column);

}  // namespace zelvane
