#include "model/constraints.h"

#include <algorithm>
#include <cmath>
#include <span>

#include "model/model.h"
#include "screen/popups.h"

namespace zelvane {
namespace {

// -- Codes of RateConstraint::Operation --
constexpr int AddConstant = 0;
constexpr int SubtractFromConstant = 1;
constexpr int MultiplyByConstant = 2;
constexpr int DivideConstant = 3;

/// Returns whether the active form has this rate: any pair of two states of the table, or a link of the grid
/// with both states on.
bool SchemeHasRate(int from, int to) {
  if (Model.ModelIs2D != 0) return GridHasRate(from, to);
  return IsState(from) && IsState(to) && from != to;
}

/// Returns the result of a row. It is not finite when the row names no rate or no operation.
float ConstraintResult(const StateTable<float>& rates, const RateConstraint& row) {
  if (!SchemeHasRate(row.TargetFrom, row.TargetTo) || !SchemeHasRate(row.SourceFrom, row.SourceTo))
    return NAN;
  const float source = rates[row.SourceFrom][row.SourceTo];
  switch (row.Operation) {
    case AddConstant:
      return source + row.Value;
    case SubtractFromConstant:
      return row.Value - source;
    case MultiplyByConstant:
      return source * row.Value;
    case DivideConstant:
      return row.Value / source;
    default:
      return NAN;
  }
}

}  // namespace

bool SetByLoop(int from, int to) {
  return std::any_of(Constraints.Loop.begin() + 1, Constraints.Loop.end(), [&](const LoopConstraint& row) {
    return row.Enabled != 0 && row.RateFrom == from && row.RateTo == to;
  });
}

bool SetByConstraint(int from, int to) {
  return std::any_of(Constraints.Rate.begin() + 1, Constraints.Rate.end(), [&](const RateConstraint& row) {
    return row.Enabled != 0 && row.TargetFrom == from && row.TargetTo == to;
  });
}

void ApplyRateAndLoopConstraints(ConstraintFaults& faults) {
  StateTable<float>& rates = RatesOfActiveForm();
  for (int n = 1; n <= MaxRateConstraints; ++n) {
    const RateConstraint& row = Constraints.Rate[n];
    if (row.Enabled == 0) continue;
    const float result = ConstraintResult(rates, row);
    if (std::isfinite(result)) {
      rates[row.TargetFrom][row.TargetTo] = std::abs(result);
    } else {
      faults.untold = faults.untold || !faults.rate[n];
      faults.rate[n] = true;
    }
  }
  for (int n = 1; n <= MaxLoopConstraints; ++n) {
    const LoopConstraint& row = Constraints.Loop[n];
    if (row.Enabled == 0) continue;
    const LoopProducts loop = LoopOfRow(rates, row);
    if (WellFormed(loop)) {
      rates[row.RateFrom][row.RateTo] = BalancingRate(loop);
    } else {
      faults.untold = faults.untold || !faults.loop[n];
      faults.loop[n] = true;
    }
  }
  if (Model.ModelIs2D != 0) GridFromRates();
}

void TellConstraintFaults(ConstraintFaults& faults) {
  if (!faults.untold) return;
  faults.untold = false;
  for (int n = 1; n <= MaxRateConstraints; ++n) {
    if (!faults.rate[n] || faults.rateTold[n]) continue;
    faults.rateTold[n] = true;
    const RateConstraint& row = Constraints.Rate[n];
    Note(FormatText("Rate constraint %d has no result: the rate from state %d to state %d keeps its value.",
                    n, row.TargetFrom, row.TargetTo));
  }
  for (int n = 1; n <= MaxLoopConstraints; ++n) {
    if (!faults.loop[n] || faults.loopTold[n]) continue;
    faults.loopTold[n] = true;
    MessagePopup(ErrorTitle, MalformedLoop);
  }
}

StateTable<float>& RatesOfActiveForm() {
  if (Model.ModelIs2D == 0) return Model.TableRate;
  RatesFromGrid();
  return Model.RateMatrix;
}

LoopProducts LoopOfRow(const StateTable<float>& rates, const LoopConstraint& row) {
  return MultiplyLoop(rates, std::span(row.State).subspan(1), row.RateFrom, row.RateTo);
}

void SetLoopRate(const LoopConstraint& row, float rate) {
  StateTable<float>& rates = RatesOfActiveForm();
  rates[row.RateFrom][row.RateTo] = rate;
  if (Model.ModelIs2D != 0) GridFromRates();
}

}  // namespace zelvane
