// The random stream of the program.
//
// There is one, and the order in which it is drawn from is part of what the program computes: the same seeds
// give the same channels. Who draws, and in which order, during a simulation of single channels:
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

/// Seeded at start-up, by the clock or as the user asks. Engines take a stream as an argument.
inline constinit RandomStream ProgramRandom;

}  // namespace zelvane
