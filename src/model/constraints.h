// Rate and loop constraints on the rates of the active form: the table for Model.ModelIs2D 0, else the grid.
//
//   Who sets a rate       SetByLoop  SetByConstraint
//   Applying both tables  ApplyRateAndLoopConstraints  TellConstraintFaults
//   One loop              LoopOfRow  SetLoopRate
//
// Fields are in constraints_store.h; products of loops in kinetics/loops.h; panels in model_panels.h.
#pragma once

#include <array>

#include "kinetics/loops.h"
#include "model/constraints_store.h"

namespace zelvane {

/// Shown for a loop constraint that does not determine its rate.
inline constexpr char MalformedLoop[] =
    "There is an error in the specification of the loop constraints or loop rate constants.";

/// Returns whether an enabled loop constraint sets the rate from state `from` to state `to`.
bool SetByLoop(int from, int to);

/// Returns whether an enabled rate constraint sets the rate from state `from` to state `to`.
bool SetByConstraint(int from, int to);

/// The rows that could not be applied, from 1. ApplyRateAndLoopConstraints adds to them and removes none, so
/// that one record serves a whole fit.
struct ConstraintFaults {
  std::array<bool, MaxRateConstraints + 1> rate{};  // no finite result, or no rate of the scheme
  std::array<bool, MaxLoopConstraints + 1> loop{};  // not well formed
  bool untold = false;                              // some rows are new since the last TellConstraintFaults
  std::array<bool, MaxRateConstraints + 1> rateTold{};
  std::array<bool, MaxLoopConstraints + 1> loopTold{};
};

/// Applies all enabled rate constraints in order, then all enabled loop constraints in order, to the rates of
/// the active form: `Model.TableRate`, or `Model.KOn` and `Model.KOff` through `Model.RateMatrix`. Every row
/// sees the results of the rows before it. A negative result enters with its sign changed. A row in `faults`
/// leaves its rate. Links of the grid with a state that is off keep their rates.
///
/// Allocates nothing and shows nothing: a fit calls it for every trial.
void ApplyRateAndLoopConstraints(ConstraintFaults& faults);

/// Tells every fault once: shows a message for each malformed loop and a note for each rate constraint.
void TellConstraintFaults(ConstraintFaults& faults);

/// Returns the rates of the active form as constraints see them. For the grid first fills `Model.RateMatrix`.
StateTable<float>& RatesOfActiveForm();

/// Returns the products of a loop constraint.
LoopProducts LoopOfRow(const StateTable<float>& rates, const LoopConstraint& row);

/// Sets the constrained rate of a loop constraint in the active form, for the grid also in its link.
void SetLoopRate(const LoopConstraint& row, float rate);

}  // namespace zelvane
