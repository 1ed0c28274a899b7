// The kinetic scheme: its two forms, and what every other subsystem asks of it.
//
//   Forms of the scheme     RatesFromGrid  GridFromRates  ActivateTableModel  UpdateTableStates
//                           CopyGridToTable  CopyTableToGrid
//   Clearing                ClearModel  ClearGridModel  ClearTableModel
//   Rates and their names   RateCode  DependsOnStimulus  LinkKd
//   Run settings            LimitNumPoints  ForceMultiSubunit
//
// Fields are in model_store.h; panels in model_panels.h; the stimulus factor in kinetics/rate_factor.h.
#pragma once

#include <optional>

#include "model/model_store.h"

namespace zelvane {

/// Fills `Model.RateMatrix` from the grid: all 0, then both rates of every link whose two states are on,
/// narrowed to float. `KOn` and `KOff` keep their values.
void RatesFromGrid();

/// Takes `KOn` and `KOff` from `Model.RateMatrix` for every link whose two states are on; all others become
/// 0.
void GridFromRates();

/// Computes `Model.TableStateOn`: a state is on when a rate above 0 leads into it.
void UpdateTableStates();

/// Makes the table the scheme of the next run: UpdateTableStates, then `TableRate` to `RateMatrix` and every
/// dependence table to its active counterpart.
void ActivateTableModel();

/// Copies the grid into the table: rates (through RatesFromGrid), dependences and labels.
void CopyGridToTable();

/// Copies the table into the grid: dependences, labels, and the rates that lie on links. A state becomes on
/// when a rate other than 0 leads into it. True when a rate above 0 lies on no link; the table alone keeps
/// it.
bool CopyTableToGrid();

/// Clears both forms: rates, dependences, conductances, states on, monitored states, labels, title, file
/// name.
void ClearModel();

/// Clears the same except the tables of the table form.
void ClearGridModel();

/// Clears the table's rates, dependences and labels, and the conductances.
void ClearTableModel();

/// 100 x from + to: 102 is state 1 to state 2, 2019 state 20 to state 19.
constexpr int RateCode(int from, int to) {
  return 100 * from + to;
}

/// Whether any drug flag or the voltage flag of the rate is not 0.
bool DependsOnStimulus(const DependenceTables& tables, int from, int to);

/// Dissociation constant (M) of a link of the grid with a rate that depends on stimulus: KOff / KOn when the
/// forward rate depends, KOn / KOff when the backward rate does or both do. Nothing without dependence or
/// with a rate of 0.
std::optional<double> LinkKd(int link);

/// Holds `Model.NumPoints` to the limit: above MaxStimPoints it becomes MaxPoints.
void LimitNumPoints();

/// While `Model.MultiSubunit` is 1: forces StartAtEquilibrium, NumIntervals, ReseedSimulation, AutoAnalyze
/// and ShowAllTraces to 0 and NumRuns to 1.
void ForceMultiSubunit();

}  // namespace zelvane
