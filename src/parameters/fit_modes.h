// What each value of FitMode fits: its rows, their labels, its tables and switches. Each subject describes its
// own fits; see parameters_store.h for the codes.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "parameters/parameters_store.h"

namespace zelvane {

/// One kind of fit. Names are those of registered fields. Texts must live as long as the process.
struct FitModeRows {
  int mode = 0;                       // FitMode
  std::vector<const char*> labels{};  // of the rows from 1; empty when `labelOf` makes them
  const char* limits = "";            // name of the table of limits
  const FitLimitTable* limitTable = nullptr;
  int unusedRow = 0;       // a row that is shown and is no parameter; 0 = no such row
  bool takesSeeds = true;  // false: seeds enter no computation
  bool keepsCopy = true;   // closing the panel also fills AnalysisFitLimits

  // Flags, seeds and switches. Those of the formulas are shared.
  const char* fixed = "AnalysisFitFixed";
  const char* seeds = "AnalysisFitSeed";
  const char* limitsOn = "AnalysisLimitsOn";
  const char* autoSeed = "AnalysisAutoSeed";
  const char* fixOn = "AnalysisFixOn";

  // Of a fit whose rows follow from the scheme; nullptr elsewhere.
  void (*build)(bool limitsFollow) = nullptr;  // makes the rows again; their limits may follow the rates
  std::string (*labelOf)(int row) = nullptr;   // empty for a row that is not in use
  std::string (*colourOf)(int row) = nullptr;
  bool (*isForced)(int row) = nullptr;         // something else than the user fixes the row
  void (*fix)(int row, bool fixed) = nullptr;  // stores a flag that the user has set
};

/// Adds the description of a fit, or replaces the one of the same FitMode.
void RegisterFitMode(const FitModeRows& rows);

/// Returns the description of a FitMode, or nullptr.
const FitModeRows* FitModeOf(int mode);

/// Returns all descriptions, in the order of their registration.
std::span<const FitModeRows> AllFitModes();

/// Returns the label of a row; empty when the fit does not have the row.
std::string FitRowLabel(const FitModeRows& rows, int row);

/// Returns the number of the last row that a fit can have.
int LastFitRow(const FitModeRows& rows);

/// Copies the limits of all rows of a fit to `Parameters.AnalysisFitLimits`, from which the engine of the formulas
/// reads them.
void TakeFitLimits(int mode);

/// Returns the word for the result of a fit (`Vertices.FitResultCode`), such as "Converge"; empty for 0.
const char* FitResultWord(int code);

/// Returns the word for the switches of the formulas, such as "Limits, Manual".
const char* AnalysisFitStatusWord();

}  // namespace zelvane
