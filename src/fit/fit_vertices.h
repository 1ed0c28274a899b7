// The starting simplex of a fit of waveforms.
//
//   RateVertexBuild  StimVertexBuild  FreeRates
#pragma once

namespace zelvane {

/// Builds the simplex of a fit of rates: vertex 0 has the present rates of the rows that are not fixed, the others lie
/// around it, all within the limits if these are in force. Evaluates each of them. The best one goes into the model.
///
/// @param restart  number of the run of the session, from 2; -1 evaluates the present rates only
/// Draws from ProgramRandom, for each parameter of each vertex: the branch, then the values of its formula in the
/// order in which they stand there, then one for a limit.
void RateVertexBuild(int restart);

/// Does the same for the parameters of the exponential stimulus.
void StimVertexBuild(int restart);

/// Returns how many rows of the rates are free.
int FreeRates();

}  // namespace zelvane
