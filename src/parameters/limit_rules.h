// How the limits of a parameter act on the starting simplex of a fit.
#pragma once

#include "numerics/random.h"
#include "parameters/parameters_store.h"

namespace zelvane {

/// Returns a value outside its limits as their middle.
inline double Clipped(double value, const FitLimit& limit) {
  return value > limit.hi || value < limit.lo ? (limit.hi - limit.lo) / 2.0 + limit.lo : value;
}

/// Returns a value outside its limits as a random point between `start` and the limit. Draws only then.
inline double DrawnInside(double value, double start, const FitLimit& limit, RandomStream& random) {
  if (value > limit.hi) return start + (limit.hi - start) * UniformRandom(random);
  if (value < limit.lo) return start + (limit.lo - start) * UniformRandom(random);
  return value;
}

}  // namespace zelvane
