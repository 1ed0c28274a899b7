// The rows of a fit of rates on FitLimitsPanel and, as a table, on FitPanel.
#include "fit/fit_rows_panel.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "fit/fit_panel.h"
#include "fit/fit_rows.h"
#include "fit/fit_session.h"
#include "fit/fit_store.h"
#include "fit/session_store.h"
#include "model/model_events.h"
#include "model/model_panels.h"
#include "model/model_store.h"
#include "parameters/fit_limits_panel.h"
#include "parameters/parameters_store.h"
#include "platform/index.h"
#include "screen/screen.h"

namespace zelvane {
namespace {

constexpr char FitPanelOfTable[] = "FitPanel";
constexpr char StimLimitsPanel[] = "StimFitLimitsPanel";
constexpr char RatesTable[] = "FitRatesTable";
constexpr char FormSwitch[] = "FitModelIs2D";
constexpr char LimitsNotShared[] =
    "The fit limits are not shared by 2D and 3D model, and need to be re-entered; check limits !";
constexpr char RateBelowZero[] = "A rate is not below 0; the rate keeps its value.";
constexpr char FlagIsNoSwitch[] = "The column fixed takes 0 or 1; the flag keeps its value.";
constexpr char IsForced[] = "A constraint or a loop sets this rate; it cannot be free or fixed by hand.";

void FormToModel() {
  Model.ModelIs2D = Fit.FitModelIs2D != 0 ? 1 : 0;
}

// -- Callbacks --

void FxnFit2D3D(const ControlEvent& event) {
  event.control->typed = false;
  ShowField(FormSwitch);
  MessagePopup(NoticeTitle, LimitsNotShared);
  FormToModel();
  FitLimitsRefresh();
}

/// The commit has stored the value, which the next refresh uses.
void FxnAutomaticLimits(const ControlEvent& event) {
  event.control->typed = false;
}

void FxnWaveFitParams(const ControlEvent& /*event*/) {
  StoreTyped(FormSwitch);
  FormToModel();
  ShowFitLimits(FitWaveforms);
}

void FxnWaveStimFitParams(const ControlEvent& /*event*/) {
  StoreTyped(FormSwitch);
  FormToModel();
  SetFitMode(FitWaveforms);
  StimFitLimitsWrite();
  ShowPanel(StimLimitsPanel);
}

// -- The table of the rates --

enum Column { NameColumn = 1, ValueColumn, LowerColumn, UpperColumn, FixedColumn, SetByColumn, BeforeColumn };
constexpr int Columns = BeforeColumn;

std::string SetByText(int row) {
  switch (RowSetBy(row)) {
    case RowSetter::Loop:
      return "loop";
    case RowSetter::Constraint:
      return "constraint";
    case RowSetter::Nobody:
      break;
  }
  return {};
}

std::string RateCell(int row, int column) {
  const int code = Fit.RowCode[Index(row)];
  if (code == 0) return {};
  const FitLimit& limit = Fit.WaveFitLimits[Index(row)];
  switch (column) {
    case NameColumn:
      return LabelOfRow(row);
    case ValueColumn:
      return FormatText("%.9g", RateOf(code));
    case LowerColumn:
      return FormatText("%.9g", limit.lo);
    case UpperColumn:
      return FormatText("%.9g", limit.hi);
    case FixedColumn:
      return RowIsFixed(row) ? "1" : "0";
    case BeforeColumn:
      return FitSession.hasBefore ? FormatText("%.9g", RateIn(FitSession.before, code)) : std::string();
    default:
      return SetByText(row);
  }
}

void ShowRates() {
  WriteGridRates();
  WriteTableRates();
  RefreshLinks();
}

void StoreRate(int row, double typed) {
  if (typed < 0.0) {
    Note(RateBelowZero);
    return;
  }
  PutRate(Fit.RowCode[Index(row)], typed);
  ShowRates();
}

void StoreFlag(int row, double typed) {
  if (RowIsForced(row)) {
    Note(IsForced);
  } else if (typed != 0.0 && typed != 1.0) {
    Note(FlagIsNoSwitch);
  } else {
    FixRow(row, typed != 0.0);
  }
}

void CommitRateCell(Table& table, int row, int column) {
  const std::string& text = table.cells[Index((row - 1) * Columns + column - 1)];
  const double typed = ParseNumber(text).value_or(0.0);
  FitLimitsRead();
  if (column == ValueColumn) StoreRate(row, typed);
  if (column == LowerColumn) Fit.WaveFitLimits[Index(row)].lo = typed;
  if (column == UpperColumn) Fit.WaveFitLimits[Index(row)].hi = typed;
  if (column == FixedColumn) StoreFlag(row, typed);
  FitLimitsWrite();
}

std::string WhyFixed(int row, int /*column*/) {
  if (RowIsForced(row)) return "A constraint or a loop sets this rate.";
  return RowIsFixed(row) ? "This rate is fixed and keeps its value." : "";
}

/// Keeps rows, flags and table in step with the scheme and its constraints.
void FollowScheme() {
  if (Model.FitActive == 0) FitRowsFollow(PanelVisible(FitPanelName));
  Table* table = FindTable(RatesTable);
  if (table == nullptr) return;
  const auto rows =
      static_cast<int>(std::count_if(Fit.RowCode.begin(), Fit.RowCode.end(), [](int c) { return c != 0; }));
  if (table->rows == rows) return;
  table->rows = rows;
  table->markedRow = 0;
}

void DimFitRowsControls() {
  const bool ofRates = Parameters.FitMode == FitWaveforms;
  for (const char* name : {FormSwitch, "AutoGenFitLims", "FitLimsXFold"}) SetVisible(name, ofRates);
}

// clang-format off
constexpr char LimitsHelp[] =
    "Show summary panel for fixed or floating parameters for least squares non-linear fitting.\nThe same panel also "
    "shows the parameter limits and starting guesses used for fitting.";
constexpr char AutomaticHelp[] = "Automatically generate minimum (param/xfold) and maximum (param*xfold).";

constexpr ControlDecl RateControls[] = {
    {.name = FormSwitch, .kind = ControlKind::Switch, .label = "Form fitted", .format = "%d", .command = "FxnFit2D3D",
     .action = FxnFit2D3D,
     .help = "Use model specified in 2D Grid interface or 3D table interface for fitting.", .choices = "table|grid"},
    {.name = "AutoGenFitLims", .kind = ControlKind::Switch, .label = "Limits from the rates", .format = "%d",
     .command = "FxnAutoGenFitLims", .action = FxnAutomaticLimits, .help = AutomaticHelp, .choices = "off|on"},
    {.name = "FitLimsXFold", .kind = ControlKind::Number, .label = "Factor", .format = "%g",
     .command = "FxnFitLimsXFold", .action = FxnAutomaticLimits, .help = AutomaticHelp},
};
constexpr ControlDecl LimitsButtons[] = {
    {.name = "WaveFitParams", .kind = ControlKind::Button, .label = "Limits...", .format = "",
     .command = "FxnWaveFitParams", .action = FxnWaveFitParams, .help = LimitsHelp},
    {.name = "WaveStimFitParams", .kind = ControlKind::Button, .label = "Stimulus limits...", .format = "",
     .command = "FxnWaveStimFitParams", .action = FxnWaveStimFitParams,
     .help = "Limit Stimulus waveform parameters for least squares non-linear fitting.\n"},
};
// clang-format on

}  // namespace

void AddFitRowsControls() {
  AddControls(FitLimitsPanelName, "rates", RateControls);
  Panel& panel = PanelNamed(FitLimitsPanelName);
  panel.dim.insert(panel.dim.begin(), FollowScheme);  // before the rule that shows the rows
  panel.dim.push_back(DimFitRowsControls);
  FitRowsWanted.Add([] {
    FitLimitsRead();
    ReadActiveRates();
  });
  FitRowsChanged.Add([] {
    FitLimitsWrite();
    ShowField("FitLimsXFold");
  });
  ModelFileCameIn.Add([](Outcome& /*shown*/) { WriteControls(FitLimitsPanelName, "rates"); });
}

void AddFitRatesTable() {
  AddControls(FitPanelOfTable, "limits", LimitsButtons);
  Table& table = AddTable(FitPanelOfTable, RatesTable, MaxFitRows, Columns);
  table.rows = 0;
  table.columnTitles = {"Rate", "Value", "Lower", "Upper", "Fixed", "Set by", "Before"};
  table.editable = true;
  table.command = "FxnFitRatesTable";
  table.help =
      "The rates of the fitted form, with their limits. Type a value or a limit into its cell. Fixed takes 1 to keep a "
      "rate and 0 to fit it.";
  table.committed = CommitRateCell;
  table.made = RateCell;
  table.doubt = WhyFixed;
}

}  // namespace zelvane
