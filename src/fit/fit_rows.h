// The rows of a fit of rates: one row for each rate of the form of the scheme that is fitted.
//
//   Making the rows     WaveFitRowsBuild  FitRowsFollow  FitRowsOfForm  FitRowsInUse  RowOfCode
//   Rates of the rows   RateOf  PutRate
//   Free and fixed      RowIsFixed  RowSetBy  RowIsForced  FixRow  ShowFixedRows
//   For the panels      RegisterFitRows
//
// A rate has a code. On the grid it is the number of its link: positive for the forward rate, negative for the
// backward rate. In the table it is 10000 + 100 x from + to.
#pragma once

#include <string>
#include <vector>

#include "fit/fit_store.h"
#include "platform/outcome.h"
#include "screen/listeners.h"

namespace zelvane {

/// One rate of a fit.
struct FitRow {
  int row = 0;   // from 1
  int code = 0;  // RowCode
  int from = 0;  // states of the rate
  int to = 0;
};

/// Whether building the rows may change their limits.
enum class RowLimits {
  Follow,  // with AutoGenFitLims the limits follow from the rates
  Keep,
};

/// What is typed on the panel of the limits goes to the stores now.
inline Listeners<> FitRowsWanted;

/// The rows, their limits or their flags in the stores have changed.
inline Listeners<> FitRowsChanged;

/// Makes the rows of the form that `Fit.FitModelIs2D` names, and makes this form the active one. Fills
/// `Model.RateMatrix` from its rates. A factor of the limits that is not above 0 becomes 2. With RowLimits::Follow
/// the limits follow the rates.
///
/// Writes:   `Fit.RowCode`, `Fit.WaveFitFixed`, `Fit.WaveFitLimits`, `Fit.FitLimsXFold`, `Model.ModelIs2D`.
/// Tells:    when the scheme has more than MaxFitRows rates; the rows are then the first ones.
/// @return   Done, or Refused with too many rates
Outcome WaveFitRowsBuild(RowLimits limits);

/// With `Fit.AutoGenFitLims` sets the limits of the rows in use to rate / FitLimsXFold and FitLimsXFold x rate.
void LimitsFollowRates();

/// Keeps `Fit.RowCode` and `Fit.WaveFitFixed` in step with the scheme and its constraints, without a message. The rows
/// follow while they are `shown` or `Parameters.FitMode` is FitWaveforms.
void FitRowsFollow(bool shown);

/// Returns all rates of the form that `Fit.FitModelIs2D` names, in the order of their rows; they can be more than
/// MaxFitRows. The grid has both rates of every link whose two states are on; the table has its rates above 0.
std::vector<FitRow> FitRowsOfForm();

/// Returns the rows that `Fit.RowCode` holds.
std::vector<FitRow> FitRowsInUse();

/// Returns whether a code is that of a rate of the table.
bool IsRateOfTable(int code);

/// Returns the row with its states. The code must be that of a rate.
FitRow RowOfCode(int row, int code);

/// Returns the present magnitude of the rate with this code: `Model.KOn`, `Model.KOff` or `Model.TableRate`.
double RateOf(int code);

/// Stores the magnitude of a rate in the same field. The table holds it as a float.
void PutRate(int code, double rate);

/// What sets the rate of a row in place of the fit. A loop wins over a constraint.
enum class RowSetter { Nobody, Constraint, Loop };
RowSetter RowSetBy(int row);

/// Returns whether an enabled loop or constraint sets the rate of a row.
bool RowIsForced(int row);

/// Returns whether the rate of a row is no free parameter: the user fixed it, or it is forced.
bool RowIsFixed(int row);

/// Returns the label of a row, such as "K1,2", and its colour: green when a loop sets the rate, blue when a constraint
/// does, red when the user fixed it. Without a rate both are empty.
std::string LabelOfRow(int row);
std::string ColourOfRow(int row);

/// Stores the user's own flag of a row and shows the flag in force. A forced row keeps its own flag.
void FixRow(int row, bool fixed);

/// Fills `Fit.WaveFitFixed`, the flags in force, from the user's own flags and from what forces a row.
void ShowFixedRows();

/// Describes the rows to the panels of fits, as those of FitWaveforms.
void RegisterFitRows();

}  // namespace zelvane
