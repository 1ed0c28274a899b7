// The random stream of the program.
//
// The program has one stream. The order of the draws is part of its results: the same seeds give the same
// channels. A simulation of single channels draws in this order:
//   1. each run, with a Gaussian number of channels: one GaussianNoise (pairs of uniform values until one
//      pair falls into the unit circle; every second call draws nothing);
//   2. each sweep: the channels one after the other, sorted by the state that they start in;
//   3. each dwell of a channel: one value for the next state where two or more can follow, then one for the
//      duration (constant rates) or one for each point (rates that depend on the stimulus); see
//      monte_carlo.h;
//   4. the trace of each run, with noise added: one GaussianNoise a point, in the order of time.
#pragma once

#include "numerics/random.h"

namespace zelvane {

/// The stream is seeded at the start, from the clock or with the seeds of the user. Engines take a stream
/// as an argument.
inline constinit RandomStream ProgramRandom;

}  // namespace zelvane
