// Rate and loop constraints: how a fit applies them, and what their panels tell and ask.
#include "model/constraints.h"

#include <algorithm>
#include <deque>
#include <initializer_list>
#include <utility>

#include "model/model.h"
#include "support/pressing.h"

namespace zelvane {
namespace {

void SetLoop(int row, std::initializer_list<int> states, int from, int to) {
  LoopConstraint& loop = Constraints.Loop[row];
  loop.Enabled = 1;
  std::copy(states.begin(), states.end(), loop.State.begin() + 1);
  loop.RateFrom = from;
  loop.RateTo = to;
}

/// The square 1, 2, 7, 6 of the grid: 10/s clockwise, 5/s back.
void SetSquare() {
  for (const int s : {1, 2, 6, 7, 8}) Model.StateOn[s] = 1;
  for (const int link : {1, 6}) {  // 1-2, 2-7
    Model.KOn[link] = 10.0;
    Model.KOff[link] = 5.0;
  }
  for (const int link : {5, 10}) {  // 1-6, 6-7
    Model.KOn[link] = 5.0;
    Model.KOff[link] = 10.0;
  }
}

class ConstraintsTest : public StoreTest {
 protected:
  ConstraintsTest() { Model.ModelIs2D = 0; }
  void Apply() {
    ApplyRateAndLoopConstraints(faults);
    TellConstraintFaults(faults);
  }
  ConstraintFaults faults;
};

TEST_F(ConstraintsTest, EachOperationSetsTheTargetAndANegativeResultChangesSign) {
  Model.TableRate[3][4] = 8.0F;
  const float results[] = {10.0F, 6.0F, 16.0F, 0.25F};  // 8 + 2, |2 - 8|, 8 x 2, 2 / 8
  for (int operation = 0; operation < 4; ++operation) {
    Constraints.Rate[operation + 1] = {1, operation + 5, 20, 3, 4, operation, 2.0F};
  }
  Apply();
  for (int operation = 0; operation < 4; ++operation) {
    EXPECT_EQ(Model.TableRate[operation + 5][20], results[operation]) << operation;
  }
  EXPECT_TRUE(SetByConstraint(5, 20));
  EXPECT_FALSE(SetByConstraint(20, 5) || SetByLoop(5, 20));
  Constraints.Rate[1].Enabled = 0;
  EXPECT_FALSE(SetByConstraint(5, 20));
}

TEST_F(ConstraintsTest, RowsApplyInOrderAndLoopsSeeTheirResults) {
  Model.TableRate[3][4] = 3.0F;
  Model.TableRate[5][6] = 56.0F;
  Constraints.Rate[1] = {1, 1, 2, 3, 4, 2, 1.0F};
  Constraints.Rate[60] = {1, 3, 4, 5, 6, 2, 1.0F};
  Model.TableRate[2][3] = Model.TableRate[3][2] = Model.TableRate[2][1] = Model.TableRate[1][3] = 2.0F;
  SetLoop(1, {1, 2, 3}, 3, 1);
  Apply();
  EXPECT_EQ(Model.TableRate[1][2], 3.0F) << "row 1 sees the former rate";
  EXPECT_EQ(Model.TableRate[3][4], 56.0F);
  EXPECT_FLOAT_EQ(Model.TableRate[3][1], 8.0F / 6.0F);
  EXPECT_TRUE(SetByLoop(3, 1));
  EXPECT_FALSE(SetByLoop(1, 3));
}

TEST_F(ConstraintsTest, ARowWithoutResultKeepsItsRateAndIsToldOnce) {
  Model.TableRate[1][2] = 7.0F;
  Constraints.Rate[2] = {1, 1, 2, 3, 4, 3, 1.0F};  // 1 / 0
  Constraints.Rate[3] = {1, 1, 1, 1, 2, 2, 1.0F};  // the diagonal is no rate
  Constraints.Rate[4] = {1, 21, -1, 1, 2, 2, 1.0F};
  Constraints.Rate[5] = {1, 1, 2, 1, 2, 9, 1.0F};  // no operation
  SetLoop(1, {1, 2, 3}, 3, 1);
  SetLoop(40, {1, 2}, 1, 2);
  Apply();
  Apply();
  EXPECT_EQ(Model.TableRate[1][2], 7.0F);
  EXPECT_EQ(Model.TableRate[1][1], 0.0F);
  EXPECT_EQ(PopupTexts(), (Texts{MalformedLoop, MalformedLoop}));
  EXPECT_EQ(notes.size(), 4U);
  EXPECT_EQ(notes[0], "Rate constraint 2 has no result: the rate from state 1 to state 2 keeps its value.");
  SetLoop(2, {4, 5}, 4, 5);
  Apply();
  EXPECT_EQ(popups.size(), 3U) << "a row that fails later is told later";
}

TEST_F(ConstraintsTest, TheGridGetsTheRatesAndLinksThatAreOffKeepTheirs) {
  Model.ModelIs2D = 1;
  SetSquare();
  Model.KOn[2] = 23.0;                             // 2-3, state 3 is off
  Constraints.Rate[1] = {1, 6, 7, 1, 2, 2, 0.5F};  // link 10
  Constraints.Rate[2] = {1, 1, 7, 1, 2, 2, 1.0F};  // no link
  Constraints.Rate[3] = {1, 2, 3, 1, 2, 2, 1.0F};  // a link that is off
  SetLoop(1, {1, 2, 7, 6}, 6, 1);
  Apply();
  EXPECT_EQ(Model.KOn[10], 5.0);
  EXPECT_EQ(Model.KOff[5], 5.0 * 5.0 * 5.0 * 5.0 / (10.0 * 10.0 * 10.0));
  EXPECT_EQ(Model.KOn[2], 23.0);
  EXPECT_EQ(Model.RateMatrix[1][7], 0.0F);
  EXPECT_EQ(notes.size(), 2U);
}

using ConstraintPanelsTest = PanelTest;

const std::string Question =
    "The loop with constrained constant k6,1 is out of balance; constrain this constant?";

TEST_F(ConstraintPanelsTest, DoneTakesWhatIsTypedAndASaveDoesToo) {
  PressCommand("FxnConstraintsButton");
  EXPECT_TRUE(PanelVisible("ConstraintsPanel"));
  TypeOnly("RateConstraint[60].value", "2.5");
  TypeOnly("RateConstraint[60].operation", "c / source");
  TypeOnly("RateConstraint[60].targetTo", "21");
  PressCommand("FxnConstraintsDone");
  EXPECT_FALSE(PanelVisible("ConstraintsPanel"));
  EXPECT_EQ(Constraints.Rate[60].Value, 2.5F);
  EXPECT_EQ(Constraints.Rate[60].Operation, 3);
  Enter("LoopConstraint[40].state[8]", "20");
  Enter("LoopConstraint[40].state[8]", "-1");
  EXPECT_EQ(Constraints.Loop[40].State[8], 20);
  EXPECT_EQ(Constraints.Rate[60].TargetTo, 1);
  EXPECT_EQ(notes.size(), 2U) << "numbers that are no state";
  TypeOnly("LoopConstraint[40].rateTo", "9");
  choices = {folder.File("m.mod")};
  PressCommand("SaveParameters");
  EXPECT_EQ(Constraints.Loop[40].RateTo, 9);
  EXPECT_NE(ReadWholeFile(folder.File("m.mod")).find("0 0 0 0 0 0 0 0 20 1 9\n"), std::string::npos);
}

TEST_F(ConstraintPanelsTest, DoneAsksAboutARateThatIsTooHighAndTheReportAlsoAboutOneTooLow) {
  SetSquare();
  SetLoop(1, {1, 2, 7, 6}, 6, 1);  // balance: 5^4 / 10^3 = 0.625
  WriteAllControls();
  Enter("KOff[5]", "0.5625");
  PressCommand("FxnLoopConstraintsButton");
  PressCommand("FxnLoopsDone");
  EXPECT_TRUE(popups.empty()) << "10 percent below";
  PressCommand("FxnLoopConstraintsButton");
  PressCommand("FxnLoopsReport");
  EXPECT_EQ(popups, (std::vector<SeenPopup>{{"! Warning", Question}}));
  EXPECT_EQ(Model.KOff[5], 0.5625) << "answered no";
  answers = {true};
  PressCommand("FxnLoopsReport");
  EXPECT_EQ(Model.KOff[5], 0.625);
  EXPECT_EQ(ControlNamed("KOff[5]").number, 0.625);
  EXPECT_EQ(
      TextBoxNamed("LoopsReportText").lines,
      (Texts{
          "Loop Unbalanced 1: K(forward)=5.6250e+02 K(back)=6.2500e+02 Variable rate =5.6250e-01: Change to "
          "6.2500e-01 to maintain reversibility",
          "Loop Balanced 1: K(forward)=6.2500e+02 K(back)=6.2500e+02 Variable rate=6.2500e-01"}));
  popups.clear();
  TypeOnly("KOff[5]", "0.7");
  answers = {true};
  PressCommand("FxnLoopsDone");
  EXPECT_EQ(PopupTexts(), Texts{Question}) << "a typed rate counts";
  EXPECT_EQ(Model.KOff[5], 0.625);
  PressCommand("FxnLoopConstraintsButton");
  EXPECT_TRUE(TextBoxNamed("LoopsReportText").lines.empty());
  EXPECT_EQ(popups.size(), 1U);
}

/// Returns the report on the loop 1, 2, 3 of the table, or 1, 2, 7, 6 of the grid, after a yes.
Texts ReportAfterYes(bool grid, int from, int to, std::deque<bool>& answers) {
  SetLoop(1, grid ? std::initializer_list<int>{1, 2, 7, 6} : std::initializer_list<int>{1, 2, 3}, from, to);
  Model.ModelIs2D = grid ? 1 : 0;
  WriteAllControls();
  answers = {true};
  PressCommand("FxnLoopsReport");
  Texts lines = TextBoxNamed("LoopsReportText").lines;
  PressCommand("FxnLoopsReport");  // balanced now: one line more, no question
  lines.push_back(TextBoxNamed("LoopsReportText").lines.back());
  return lines;
}

TEST_F(ConstraintPanelsTest, TheWordsOfTheReportDifferByFormAndDirection) {
  const std::string unbalanced = "Loop Unbalanced 1: K(forward)=";
  const std::string balanced = "Loop Balanced 1: K(forward)=";
  const std::string change = " to maintain reversibility";
  for (const auto& [from, to] : {std::pair{1, 2}, {2, 3}, {3, 1}}) {
    Model.TableRate[from][to] = 2.0F;
    Model.TableRate[to][from] = 1.0F;
  }
  EXPECT_EQ(
      ReportAfterYes(false, 3, 1, answers),
      (Texts{unbalanced + "8.0000e+00 K(back)=1.0000e+00 Variable rate=2.0000e+00: Change to 2.5000e-01" +
                 change,
             balanced + "1.0000e+00 K(back)=1.0000e+00 Variable rate=2.5000e-01 (Corrected)",
             balanced + "1.0000e+00 K(back)=1.0000e+00 Variable rate=2.5000e-01: Change to 2.5000e-01" +
                 change}));
  Model.TableRate[3][1] = 2.0F;
  EXPECT_EQ(
      ReportAfterYes(false, 1, 3, answers),
      (Texts{unbalanced + "8.0000e+00 K(back)=1.0000e+00 Variable rate =1.0000e+00: Change to 8.0000e+00" +
                 change,
             balanced + "8.0000e+00 K(back)=8.0000e+00 Variable rate=8.0000e+00(Corrected)",
             balanced + "8.0000e+00 K(back)=8.0000e+00 Variable rate =8.0000e+00: Change to 8.0000e+00" +
                 change}));
  SetSquare();
  EXPECT_EQ(
      ReportAfterYes(true, 1, 6, answers),
      (Texts{
          unbalanced + "1.0000e+04 K(back)=6.2500e+02 Variable rate =5.0000e+00: Change to 8.0000e+01" +
              change,
          balanced + "1.0000e+04 K(back)=1.0000e+04 Variable rate=8.0000e+01: Change to 8.0000e+01" + change,
          balanced + "1.0000e+04 K(back)=1.0000e+04 Variable rate =8.0000e+01: Change to 8.0000e+01" +
              change}));
}

TEST_F(ConstraintPanelsTest, TheReportNamesTheFaultOfALoop) {
  SetSquare();
  SetLoop(1, {1, 2, 7, 6}, 8, 7);
  SetLoop(2, {2, 1, 6, 7}, 1, 2);
  WriteAllControls();
  Enter("KOn[6]", "0");  // 2 to 7
  PressCommand("FxnLoopsReport");
  EXPECT_EQ(
      PopupTexts(),
      (Texts{
          "There is an error in the specification of the loop rate constants; forward rate =0.",
          "There is an error in the specification of the loop constraints; constrained rates aren't in loop.",
          "There is an error in the specification of the loop rate constants; backward rate=0."}));
  PressCommand("FxnLoopConstraintsButton");
  PressCommand("FxnLoopsDone");
  EXPECT_EQ(popups.size(), 5U);
  EXPECT_EQ(popups.back(), (SeenPopup{"! Error", MalformedLoop}));
}

}  // namespace
}  // namespace zelvane
