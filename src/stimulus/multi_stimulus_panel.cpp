// The table of multi-sweep voltage and concentration waveforms on the stimulus panel. Model files hold it.
#include "platform/index.h"
#include "screen/screen.h"
#include "stimulus/stimulus.h"
#include "stimulus/stimulus_store.h"
#include "stimulus/stimulus_views.h"

namespace zelvane {
namespace {

constexpr char TableName[] = "MultiStimTable";
constexpr char ValueTooLarge[] = "This value is too large for the table.";
constexpr char ClearHelp[] = "Set all values of the multi-stimulus table to zero.";
constexpr char TableHelp[] =
    "Voltage and concentration waveforms for many sweeps, with one group per column. The model file "
    "includes the table.";

constexpr int TitleColumn = 1;
constexpr int FirstGroupColumn = 2;  // group 0
constexpr const char* RowTitles[MultiStimFields] = {"Concentration (M)", "Change/sweep (M)", "Drug# (1-6)",
                                                    "Voltage (V)",       "Change/sweep (V)", "Duration (ms)"};

/// Returns the value of a cell in a group's column.
float& CellValue(int row, int column) {
  return Stimulus.MultiStimTable[Index(column - FirstGroupColumn)][Index(row - 1)];
}

void ShowCell(Table& table, int row, int column) {
  SetCell(table, row, column,
          column == TitleColumn ? RowTitles[row - 1]
                                : FormatText("%g", static_cast<double>(CellValue(row, column))));
}

/// Handles a typed cell. Keeps the old value of a row's title, and when the new value is too large for a
/// 32-bit float.
void FxnMultiStimTable(Table& table, int row, int column) {
  if (column >= FirstGroupColumn) {
    const double typed = ParseNumber(CellText(table, row, column)).value_or(0.0);
    if (NumberSuits(FieldType::Float, typed)) {
      CellValue(row, column) = static_cast<float>(typed);
    } else {
      MessagePopup(ErrorTitle, ValueTooLarge);
    }
  }
  ShowCell(table, row, column);
  StimRebuild();
}

void FxnClearMultiStim(const ControlEvent&) {
  Stimulus.MultiStimTable = {};
  ShowMultiStimTable();
}

constexpr ControlDecl ClearButton[] = {{.name = "ClearMultiStim",
                                        .kind = ControlKind::Button,
                                        .label = "Clear table",
                                        .command = "FxnClearMultiStim",
                                        .action = FxnClearMultiStim,
                                        .help = ClearHelp}};

}  // namespace

void AddMultiStimTable() {
  Table& table =
      AddTable("StimulusPanel", TableName, MultiStimFields, FirstGroupColumn - 1 + MultiStimGroups);
  table.editable = true;
  table.command = "FxnMultiStimTable";
  table.help = TableHelp;
  table.committed = FxnMultiStimTable;
  table.columnTitles.emplace_back("");
  for (int group = 1; group <= MultiStimGroups; ++group)
    table.columnTitles.push_back(FormatText("Group %d", group));
  ShowMultiStimTable();
  AddControls("StimulusPanel", "table", ClearButton);
}

void ShowMultiStimTable() {
  Table& table = TableNamed(TableName);
  for (int row = 1; row <= table.rows; ++row) {
    for (int column = 1; column <= table.columns; ++column) ShowCell(table, row, column);
  }
}

}  // namespace zelvane
