#include "run/q_matrix_panel.h"

#include <string>

#include "model/model_panels.h"
#include "model/model_store.h"
#include "run/result_store.h"
#include "run/run_panel.h"
#include "screen/screen.h"
#include "trace/trace_events.h"

namespace zelvane {
namespace {

constexpr char PanelName[] = "QMatrixPanel";
constexpr char MatrixBox[] = "QMatrixText";
constexpr char ResultsBox[] = "QResultsText";

void ShowMatrix(const QMatrix& matrix) {
  TextBox& box = TextBoxNamed(MatrixBox);
  ClearLines(box);
  InsertLine(box, "Q=");
  for (std::size_t i = 0; i < matrix.rates.rows; ++i) {
    std::string line;
    for (std::size_t j = 0; j < matrix.rates.columns; ++j) {
      line += FormatText("%.1e    ", static_cast<double>(matrix.rates(i, j)));
    }
    InsertLine(box, line);
  }
  InsertLine(box, "");
}

void ShowResults(const QMatrixSolution& solution) {
  TextBox& box = TextBoxNamed(ResultsBox);
  ClearLines(box);
  InsertLine(box, "Relaxation time constants");
  for (const RelaxationTime& time : solution.relaxation) {
    InsertLine(box, FormatText("    Tau(%d)=%f ms", time.eigenvalue, static_cast<double>(time.ms)));
  }
  InsertLine(box, "");
  InsertLine(box, "Equilibrium Probabilities");
  const std::vector<double>& occupancy = solution.equilibrium.occupancy;
  for (std::size_t k = 0; k < occupancy.size(); ++k) {
    InsertLine(box, FormatText("    %.2e State %d probability  ", occupancy[k], solution.matrix.states[k]));
  }
  InsertLine(box, "");
  InsertLine(box, "");
}

void ShowTime(int point) {
  ShowNumber("QMatrixTime", TimeOfStimulusPoint(point));
  ShowText("QMatrixPoint", FormatText("%d", point));
}

// -- Callbacks --

void SolveAtRest() {
  AnalyzeOnPanel(RestingPoint);
}

void FxnQMatrix(const ControlEvent& /*event*/) {
  SolveAtRest();
}

void FxnRecalculateQ(const ControlEvent& /*event*/) {
  AnalyzeOnPanel(StimulusPointAt(ControlNumber("QMatrixTime")));
}

void FxnInsertInitProb(const ControlEvent& /*event*/) {
  Model.StartOccupancy = Result.EquilibriumOccupancy;
  WriteStartOccupancy();
}

void FxnQuitQ(const ControlEvent& /*event*/) {
  HidePanel(PanelName);
}

constexpr auto Number = ControlKind::Number;
constexpr auto Button = ControlKind::Button;
constexpr auto Readout = ControlKind::Readout;

// clang-format off
constexpr ControlDecl MainControls[] = {
    {.name = "QMatrix", .kind = Button, .label = "Q matrix", .format = "", .command = "FxnQMatrix",
     .action = FxnQMatrix,
     .help = "Solve the Q matrix for all eigen vectors in the absence of any stimulation\nin order to calculate the various "
     "tau relaxation values."},
};

constexpr ControlDecl QMatrixControls[] = {
    {.name = "QMatrixTime", .kind = Number, .label = "Time", .unit = "ms", .format = "%.9g",
     .command = "FxnQMatrixTime", .help = "Time in the stimulus for the rates of the matrix."},
    {.name = "QMatrixPoint", .kind = Readout, .label = "Point", .format = "",
     .help = "Point of the stimulus for the rates of the matrix."},
    {.name = "RecalculateQ", .kind = Button, .label = "Recalculate", .format = "", .command = "FxnRecalculateQ",
     .action = FxnRecalculateQ,
     .help = "Recalculate equilibrium probabilities determined from q-matrix using the time entered into panel."},
    {.name = "InsertInitProb", .kind = Button, .label = "Use as start", .format = "", .command = "FxnInsertInitProb",
     .action = FxnInsertInitProb,
     .help = "Use equilibrium probabilities determined from q-matrix as starting conditions."},
    {.name = "QuitQ", .kind = Button, .label = "Close", .format = "", .command = "FxnQuitQ", .action = FxnQuitQ,
     .help = "Close the panel."},
};

constexpr MenuDecl QMatrixMenu[] = {{"Model/Q Matrix...", "FxnQMatrix", SolveAtRest, "Ctrl+M"}};
// clang-format on

}  // namespace

void AddQMatrixPanel() {
  AddControls(MainPanelName, "qmatrix", MainControls);
  AddPanel({.name = PanelName,
            .title = "Q matrix",
            .help = "The rate matrix at a point of the stimulus, its relaxation time constants and the "
                    "occupancies at equilibrium."});
  AddControls(PanelName, "qmatrix", QMatrixControls);
  AddTextBox(PanelName, MatrixBox);
  AddTextBox(PanelName, ResultsBox);
  AddMenu(QMatrixMenu);
  EquilibriumCalculated.Add(ShowTime);
}

QMatrixSolution AnalyzeOnPanel(int point) {
  ReadActiveRates();
  if (Model.ModelIs2D != 0) ReadRunParameters();
  ShowTime(point);
  QMatrixSolution solution = QMatrixAnalysis(true, point);
  ShowMatrix(solution.matrix);
  ShowResults(solution);
  ShowPanel(PanelName);
  return solution;
}

}  // namespace zelvane
