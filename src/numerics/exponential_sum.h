// Exponential decays at many times, for a fit that calculates them thousands of times.
//
//   PrepareTimes  DecayAt  PlainDecayAt
//
// The times of a fit are those of samples, in stretches with one step each. Within a block of a stretch the decay is
// a product: that of the first time of the block, and a power of the decay over one step. So a block needs one
// exponential in place of one for every time. Times are 32-bit floats; what each misses of its place in the stretch
// enters by the first terms of its series.
#pragma once

#include <span>
#include <vector>

namespace zelvane {

/// Times from the first, in the order given. PrepareTimes fills all fields.
struct DecayTimes {
  struct Block {
    int first = 0;
    int count = 0;
    int power = 0;       // of `steps`: that of its stretch
    double start = 0.0;  // exact time of its first point, from the first time of all
  };
  std::vector<double> time;       // from the first
  std::vector<double> deviation;  // of each time from its exact one
  double largestDeviation = 0.0;
  std::vector<Block> blocks;
  std::vector<double> steps;  // the different steps of the blocks
};

/// Prepares the times `x`, which are those of the samples `sample`, of the same length, rounded to 32 bits.
/// @param interval  time between two samples, in the unit of `x`
DecayTimes PrepareTimes(std::span<const float> x, std::span<const int> sample, double interval);

/// Calculates exp(-t / tau) for all times, with a relative error below 1e-9. `tau` must not be negative; with 0 the decay
/// is 1 at the first time and 0 after it.
/// @param decay  as long as the times
void DecayAt(const DecayTimes& times, double tau, std::span<double> decay);

/// Does the same with one exponential for each time.
void PlainDecayAt(const DecayTimes& times, double tau, std::span<double> decay);

}  // namespace zelvane
