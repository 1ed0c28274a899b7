// The kinetic scheme: its two forms, and its functions for the other folders.
//
//   Forms of the scheme     RatesFromGrid  GridFromRates  GridHasRate  ActivateTableModel  UpdateTableStates
//                           GridDependences  RestoreGridDependences  CopyGridToTable  CopyTableToGrid
//   Clearing                ClearModel  ClearGridModel  ClearTableModel
//   Rates and their names   RateCode  DependsOnStimulus  LinkKd
//   Run settings            LimitNumPoints  HasSeveralRuns  ForceMultiSubunit  FieldsForcedByMultiSubunit
//
// Fields are in model_store.h; panels in model_panels.h; the stimulus factor in kinetics/rate_factor.h.
#pragma once

#include <array>
#include <optional>
#include <string_view>

#include "model/model_store.h"

namespace zelvane {

/// Fills `Model.RateMatrix` from the grid: sets all rates to 0, then copies both rates of every link whose
/// two states are on, converted to float. Does not change `KOn` and `KOff`. Brings back the grid's dependences.
void RatesFromGrid();

/// Copies `Model.RateMatrix` to `KOn` and `KOff` for every link whose two states are on. The other links
/// keep what the user typed.
void GridFromRates();

/// Returns whether the grid has a link between two states, and both are on. False for a number that is no state.
bool GridHasRate(int from, int to);

/// Fills `Model.TableStateOn`: a state is on when a rate above 0 leads into it.
void UpdateTableStates();

/// Makes the table the scheme of the next run: calls UpdateTableStates, then copies `TableRate` to
/// `RateMatrix` and every dependence table of the table form to the active one. Keeps those of the grid.
void ActivateTableModel();

/// Returns the dependences of the grid, also while those of the table are active.
DependenceTables& GridDependences();

/// Makes the dependences of the grid the active ones, `Model.Depend`.
void RestoreGridDependences();

/// Copies the grid into the table: rates (through RatesFromGrid), dependences and labels.
void CopyGridToTable();

/// Copies the table into the grid: dependences, labels, and the rates with a link. A state becomes on when
/// a rate other than 0 leads into it. Returns true when a rate above 0 has no link; only the table keeps
/// this rate.
bool CopyTableToGrid();

/// Clears both forms: rates, dependences, conductances, states on, monitored states, labels, title, file
/// name.
void ClearModel();

/// Clears the same except the tables of the table form.
void ClearGridModel();

/// Clears the table's rates, dependences and labels, and the conductances.
void ClearTableModel();

/// Returns 100 x from + to: 102 is state 1 to state 2, 2019 is state 20 to state 19.
constexpr int RateCode(int from, int to) {
  return 100 * from + to;
}

/// Returns whether a drug flag or the voltage flag of the rate is not 0.
bool DependsOnStimulus(const DependenceTables& tables, int from, int to);

/// Returns the dissociation constant (M) of a link of the grid: KOff / KOn when only the forward rate
/// depends on the stimulus, KOn / KOff when the backward rate or both depend on it. Returns an empty result
/// without a dependence or with a rate of 0.
std::optional<double> LinkKd(int link);

/// Limits `Model.NumPoints`: a value above MaxStimPoints becomes MaxPoints.
void LimitNumPoints();

/// Returns whether a simulation has several runs. Without them AutoAnalyze and ShowAllTraces are dimmed and have no
/// effect.
bool HasSeveralRuns();

/// If `Model.MultiSubunit` is 1, sets StartAtEquilibrium, NumIntervals, ReseedSimulation, AutoAnalyze and
/// ShowAllTraces to 0, and NumRuns to 1.
void ForceMultiSubunit();

/// The fields that ForceMultiSubunit sets.
inline constexpr std::array<std::string_view, 6> FieldsForcedByMultiSubunit = {
    "StartAtEquilibrium", "NumRuns", "NumIntervals", "ReseedSimulation", "AutoAnalyze", "ShowAllTraces"};

}  // namespace zelvane
