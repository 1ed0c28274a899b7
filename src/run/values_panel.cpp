// The table of the values of a result: time and value of every point, or of every saved step of an adaptive
// run.
#include <algorithm>
#include <cstddef>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "model/model_store.h"
#include "platform/index.h"
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

/// The result when the table was filled: a cell is made of it when it is looked at.
struct FilledValues {
  std::vector<float> values{};
  std::vector<double>
      timesMs{};  // of saved steps; empty for samples, which follow each other by the interval
  float intervalMs = 0.0F;
};

FilledValues& Filled() {
  static FilledValues filled;
  return filled;
}

double FilledTime(std::size_t row) {
  const FilledValues& filled = Filled();
  if (!filled.timesMs.empty()) return filled.timesMs[row];
  return static_cast<double>(static_cast<float>(row) * filled.intervalMs);
}

std::string MakeCell(int row, int column) {
  const std::size_t i = Index(row) - 1;
  return FormatText("%.9g", column == 1 ? FilledTime(i) : static_cast<double>(Filled().values[i]));
}

FilledValues SavedSteps() {
  return {.values = SavedStepValues(), .timesMs = SavedStepTimes()};
}

FilledValues Samples() {
  const std::span<const float> trace =
      Trace.SimTrace.first(Index(std::clamp(Model.NumPoints, 0, MaxStimPoints)));
  return {.values = {trace.begin(), trace.end()}, .intervalMs = Model.ADInterval};
}

void FxnFillTable(const ControlEvent& /*event*/) {
  if (Trace.TraceValid == 0) {
    MessagePopup(WarningTitle, NoResult);
    return;
  }
  FilledValues filled = TraceHasSavedSteps() ? SavedSteps() : Samples();
  const int rows = static_cast<int>(filled.values.size());
  if (rows > ManyRows) MessagePopup(SlowTitle, SlowText);
  Filled() = std::move(filled);
  TableNamed(TableName).rows = rows;
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
  Filled() = FilledValues{};
  Table& table = AddTable(PanelName, TableName, 0, 2);
  table.columnTitles = {"Time (ms)", "Value"};
  table.made = MakeCell;
  table.help = "Time (ms) and value of the last result.";
  AddMenu(ValuesMenu);
}

}  // namespace zelvane
