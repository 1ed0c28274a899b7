#include "fit/fit_rows.h"

#include <cmath>

#include "model/constraints.h"
#include "model/model.h"
#include "parameters/fit_modes.h"
#include "platform/format_text.h"
#include "platform/index.h"
#include "screen/popups.h"

namespace zelvane {
namespace {

constexpr char TooManyRates[] = "You cannot load more than 72 parameters into the waveform fitting protocol.";
static_assert(MaxFitRows == 72);

constexpr char FactorBelowZero[] = "The factor of the limits was below 0 and becomes 2.";

constexpr int FirstTableCode = 10'000;  // codes above it are rates of the table
constexpr float FactorInsteadOfZero = 2.0F;

template <typename Visit>
void ForRowsOfGrid(Visit visit) {
  int row = 0;
  for (int n = 1; n <= MaxLinks; ++n) {
    const auto [low, high] = LinkTable[Index(n)];
    if (Model.StateOn[Index(low)] == 0 || Model.StateOn[Index(high)] == 0) continue;
    visit(FitRow{++row, n, low, high});
    visit(FitRow{++row, -n, high, low});
  }
}

template <typename Visit>
void ForRowsOfTable(Visit visit) {
  int row = 0;
  for (int from = 1; from <= MaxStates; ++from) {
    for (int to = 1; to <= MaxStates; ++to) {
      if (from == to || !(Model.TableRate[Index(from)][Index(to)] > 0.0F)) continue;
      visit(FitRow{++row, FirstTableCode + RateCode(from, to), from, to});
    }
  }
}

/// Calls `visit` for each rate of the form that is fitted.
template <typename Visit>
void ForRowsOfForm(Visit visit) {
  if (Fit.FitModelIs2D != 0) {
    ForRowsOfGrid(visit);
  } else {
    ForRowsOfTable(visit);
  }
}

/// Brings the rates of both forms up to date and makes the fitted form the active one.
void ActivateFittedForm() {
  Model.ModelIs2D = Fit.FitModelIs2D != 0 ? 1 : 0;
  RatesFromGrid();
  if (Model.ModelIs2D == 0)
    ActivateTableModel();
  else
    UpdateTableStates();
}

void LimitsFromRates() {
  const auto factor = static_cast<double>(Fit.FitLimsXFold);
  for (const FitRow& row : FitRowsInUse()) {
    const double rate = RateOf(row.code);
    Fit.WaveFitLimits[Index(row.row)] = {rate / factor, factor * rate};
  }
}

/// Stores the codes of the rows. Returns the number of rates, which can be more than there are rows. Allocates no
/// memory: it runs after every action of the user.
std::size_t StoreCodes() {
  Fit.RowCode = {};
  std::size_t rates = 0;
  ForRowsOfForm([&](const FitRow& row) {
    ++rates;
    if (row.row <= MaxFitRows) Fit.RowCode[Index(row.row)] = row.code;
  });
  return rates;
}

}  // namespace

Outcome WaveFitRowsBuild(RowLimits limits) {
  FitRowsWanted.Tell();
  ActivateFittedForm();
  const std::size_t rates = StoreCodes();
  if (Fit.FitLimsXFold < 0.0F) Note(FactorBelowZero);
  if (!(Fit.FitLimsXFold > 0.0F)) Fit.FitLimsXFold = FactorInsteadOfZero;
  ShowFixedRows();
  if (limits == RowLimits::Follow && Fit.AutoGenFitLims != 0) LimitsFromRates();
  FitRowsChanged.Tell();
  if (rates <= Index(MaxFitRows)) return Outcome::Done;
  MessagePopup(WarningTitle, TooManyRates);
  return Outcome::Refused;
}

void LimitsFollowRates() {
  if (Fit.AutoGenFitLims == 0) return;
  LimitsFromRates();
  FitRowsChanged.Tell();
}

void FitRowsFollow(bool shown) {
  if (shown || Parameters.FitMode == FitWaveforms) StoreCodes();
  ShowFixedRows();
}

std::vector<FitRow> FitRowsOfForm() {
  std::vector<FitRow> rows;
  ForRowsOfForm([&](const FitRow& row) { rows.push_back(row); });
  return rows;
}

std::vector<FitRow> FitRowsInUse() {
  std::vector<FitRow> rows;
  for (int r = 1; r <= MaxFitRows && Fit.RowCode[Index(r)] != 0; ++r)
    rows.push_back(RowOfCode(r, Fit.RowCode[Index(r)]));
  return rows;
}

bool IsRateOfTable(int code) {
  return code > FirstTableCode;
}

FitRow RowOfCode(int row, int code) {
  if (IsRateOfTable(code)) {
    const int states = code - FirstTableCode;
    return {row, code, states / 100, states % 100};
  }
  const Link link = LinkTable[Index(std::abs(code))];
  return code > 0 ? FitRow{row, code, link.low, link.high} : FitRow{row, code, link.high, link.low};
}

double RateOf(int code) {
  if (IsRateOfTable(code)) {
    const FitRow rate = RowOfCode(0, code);
    return std::fabs(static_cast<double>(Model.TableRate[Index(rate.from)][Index(rate.to)]));
  }
  return std::fabs(code > 0 ? Model.KOn[Index(code)] : Model.KOff[Index(-code)]);
}

void PutRate(int code, double rate) {
  if (IsRateOfTable(code)) {
    const FitRow of = RowOfCode(0, code);
    Model.TableRate[Index(of.from)][Index(of.to)] = static_cast<float>(std::fabs(rate));
  } else {
    (code > 0 ? Model.KOn[Index(code)] : Model.KOff[Index(-code)]) = std::fabs(rate);
  }
}

RowSetter RowSetBy(int row) {
  if (Fit.RowCode[Index(row)] == 0) return RowSetter::Nobody;
  const FitRow rate = RowOfCode(row, Fit.RowCode[Index(row)]);
  if (SetByLoop(rate.from, rate.to)) return RowSetter::Loop;
  if (SetByConstraint(rate.from, rate.to)) return RowSetter::Constraint;
  return RowSetter::Nobody;
}

bool RowIsForced(int row) {
  return RowSetBy(row) != RowSetter::Nobody;
}

bool RowIsFixed(int row) {
  return Fit.WaveFitOwnFixed[Index(row)] != 0 || RowIsForced(row);
}

std::string LabelOfRow(int row) {
  const int code = Fit.RowCode[Index(row)];
  if (code == 0) return {};
  const FitRow rate = RowOfCode(row, code);
  return FormatText("K%d,%d", rate.from, rate.to);
}

std::string ColourOfRow(int row) {
  if (Fit.RowCode[Index(row)] == 0) return {};
  switch (RowSetBy(row)) {
    case RowSetter::Loop:
      return "green";
    case RowSetter::Constraint:
      return "blue";
    case RowSetter::Nobody:
      break;
  }
  return RowIsFixed(row) ? "red" : "";
}

void FixRow(int row, bool fixed) {
  if (!RowIsForced(row)) Fit.WaveFitOwnFixed[Index(row)] = fixed ? 1 : 0;
  Fit.WaveFitFixed[Index(row)] = RowIsFixed(row) ? 1 : 0;
}

void ShowFixedRows() {
  for (int r = 1; r <= MaxFitRows; ++r) Fit.WaveFitFixed[Index(r)] = RowIsFixed(r) ? 1 : 0;
}

void RegisterFitRows() {
  RegisterFitMode({.mode = FitWaveforms,
                   .limits = "WaveFitLimits",
                   .limitTable = &Fit.WaveFitLimits,
                   .takesSeeds = false,
                   .keepsCopy = false,
                   .fixed = "WaveFitFixed",
                   .seeds = "WaveFitSeed",
                   .limitsOn = "WaveFitLimitsOn",
                   .autoSeed = "WaveFitAutoSeed",
                   .fixOn = "WaveFitFixOn",
                   .build =
                       [](bool limitsFollow) {
                         static_cast<void>(
                             WaveFitRowsBuild(limitsFollow ? RowLimits::Follow : RowLimits::Keep));
                       },
                   .labelOf = LabelOfRow,
                   .colourOf = ColourOfRow,
                   .isForced = RowIsForced,
                   .fix = FixRow});
}

}  // namespace zelvane
