#include "analysis/dose_panel.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "analysis/analysis_fit_store.h"
#include "analysis/analysis_panel.h"
#include "analysis/analysis_store.h"
#include "analysis/analysis_views.h"
#include "analysis/batch_script.h"
#include "analysis/dose_response.h"
#include "analysis/dose_runs.h"
#include "analysis/dose_store.h"
#include "analysis/dose_views.h"
#include "model/model_events.h"
#include "model/model_store.h"
#include "parameters/fit_limits_panel.h"
#include "parameters/fit_modes.h"
#include "parameters/parameters_store.h"
#include "parameters/vertex_store.h"
#include "platform/index.h"
#include "screen/screen.h"
#include "stimulus/stimulus_store.h"
#include "trace/trace_store.h"

namespace zelvane {
namespace {

constexpr char FieldsGroup[] = "fields";
constexpr char PanelHelp[] =
    "Build a concentration-response curve and fit the Hill equation to it. The pairs are typed, pasted, simulated, or "
    "collected by a script of stimulus files.";
constexpr char TableHelp[] =
    "Concentration (M) and response, up to 100 pairs. Rows with the response 0 at the end do not count.";
constexpr char ScriptTitle[] =
    "Load and run a file list from ascii file with #files on first line and a \"stimulus filename\" on each row.";
constexpr char ScriptFilter[] = "*.ms; *.txt;*.*";
constexpr char NoScript[] = "Error finding *.ms script file for multiple stimuli list file.";
constexpr char TooLarge[] = "This value is too large for the table.";
constexpr char TableIsFull[] = "The table is full: it holds 100 pairs.";
constexpr char NothingMeasured[] = "No response has been measured: analyze one first.";
constexpr char WindowSet[] =
    "Baseline, peak search and integral of the analysis now follow the pulse, because the search did not meet it.";
constexpr char DosesMade[] =
    "The table was empty: the doses are half decades around the dose of the stimulus.";
constexpr char MagnitudesTaken[] = "All responses are negative; the table has their magnitudes.";
constexpr int PlotRuns = 4;    // runs of the simplex of Plot
constexpr int MoreRuns = 3;    // runs of Fit besides the restarts
constexpr int FirstDoses = 9;  // doses for an empty table
constexpr int DosesBelow = 5;  // of them below that of the stimulus

// -- Table --

Table& Pairs() {
  return TableNamed(DoseTableName);
}

std::string CellOf(int row, int column) {
  const float value = column == 1 ? Dose.DoseConc[Index(row) - 1] : Dose.DoseResponse[Index(row) - 1];
  return FormatText("%g", static_cast<double>(value));
}

void ShowPairs() {
  for (int row = 1; row <= MaxDosePairs; ++row) {
    for (const int column : {1, 2}) SetCell(Pairs(), row, column, CellOf(row, column));
  }
}

void FxnDoseTable(Table& table, int row, int column) {
  const double typed = ParseNumber(CellText(table, row, column)).value_or(0.0);
  if (!NumberSuits(FieldType::Float, typed)) {
    MessagePopup(ErrorTitle, TooLarge);
  } else {
    (column == 1 ? Dose.DoseConc : Dose.DoseResponse)[Index(row) - 1] = static_cast<float>(typed);
    Dose.DoseFitted = 0;
    CountDosePairs();
  }
  DosesChanged.Tell();
}

// -- Showing --

void ShowError(int parameter) {
  const double error = Dose.DoseError[Index(parameter)];
  const std::string control = FormatText("DoseError[%d]", parameter);
  if (Dose.DoseFitted > 0 && std::isfinite(error))
    ShowNumber(control, error);
  else
    ShowText(control, "");
}

void ShowDoses() {
  ShowPairs();
  WriteControls(DosePanelName, FieldsGroup);
  for (int p = 1; p <= HillParameters; ++p) ShowError(p);
  ShowNumber("DoseCount", static_cast<double>(Dose.DoseCount));
  ShowText("DoseResultWord", Dose.DoseFitted > 0 ? FitResultWord(Dose.DoseResultCode) : "");
  for (const auto& [control, value] :
       {std::pair{"DoseResidual", Dose.DoseResidual}, std::pair{"DoseEvals", double(Dose.DoseEvals)}}) {
    if (Dose.DoseFitted > 0)
      ShowNumber(control, value);
    else
      ShowText(control, "");
  }
  DrawDoses();
  ShowDoseCursor();
}

void OpenDosePanel() {
  ShowPanel(DosePanelName);
  ShowDoses();
}

void ReadFields() {
  ReadControls(DosePanelName, FieldsGroup);
  CountDosePairs();
}

// -- Commands --

void Fit(int runs) {
  ReadFields();
  SetFitMode(FitDoseResponse);
  FitLimitsRead();
  KeepFittedDoses();
  ForgetStop();
  static_cast<void>(FitDoses(runs));  // has told what failed
}

void FxnDRPlot(const ControlEvent&) {
  Fit(PlotRuns);
}

void FxnDRFit(const ControlEvent&) {
  Fit(std::max(AnalysisFit.AnalysisNumRestarts, 0) + MoreRuns);
}

void FxnDRShow(const ControlEvent&) {
  DrawLastDoses();
}

void FxnDRErase(const ControlEvent&) {
  EraseDoses();
}

void FxnDRLimits(const ControlEvent&) {
  ReadFields();
  ShowFitLimits(FitDoseResponse);
}

void FxnDRDone(const ControlEvent&) {
  ReadFields();
  HidePanel(DosePanelName);
}

void FxnDRGraph(const ControlEvent&) {
  ShowDoseCursor();
}

void FxnDRClear(const ControlEvent&) {
  ClearDoses();
}

void FxnDoseField(const ControlEvent&) {
  DrawDoses();
}

void FxnDRAdd(const ControlEvent&) {
  ReadFields();
  if (Analysis.Measures.measured == 0 || Trace.TraceValid == 0) {
    MessagePopup(NoticeTitle, NothingMeasured);
    return;
  }
  const float response = Analysis.Measures.PeakValue - Analysis.Measures.Baseline;
  const PulseSpan pulse = PulseOf(Dose.DoseDrug);
  Dose.DoseUnits = TraceUnitWord();
  if (!AddDose(pulse.largest, response)) MessagePopup(NoticeTitle, TableIsFull);
}

/// Fills an empty table with doses around that of the stimulus.
void MakeDoses(float largest) {
  for (int k = 0; k < FirstDoses; ++k)
    Dose.DoseConc[Index(k)] =
        static_cast<float>(static_cast<double>(largest) * std::pow(10.0, 0.5 * (k - DosesBelow)));
  Note(DosesMade);
}

/// Turns responses around that are all negative: limits and seeds then suit them.
void TakeMagnitudes(std::size_t rows) {
  const auto end = Dose.DoseResponse.begin() + static_cast<std::ptrdiff_t>(rows);
  if (std::any_of(Dose.DoseResponse.begin(), end, [](float r) { return r > 0.0F; })) return;
  std::transform(Dose.DoseResponse.begin(), end, Dose.DoseResponse.begin(),
                 [](float r) { return std::fabs(r); });
  Note(MagnitudesTaken);
}

int RowsWithDose() {
  int rows = MaxDosePairs;
  while (rows > 0 && Dose.DoseConc[Index(rows) - 1] == 0.0F) --rows;
  return rows;
}

void FxnDRSimulate(const ControlEvent&) {
  ReadFields();
  RunSettingsWanted.Tell();
  const PulseSpan pulse = PulseOf(Dose.DoseDrug);
  if (RowsWithDose() == 0 && pulse.largest > 0.0F) MakeDoses(pulse.largest);
  if (pulse.largest > 0.0F && WindowOfPulse(pulse)) {
    Note(WindowSet);
    WriteAnalysisPanel();
  }
  const auto rows = Index(RowsWithDose());
  std::vector<float> response(rows, 0.0F);
  Dose.DoseFitted = 0;
  std::size_t made = 0;
  const auto show = [&](int dose) {
    made = Index(dose) + 1;
    std::copy_n(response.begin(), made, Dose.DoseResponse.begin());
    CountDosePairs();
    DosesChanged.Tell();
  };
  static_cast<void>(SimulateDoses(std::span<const float>(Dose.DoseConc).first(std::max<std::size_t>(rows, 1)),
                                  Dose.DoseDrug, Dose.DoseMeasure, response, show));  // has told what failed
  if (made > 0) {
    TakeMagnitudes(made);
    Dose.DoseUnits = Dose.DoseMeasure == DoseArea ? TraceUnitWord() + " ms" : TraceUnitWord();
    SeedFromPairs();
  }
  FollowFitMode();
}

void NewDoseResponse() {
  BeginDoseResponse();
  FollowFitMode();
  OpenDosePanel();
}

void FxnDRAnalysis(const ControlEvent&) {
  NewDoseResponse();
}

void RunScript() {
  Stimulus.ScriptRunning = 1;  // from now on, also without a script
  const auto path = FileSelectPopup({.title = ScriptTitle, .defaultName = "*.ms", .filter = ScriptFilter});
  if (!path) {
    MessagePopup(NoticeTitle, NoScript);
    return;
  }
  Dose.DoseUnits = TraceUnitWord();
  static_cast<void>(RunBatchScript(*path));  // has told what failed
  Dose.DoseUnits = TraceUnitWord();
  ShowDoses();
  FollowFitMode();
  FitLimitsWrite();
}

void FxnRunScript(const ControlEvent&) {
  RunScript();
}

// clang-format off
constexpr auto Number = ControlKind::Number;
constexpr auto Choice = ControlKind::Choice;
constexpr auto Switch = ControlKind::Switch;
constexpr auto Button = ControlKind::Button;
constexpr auto Readout = ControlKind::Readout;

constexpr ControlDecl FieldControls[] = {
    {.name = "DoseEC50", .kind = Number, .label = "EC50", .unit = "M", .format = "%.5g", .command = "FxnDoseEC50",
     .action = FxnDoseField,
     .help = "Concentration with half of the response: the value at which a fit begins, and its result."},
    {.name = "DoseSlope", .kind = Number, .label = "Slope", .format = "%.5g", .command = "FxnDoseSlope",
     .action = FxnDoseField, .help = "Hill coefficient: the value at which a fit begins, and its result."},
    {.name = "DoseMax", .kind = Number, .label = "Max", .format = "%.5g", .command = "FxnDoseMax", .action = FxnDoseField,
     .help = "Response to a saturating concentration: the value at which a fit begins, and its result."},
    {.name = "DoseMin", .kind = Number, .label = "Min", .format = "%.5g", .command = "FxnDoseMin", .action = FxnDoseField,
     .help = "Response without the drug: the value at which a fit begins, and its result."},
    {.name = "DoseDrug", .kind = Choice, .label = "Drug", .format = "%d", .command = "FxnDoseDrug",
     .help = "Drug whose profile the simulated doses scale.", .choices = "1|2|3|4|5|6", .choiceBase = 1},
    {.name = "DoseMeasure", .kind = Choice, .label = "Response", .format = "%d", .command = "FxnDoseMeasure",
     .help = "What is measured in a simulated response: peak less baseline, mean of the last tenth of the pulse less "
     "baseline, or area.", .choices = "peak|steady|area"},
    {.name = "DoseLogAxis", .kind = Switch, .label = "Logarithmic axis", .format = "%d", .command = "FxnDoseLogAxis",
     .action = FxnDoseField,
     .help = "Show concentrations on a logarithmic axis. A concentration of 0 then stands at its left edge, as a cross.",
     .choices = "off|on"},
};
constexpr ControlDecl ResultControls[] = {
    {.name = "DoseError[%d]", .kind = Readout, .label = "+-", .format = "%.3g",
     .help = "Standard error of a parameter: 1 EC50, 2 slope, 3 maximum, 4 minimum. It needs five pairs, and no parameter "
     "at its limit.", .first = 1, .last = HillParameters},
    {.name = "DoseCount", .kind = Readout, .label = "Pairs", .format = "%g", .help = "Number of pairs in the fit."},
    {.name = "DoseResidual", .kind = Readout, .label = "Residual", .format = "%.4g",
     .help = "Sum of the squared differences between pairs and curve, divided by the number of pairs."},
    {.name = "DoseEvals", .kind = Readout, .label = "Evaluations", .format = "%g",
     .help = "Accepted steps of the last run of the simplex."},
    {.name = "DoseResultWord", .kind = Readout, .label = "Fit", .format = "",
     .help = "How the last run of the simplex ended."},
    {.name = "DoseCursorConc", .kind = Readout, .label = "Cursor", .unit = "M", .format = "%.4g",
     .help = "Concentration at the cursor of the graph."},
    {.name = "DoseCursorResponse", .kind = Readout, .label = "Response there", .format = "%.4g",
     .help = "Response at the cursor of the graph."},
};
constexpr ControlDecl CommandControls[] = {
    {.name = "DosePlot", .kind = Button, .label = "Plot and fit", .format = "", .command = "FxnDRPlot", .action = FxnDRPlot,
     .help = "Plot the pairs of the table and fit the Hill equation to them with four runs of the simplex."},
    {.name = "DoseFit", .kind = Button, .label = "Fit again", .format = "", .command = "FxnDRFit", .action = FxnDRFit,
     .help = "Fit the pairs again from the present values, with the limits of the panel."},
    {.name = "DoseShow", .kind = Button, .label = "Show last", .format = "", .command = "FxnDRShow", .action = FxnDRShow,
     .help = "Add the pairs of the curve before this one, as a line."},
    {.name = "DoseErase", .kind = Button, .label = "Erase plot", .format = "", .command = "FxnDRErase",
     .action = FxnDRErase, .help = "Remove everything from the graph. The table keeps its pairs."},
    {.name = "DoseLimits", .kind = Button, .label = "Limits...", .format = "", .command = "FxnDRLimits",
     .action = FxnDRLimits, .help = "Set limits for fitted parameters."},
    {.name = "DoseCursorButton", .kind = Button, .label = "Read cursor", .format = "", .command = "FxnDRGraph",
     .action = FxnDRGraph, .help = "Show concentration and response at the cursor of the graph."},
    {.name = "DoseSimulate", .kind = Button, .label = "Simulate doses", .format = "", .command = "FxnDRSimulate",
     .action = FxnDRSimulate,
     .help = "Run the model once for each concentration of the table, with the stimulus of the drug scaled to it, and put the "
     "responses into the table. An empty table gets doses around that of the stimulus."},
    {.name = "DoseAdd", .kind = Button, .label = "Add this response", .format = "", .command = "FxnDRAdd",
     .action = FxnDRAdd,
     .help = "Append the last measured response, peak less baseline, with the largest sample of the drug's stimulus."},
    {.name = "DoseScript", .kind = Button, .label = "Run script...", .format = "", .command = "FxnRunScript",
     .action = FxnRunScript,
     .help = "Run the model with each stimulus file of a script (*.ms). The peak responses and the largest stimuli become the "
     "pairs. The largest is found by comparing the magnitude of each sample with the signed value so far."},
    {.name = "DoseNew", .kind = Button, .label = "New curve", .format = "", .command = "FxnDRAnalysis",
     .action = FxnDRAnalysis,
     .help = "Set seeds and limits for responses between 0 and 1, and switch the limits on. The pairs stay."},
    {.name = "DoseClear", .kind = Button, .label = "Clear table", .format = "", .command = "FxnDRClear",
     .action = FxnDRClear, .help = "Empty the table. Show last brings its pairs back on the graph."},
    {.name = "DoseDone", .kind = Button, .label = "Done", .format = "", .command = "FxnDRDone", .action = FxnDRDone,
     .help = "Close the panel. The program keeps table and values."},
};
constexpr MenuDecl DoseMenu[] = {
    {"Analysis/Dose-Response...",        "DoseResponse",    OpenDosePanel},
    {"Analysis/New Dose-Response...",    "NewDoseResponse", NewDoseResponse},
    {"Analysis/Run Stimulus Script...",  "RunScript",       RunScript},
};
// clang-format on

void CloseDosePanel() {
  ReadFields();
  HidePanel(DosePanelName);
}

}  // namespace

void AddDosePanel() {
  AddPanel({.name = DosePanelName,
            .title = "Dose-response",
            .close = CloseDosePanel,
            .help = PanelHelp,
            .overTask = true});
  AddControls(DosePanelName, FieldsGroup, FieldControls);
  AddControls(DosePanelName, "results", ResultControls);
  AddControls(DosePanelName, "commands", CommandControls);
  for (Control* control : PanelNamed(DosePanelName).controls) {
    if (control->group == "results") control->field = FieldRef{};  // shown only after a fit
  }
  Table& table = AddTable(DosePanelName, DoseTableName, MaxDosePairs, 2);
  table.columnTitles = {"Conc. (M)", "Response"};
  table.editable = true;
  table.command = "FxnDoseTable";
  table.help = TableHelp;
  table.committed = FxnDoseTable;
  AddDoseGraphs();
  AddDoseTemplate();
  AddMenu(DoseMenu);
  DosesChanged.Add(ShowDoses);
  DosesToShow.Add(OpenDosePanel);
  ScriptBegins.Add([] { ShowField("AutosaveFileName"); });
  ShowDoses();
}

}  // namespace zelvane
