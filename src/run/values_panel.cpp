// The table of the values of a result: time and value of every point, or of every saved step of an adaptive
// run.
#include <algorithm>
#include <cstddef>

#include "model/model_store.h"
#include "run/result_store.h"
#include "run/run_panels.h"
#include "run/saved_steps.h"
#include "screen/screen.h"
#include "trace/trace_store.h"

namespace zelvane {
namespace {

constexpr char PanelName[] = "ValuesTablePanel";
constexpr char TableName[] = "ValuesTable";
constexpr MessageTitle SlowTitle{MessageKind::Warning, "! Slow operation"};
constexpr char SlowText[] = "Creating the table of values may take some time.";
constexpr char NoResult[] = "There is no result to show in the table. Run a simulation first.";

constexpr int ManyRows = 5100;  // with more rows a message says that filling takes time

/// Fills the table with `rows` rows of time and value from `timeOf(row)` and `valueOf(row)`, rows from 0.
template <typename TimeOf, typename ValueOf>
void FillRows(int rows, TimeOf timeOf, ValueOf valueOf) {
  if (rows > ManyRows) MessagePopup(SlowTitle, SlowText);
  Table& table = TableNamed(TableName);
  table.rows = rows;
  table.cells.clear();
  table.cells.reserve(2 * static_cast<std::size_t>(rows));
  for (int row = 0; row < rows; ++row) {
    table.cells.push_back(FormatText("%.9g", static_cast<double>(timeOf(row))));
    table.cells.push_back(FormatText("%.9g", static_cast<double>(valueOf(row))));
  }
}

void FillFromSavedSteps() {
  const std::vector<float> values = SavedStepValues();
  const std::vector<double> times = SavedStepTimes();
  FillRows(
      static_cast<int>(values.size()), [&](int row) { return times[static_cast<std::size_t>(row)]; },
      [&](int row) { return values[static_cast<std::size_t>(row)]; });
}

void FillFromTrace() {
  FillRows(
      std::clamp(Model.NumPoints, 0, MaxStimPoints),
      [](int row) { return static_cast<float>(row) * Model.ADInterval; },
      [](int row) { return Trace.SimTrace[static_cast<std::size_t>(row)]; });
}

void FxnFillTable(const ControlEvent& /*event*/) {
  if (Trace.TraceValid == 0) {
    MessagePopup(WarningTitle, NoResult);
    return;
  }
  if (Result.ResultKind == ResultSavedSteps) {
    FillFromSavedSteps();
  } else {
    FillFromTrace();
  }
  ShowPanel(PanelName);  // also reports the changed table to the front end
}

void FxnValuesDone(const ControlEvent& /*event*/) {
  HidePanel(PanelName);
}

void FxnValuesTable() {
  ShowPanel(PanelName);
}

// clang-format off
constexpr ControlDecl ValuesControls[] = {
    {.name = "FillTable", .kind = ControlKind::Button, .label = "Fill table", .format = "", .command = "FxnFillTable",
     .action = FxnFillTable, .help = "Fill table to right with values (this may take a few minutes)."},
    {.name = "ValuesDone", .kind = ControlKind::Button, .label = "Done", .format = "", .command = "FxnValuesDone",
     .action = FxnValuesDone, .help = "Close the table of values."},
};

constexpr MenuDecl ValuesMenu[] = {{"Run/Table of Values...", "FxnValuesTable", FxnValuesTable}};
// clang-format on

}  // namespace

void AddValuesTablePanel() {
  AddPanel({.name = PanelName,
            .title = "Values",
            .help = "Time and value of every point of the trace. For an adaptive run, of every saved step."});
  AddControls(PanelName, "values", ValuesControls);
  Table& table = AddTable(PanelName, TableName, 0, 2);
  table.columnTitles = {"Time (ms)", "Value"};
  table.help = "Time (ms) and value of the last result.";
  AddMenu(ValuesMenu);
}

}  // namespace zelvane
