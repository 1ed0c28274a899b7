// Microscopic reversibility: at equilibrium no current runs around a cycle of states. So the product of the
// rates of a cycle is the same in both directions.
//
// Source: Colquhoun, Dowsland, Beato & Plested (2004), Biophys J 86:3510-3518.
#pragma once

#include <span>

#include "kinetics/scheme_tables.h"

namespace zelvane {

/// The products of the rates around a cycle, both without the constrained rate.
struct LoopProducts {
  double forward = 1.0;     // in the order of the states
  double backward = 1.0;    // against it
  bool inForward = false;   // the constrained rate is one of the forward rates
  bool inBackward = false;  // the constrained rate is one of the backward rates
};

/// Multiplies the rates of a cycle in both directions.
///
/// @param rates   [from][to]; the diagonal counts as 0
/// @param states  the cycle in order, back from the last state to the first; ends at the first 0
/// @param from, to  the constrained rate, which is left out of the products
///
/// A number that is no state gives a rate of 0.
LoopProducts MultiplyLoop(const StateTable<float>& rates, std::span<const int> states, int from, int to);

/// Returns the constrained rate that balances the loop, as the store keeps it: backward / forward product for
/// a forward rate, forward / backward product for a backward rate.
float BalancingRate(const LoopProducts& loop);

/// Returns whether the loop determines its constrained rate: both products are above 0, exactly one direction
/// has the rate, and the balancing value is a finite rate above 0.
bool WellFormed(const LoopProducts& loop);

}  // namespace zelvane
