// LoopsPanel: cycles of states that obey microscopic reversibility, and the report on them.
#include <cmath>
#include <string>

#include "model/constraints.h"
#include "model/model.h"
#include "model/model_events.h"
#include "model/model_panels.h"
#include "model/scheme_panels.h"
#include "model/state_number_panels.h"

namespace zelvane {
namespace {

constexpr char LoopsPanelName[] = "LoopsPanel";
constexpr char RowsGroup[] = "rows";
constexpr char CommandsGroup[] = "commands";
constexpr char ReportText[] = "LoopsReportText";

constexpr char ForwardZero[] =
    "There is an error in the specification of the loop rate constants; forward rate =0.";
constexpr char BackwardZero[] =
    "There is an error in the specification of the loop rate constants; backward rate=0.";
constexpr char RateNotInLoop[] =
    "There is an error in the specification of the loop constraints; constrained rates aren't in loop.";
constexpr char ConstrainQuestion[] =
    "The loop with constrained constant k%d,%d is out of balance; constrain this constant?";

constexpr double BalanceTolerance = 1e-5;  // relative in the check, 1/s in the report

// -- Lines of the report --

enum class ReportLine {
  BalancedA,
  BalancedB,
  UnbalancedC,
  UnbalancedD,
  CorrectedE,
  CorrectedF,
  BalancedG,
  Nothing,
};

/// The lines of one form and direction. `asked` comes after a yes, with the rate that was out of balance.
struct ReportWords {
  ReportLine within = ReportLine::Nothing;
  ReportLine out = ReportLine::Nothing;
  ReportLine asked = ReportLine::Nothing;
  ReportLine corrected = ReportLine::Nothing;
};

ReportWords WordsFor(bool grid, bool inForward) {
  using enum ReportLine;
  if (!grid) {
    return inForward ? ReportWords{BalancedA, UnbalancedC, Nothing, CorrectedE}
                     : ReportWords{BalancedB, UnbalancedD, Nothing, CorrectedF};
  }
  return inForward ? ReportWords{BalancedB, UnbalancedD, Nothing, BalancedG}
                   : ReportWords{BalancedB, Nothing, UnbalancedD, BalancedA};
}

/// Adds a line on loop `n` with its constrained rate at `rate`.
void WriteLine(ReportLine line, int n, const LoopProducts& loop, float rate) {
  const double k = static_cast<double>(rate);
  const double forward = loop.inForward ? loop.forward * k : loop.forward;
  const double back = loop.inForward ? loop.backward : loop.backward * k;
  const double balance = static_cast<double>(BalancingRate(loop));
  TextBox& box = TextBoxNamed(ReportText);
  switch (line) {
    case ReportLine::BalancedA:
      InsertLine(box, FormatText("Loop Balanced %d: K(forward)=%.4e K(back)=%.4e Variable rate=%.4e: "
                                 "Change to %.4e to maintain reversibility",
                                 n, forward, back, k, balance));
      return;
    case ReportLine::BalancedB:
      InsertLine(box, FormatText("Loop Balanced %d: K(forward)=%.4e K(back)=%.4e Variable rate =%.4e: "
                                 "Change to %.4e to maintain reversibility",
                                 n, forward, back, k, balance));
      return;
    case ReportLine::UnbalancedC:
      InsertLine(box, FormatText("Loop Unbalanced %d: K(forward)=%.4e K(back)=%.4e Variable rate=%.4e: "
                                 "Change to %.4e to maintain reversibility",
                                 n, forward, back, k, balance));
      return;
    case ReportLine::UnbalancedD:
      InsertLine(box, FormatText("Loop Unbalanced %d: K(forward)=%.4e K(back)=%.4e Variable rate =%.4e: "
                                 "Change to %.4e to maintain reversibility",
                                 n, forward, back, k, balance));
      return;
    case ReportLine::CorrectedE:
      InsertLine(
          box, FormatText("Loop Balanced %d: K(forward)=%.4e K(back)=%.4e Variable rate=%.4e (Corrected)", n,
                          forward, back, k));
      return;
    case ReportLine::CorrectedF:
      InsertLine(box,
                 FormatText("Loop Balanced %d: K(forward)=%.4e K(back)=%.4e Variable rate=%.4e(Corrected)", n,
                            forward, back, k));
      return;
    case ReportLine::BalancedG:
      InsertLine(box, FormatText("Loop Balanced %d: K(forward)=%.4e K(back)=%.4e Variable rate=%.4e", n,
                                 forward, back, k));
      return;
    case ReportLine::Nothing:
      return;
  }
}

// -- Checks --

void ShowRates() {
  if (Model.ModelIs2D != 0) {
    WriteGridRates();
  } else {
    WriteTableRates();
  }
}

/// Asks whether to balance the loop. On yes sets its rate and shows the rates. Returns whether it did.
bool BalanceOnYes(const LoopConstraint& row, float balance) {
  if (!ConfirmPopup(WarningTitle, FormatText(ConstrainQuestion, row.RateFrom, row.RateTo))) return false;
  SetLoopRate(row, balance);
  ShowRates();
  return true;
}

/// Calls `examine` with the number of each enabled row, its settings, its products and its constrained rate.
template <typename Function>
void ForEachLoop(Function&& examine) {
  TakeLoopsPanel();
  ReadActiveRates();
  for (int n = 1; n <= MaxLoopConstraints; ++n) {
    const LoopConstraint& row = Constraints.Loop[n];
    if (row.Enabled == 0) continue;
    const StateTable<float>& rates = RatesOfActiveForm();
    const bool namesRate = IsState(row.RateFrom) && IsState(row.RateTo);
    examine(n, row, LoopOfRow(rates, row), namesRate ? rates[row.RateFrom][row.RateTo] : 0.0F);
  }
}

/// Asks about a rate above its balancing value; one below it needs the report.
void CheckLoop(int /*n*/, const LoopConstraint& row, const LoopProducts& loop, float rate) {
  if (!WellFormed(loop)) {
    MessagePopup(ErrorTitle, MalformedLoop);
    return;
  }
  const float balance = BalancingRate(loop);
  const double ratio = std::abs(static_cast<double>(rate) / static_cast<double>(balance));
  if (ratio - 1.0 > BalanceTolerance) BalanceOnYes(row, balance);
}

void TellFaults(const LoopProducts& loop) {
  const bool noForward = !(loop.forward > 0.0);
  const bool noBackward = !(loop.backward > 0.0);
  const bool notInLoop = loop.inForward == loop.inBackward;
  if (noForward) MessagePopup(ErrorTitle, ForwardZero);
  if (noBackward) MessagePopup(ErrorTitle, BackwardZero);
  if (notInLoop) MessagePopup(ErrorTitle, RateNotInLoop);
  if (!noForward && !noBackward && !notInLoop) MessagePopup(ErrorTitle, MalformedLoop);  // out of range
}

void ReportLoop(int n, const LoopConstraint& row, const LoopProducts& loop, float rate) {
  if (!WellFormed(loop)) {
    TellFaults(loop);
    return;
  }
  const float balance = BalancingRate(loop);
  const ReportWords words = WordsFor(Model.ModelIs2D != 0, loop.inForward);
  if (std::abs(static_cast<double>(rate) - static_cast<double>(balance)) <= BalanceTolerance) {
    WriteLine(words.within, n, loop, rate);
    return;
  }
  WriteLine(words.out, n, loop, rate);
  if (!BalanceOnYes(row, balance)) return;
  WriteLine(words.asked, n, loop, rate);
  WriteLine(words.corrected, n, loop, balance);
}

// -- Commands --

void FxnLoopsReport() {
  ClearLines(TextBoxNamed(ReportText));
  ForEachLoop(ReportLoop);
}

void FxnLoopsDone() {
  HidePanel(LoopsPanelName);
  ForEachLoop(CheckLoop);
}

constexpr auto Number = ControlKind::Number;

// clang-format off
constexpr ControlDecl EnabledControls[] = {
    {.name = "LoopConstraint[%d].enabled", .kind = ControlKind::Switch, .label = "%d", .format = "%.0f",
     .help = "Apply loop constraint %d during a fit. A row that is off keeps its settings.", .first = 1,
     .last = MaxLoopConstraints, .choices = "off|on"},
};
constexpr ControlDecl RateControls[] = {
    {.name = "LoopConstraint[%d].rateFrom", .kind = Number, .label = "Rate from", .format = "%.0f",
     .command = IndexCommand, .action = KeepStateNumber, .help = IndexHelp, .first = 1, .last = MaxLoopConstraints},
    {.name = "LoopConstraint[%d].rateTo", .kind = Number, .label = "Rate to", .format = "%.0f",
     .command = IndexCommand, .action = KeepStateNumber, .help = IndexHelp, .first = 1, .last = MaxLoopConstraints},
};
constexpr ControlDecl CommandControls[] = {
    {.name = "LoopsReport", .kind = ControlKind::Button, .label = "Report", .format = "",
     .command = "FxnLoopsReport", .action = Run<FxnLoopsReport>,
     .help = "Examine microscopic reversibility for identified loops."},
    {.name = "LoopsDone", .kind = ControlKind::Button, .label = "Done", .format = "", .command = "FxnLoopsDone",
     .action = Run<FxnLoopsDone>, .help = "Exit panel for setting constraints."},
};
// clang-format on

/// Adds the fields of the `place`-th states of all loops.
void AddStates(int place) {
  const std::string name = FormatText("LoopConstraint[%%d].state[%d]", place);
  const std::string label = FormatText("State %d", place);
  const ControlDecl states[] = {{.name = name.c_str(),
                                 .kind = Number,
                                 .label = label.c_str(),
                                 .format = "%.0f",
                                 .command = IndexCommand,
                                 .action = KeepStateNumber,
                                 .help = IndexHelp,
                                 .first = 1,
                                 .last = MaxLoopConstraints}};
  AddControls(LoopsPanelName, RowsGroup, states);
}

}  // namespace

void AddLoopsPanel() {
  AddPanel({.name = LoopsPanelName,
            .title = "Loop constraints",
            .close = FxnLoopsDone,
            .help =
                "Each row that is on is a cycle of up to eight states, in order. A fit sets the rate of the "
                "row so that the products of the rates in both directions of the cycle are equal."});
  AddControls(LoopsPanelName, RowsGroup, EnabledControls);
  for (int place = 1; place <= MaxLoopStates; ++place) AddStates(place);
  AddControls(LoopsPanelName, RowsGroup, RateControls);
  AddControls(LoopsPanelName, CommandsGroup, CommandControls);
  AddTextBox(LoopsPanelName, ReportText);
  ModelFileToSave.Add(TakeLoopsPanel);
}

void FxnLoopConstraintsButton() {
  ClearLines(TextBoxNamed(ReportText));
  WriteControls(LoopsPanelName, RowsGroup);
  ShowPanel(LoopsPanelName);
}

void TakeLoopsPanel() {
  KeepStateNumbers(LoopsPanelName);
  ReadControls(LoopsPanelName, RowsGroup);
}

}  // namespace zelvane
