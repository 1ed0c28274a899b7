// FitLimitsPanel: limits, fixed flags and seeds of the parameters of the present fit.
#include "parameters/fit_limits_panel.h"

#include <algorithm>
#include <array>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "model/model_events.h"
#include "parameters/fit_modes.h"
#include "parameters/parameters_store.h"
#include "platform/index.h"
#include "screen/screen.h"

namespace zelvane {
namespace {

constexpr char PanelName[] = "FitLimitsPanel";
constexpr char PanelHelp[] =
    "Set the limits of each fitted parameter, hold a parameter at a fixed value, and set the values at which a "
    "fit begins. Each kind of fit has its own table.";
constexpr char NoModelChosen[] =
    "No exponential model is chosen, so that no parameter is fitted; choose one on the analysis panel.";

/// The groups are the columns of the panel.
constexpr char LabelGroup[] = "label";
constexpr char LowerGroup[] = "lower";
constexpr char UpperGroup[] = "upper";
constexpr char FixedGroup[] = "fixed";
constexpr char SeedGroup[] = "seed";
constexpr char SwitchGroup[] = "switches";
constexpr const char* EditedGroups[] = {LowerGroup, UpperGroup, FixedGroup, SeedGroup, SwitchGroup};

/// The controls of one column by the name of their table; row 0 is unused.
using ColumnControls = std::map<std::string, std::vector<Control*>, std::less<>>;

struct PanelControls {
  std::array<Control*, MaxFitRows + 1> label{};
  ColumnControls lower, upper, fixed, seed;
  std::map<std::string, Control*, std::less<>> switches;
  int shownMode = 0;  // FitMode of the table on the panel
};

PanelControls& Shown() {
  static PanelControls controls;
  return controls;
}

bool IsOn(const char* field) {
  return FieldNumber(FindField(field)) != 0.0;
}

// -- What is typed --

/// Stores the flag of a row. A fit may keep a flag that is forced apart from the user's own.
void StoreFlag(const Control& control) {
  for (const FitModeRows& rows : AllFitModes()) {
    if (rows.fix == nullptr || Shown().fixed[rows.fixed][Index(control.index)] != &control) continue;
    rows.fix(control.index, control.number != 0.0);
    return;
  }
  SetFieldNumber(control.field, control.number);
}

void StoreTypedOf(Control& control) {
  if (!control.typed) return;
  control.typed = false;
  if (control.group == FixedGroup)
    StoreFlag(control);
  else if (control.field)
    SetFieldNumber(control.field, control.number);
}

void StoreAllTyped() {
  for (Control* control : PanelNamed(PanelName).controls) StoreTypedOf(*control);
}

// -- Dimming --

void SetEach(ColumnControls& columns, const std::string& table, int row, bool visible, bool dimmed) {
  for (auto& [name, controls] : columns) {
    if (Index(row) >= controls.size()) continue;
    Control& control = *controls[Index(row)];
    control.visible = visible && name == table;
    control.dimmed = name == table && dimmed;  // the other tables can be edited by name
  }
}

/// Sets label, visibility and dimming of one row. `rows` is nullptr when the present FitMode fits no parameter.
void DimRow(const FitModeRows* rows, int row) {
  PanelControls& shown = Shown();
  const std::string label = rows != nullptr ? FitRowLabel(*rows, row) : std::string{};
  const bool visible = !label.empty();
  shown.label[Index(row)]->text = label;
  shown.label[Index(row)]->visible = visible;
  shown.label[Index(row)]->colour = visible && rows->colourOf != nullptr ? rows->colourOf(row) : "";
  const auto set = [&](ColumnControls& columns, const char* table, bool open) {
    SetEach(columns, table, row, visible, !open);
  };
  const auto tables = rows != nullptr ? *rows : FitModeRows{};
  const bool used = visible && row != tables.unusedRow;
  const bool fixing = used && IsOn(tables.fixOn);
  const bool forced = used && tables.isForced != nullptr && tables.isForced(row);
  const bool limiting = used && IsOn(tables.limitsOn);
  set(shown.lower, tables.limits, limiting);
  set(shown.upper, tables.limits, limiting);
  set(shown.fixed, tables.fixed, fixing && !forced);
  set(shown.seed, tables.seeds, used && tables.takesSeeds && (!IsOn(tables.autoSeed) || IsOn(tables.fixOn)));
}

/// Shows the switches of the present fit. Their callbacks are theirs.
void ShowSwitches(const FitModeRows& rows) {
  for (const auto& [name, control] : Shown().switches)
    control->visible = name == rows.limitsOn || name == rows.autoSeed || name == rows.fixOn;
  for (const char* name : {rows.limitsOn, rows.autoSeed, rows.fixOn}) AnswerCommand(*Shown().switches[name]);
  for (Control* toggle : Shown().fixed[rows.fixed]) {
    if (toggle != nullptr) AnswerCommand(*toggle);
  }
}

/// A flag in force can change without the panel, when a constraint changes.
void ShowFlags(const FitModeRows& rows) {
  for (Control* toggle : Shown().fixed[rows.fixed]) {
    if (toggle != nullptr && !toggle->typed) toggle->number = FieldNumber(toggle->field);
  }
}

void DimFitLimitsPanel() {
  const FitModeRows* rows = FitModeOf(Parameters.FitMode);
  if (Parameters.FitMode != Shown().shownMode) {
    Shown().shownMode = Parameters.FitMode;
    ShowSwitches(rows != nullptr ? *rows : FitModeRows{});
  }
  for (int row = 1; row <= MaxFitRows; ++row) DimRow(rows, row);
  if (rows != nullptr && rows->isForced != nullptr) ShowFlags(*rows);
}

// -- Commands --

void FxnSwitches(const ControlEvent& event) {
  event.control->typed = false;  // stored by the commit
  FitLimitsRead();
  FitLimitsRefresh();
}

void FxnModeVertex(const ControlEvent& event) {
  event.control->typed = false;
  StoreFlag(*event.control);
  FitLimitsRead();
  FitLimitsRefresh();
}

/// The commit has stored the value in its table.
void FxnVertex(const ControlEvent& event) {
  event.control->typed = false;
  FitLimitsWrite();  // a field may have controls elsewhere
}

void CloseFitLimits() {
  HidePanel(PanelName);
  FitLimitsRead();
}

void FxnQuitFitLimits(const ControlEvent& /*event*/) {
  CloseFitLimits();
}

// clang-format off
constexpr auto Number = ControlKind::Number;
constexpr auto Switch = ControlKind::Switch;

constexpr ControlDecl UpperControl{
    .kind = Number, .format = "%g", .command = "FxnMaxVertex", .action = FxnVertex,
    .help = "Maximum limit for fitted parameter"};
constexpr ControlDecl LowerControl{
    .kind = Number, .format = "%g", .command = "FxnMinVertex", .action = FxnVertex,
    .help = "Minimum limit for fitted parameter"};
constexpr ControlDecl SeedControl{
    .kind = Number, .format = "%g", .command = "FxnSeedVertex", .action = FxnVertex,
    .help = "Value at which the fit of this parameter begins, and the value of a fixed parameter. A fit of rates begins "
    "with the rates of the model."};
constexpr ControlDecl FixedControl{
    .kind = Switch, .format = "%d", .command = "FxnModeVertex%d", .action = FxnModeVertex,
    .help = "Hold this parameter fixed. A rate that a constraint or a loop sets is always fixed in a fit of rates.",
    .choices = "off|on"};

constexpr ControlDecl LabelControls[] = {
    {.name = "FitRowLabel[%d]", .kind = ControlKind::Readout, .format = "",
     .help = "Name of the parameter. In a fit of rates red is fixed, green is set by a loop, blue by a constraint.",
     .first = 1, .last = MaxFitRows},
};

/// The switches, once for the fit of rates and once for all other fits.
constexpr ControlDecl LimitsSwitch{
    .kind = Switch, .label = "Limits", .format = "%d", .command = "FxnParamLimits", .action = FxnSwitches,
    .help = "Switch for user specified limits for parameters used by simplex in least squares fittings.\n Actual parameters "
    "are allowed to vary 0.1% to maintain non-degenerate simplex.", .choices = "off|on"};
constexpr ControlDecl SeedSwitch{
    .kind = Switch, .label = "Automatic seeds", .format = "%d", .command = "FxnAutoSeed", .action = FxnSwitches,
    .help = "Automatically determine starting parameter guesses for fitting algorithms\nor obtain initial guesses as set on "
    "parameter menu", .choices = "off|on"};
constexpr ControlDecl FixSwitch{
    .kind = Switch, .label = "Fixed parameters", .format = "%d", .command = "FxnFixFree", .action = FxnSwitches,
    .help = "Switch between fixed parameter values in least squares fitting\nor allowing parameters to vary freely",
    .choices = "off|on"};

constexpr ControlDecl CommandControls[] = {
    {.name = "FitLimitsDone", .kind = ControlKind::Button, .label = "Done", .format = "", .command = "FxnQuitFitLimits",
     .action = FxnQuitFitLimits, .help = "Return to Measurement Panel."},
};
// clang-format on

/// Adds the rows of a column for a table that has none yet, or fewer.
void AddColumn(ColumnControls& columns, const char* group, ControlDecl decl, const std::string& table,
               const char* member, int last) {
  std::vector<Control*>& controls = columns[table];
  if (controls.empty()) controls.push_back(nullptr);
  const std::string name = table + "[%d]" + member;
  decl.name = name.c_str();
  for (int row = static_cast<int>(controls.size()); row <= last; ++row)
    controls.push_back(&AddControl(PanelName, group, decl, row));
}

void AddSwitch(ControlDecl decl, const char* name) {
  if (Shown().switches.contains(name)) return;
  decl.name = name;
  Shown().switches[name] = &AddControl(PanelName, SwitchGroup, decl);
}

void AddControlsOf(const FitModeRows& rows) {
  const int last = LastFitRow(rows);
  AddColumn(Shown().lower, LowerGroup, LowerControl, rows.limits, ".lo", last);
  AddColumn(Shown().upper, UpperGroup, UpperControl, rows.limits, ".hi", last);
  AddColumn(Shown().fixed, FixedGroup, FixedControl, rows.fixed, "", last);
  AddColumn(Shown().seed, SeedGroup, SeedControl, rows.seeds, "", last);
  AddSwitch(LimitsSwitch, rows.limitsOn);
  AddSwitch(SeedSwitch, rows.autoSeed);
  AddSwitch(FixSwitch, rows.fixOn);
}

/// Makes the rows of the present fit again. `limitsFollow` lets automatic limits follow the rates.
void Refresh(bool limitsFollow) {
  StoreAllTyped();
  const FitModeRows* rows = FitModeOf(Parameters.FitMode);
  if (rows != nullptr && rows->build != nullptr) rows->build(limitsFollow);
  FitLimitsWrite();
}

}  // namespace

void AddFitLimitsPanel() {
  AddPanel({.name = PanelName, .title = "Fit parameters", .close = CloseFitLimits, .help = PanelHelp});
  Shown() = PanelControls{};
  AddControls(PanelName, LabelGroup, LabelControls);
  const Panel& panel = PanelNamed(PanelName);
  std::copy(panel.controls.begin(), panel.controls.end(), Shown().label.begin() + 1);
  for (const FitModeRows& rows : AllFitModes()) AddControlsOf(rows);
  AddControls(PanelName, "commands", CommandControls);
  PanelNamed(PanelName).dim.push_back(DimFitLimitsPanel);  // now, because the rule needs the controls
  ModelFileToSave.Add(StoreAllTyped);
  ModelFileCameIn.Add([](Outcome& /*shown*/) {
    FitLimitsWrite();
    FitModeChanged.Tell();
    AnalysisFitSwitchesRead.Tell();
  });
}

void SetFitMode(int mode) {
  FitLimitsRead();
  Parameters.FitMode = mode;
  FollowFitMode();
}

void FollowFitMode() {
  if (Parameters.FitMode == Shown().shownMode) return;
  ShowField("FitMode");
  Refresh(false);  // the limits of a model that was read stay
  FitModeChanged.Tell();
}

void ShowFitLimits(int mode) {
  SetFitMode(mode);
  FitLimitsRefresh();
  ShowPanel(PanelName);
  if (FitModeOf(mode) == nullptr) Note(NoModelChosen);
}

void FitLimitsRead() {
  StoreAllTyped();
  const FitModeRows* rows = FitModeOf(Shown().shownMode);
  if (rows == nullptr || rows->build != nullptr) return;
  if (rows->keepsCopy) TakeFitLimits(rows->mode);
  AnalysisFitSwitchesRead.Tell();
}

void FitLimitsWrite() {
  for (const char* group : EditedGroups) WriteControls(PanelName, group);
}

void FitLimitsRefresh() {
  Refresh(true);
}

}  // namespace zelvane
