// The rules for every control: a right click explains, a commit stores and acts, and no other action does
// anything.
#include <cmath>

#include "support/store_test.h"

namespace zelvane {
namespace {

int commits = 0;
double previousSeen = 0.0;
int indexSeen = 0;

void Note(const ControlEvent& event) {
  ++commits;
  previousSeen = event.previous;
  indexSeen = event.index;
}

Refusal nestedRefusal;
void PressWhileBusy(const ControlEvent&) {
  nestedRefusal = Press(ControlNamed("Plain"));
  Press(ControlNamed("Stop"));
}

void DimPrecision() {
  SetDimmed("Precision", Model.SimulatorKind != AdaptiveIntegrator);
}

// clang-format off
constexpr ControlDecl Controls[] = {
    {"NumPoints",     ControlKind::Number, "Points",   "", "%d",   "FxnNumPoints", Note, "Number of time points."},
    {"Precision",     ControlKind::Number, "Tol.",     "", "%.2e", "FxnPrecision", Note, "Tolerance."},
    {"SimulatorKind", ControlKind::Choice, "Simulator", "", "%d",  "FxnKind",      Note, "Which.", 0, 0, "fixed|mc|adaptive"},
    {"StateOn[%d]",   ControlKind::Switch, "On %d",    "", "",     "OnOff_State_%d", Note, "Make State %d available", 1, 20},
    {"ModelTitle",    ControlKind::Text,   "Title",    "", "",     "FxnTitle",     Note, "Title."},
    {"Plain",         ControlKind::Button, "Plain",    "", "",     "FxnPlain",     Note, "A button."},
    {"Busy",          ControlKind::Button, "Busy",     "", "",     "FxnBusy",      PressWhileBusy, "A long command."},
    {"Stop",          ControlKind::Button, "Stop",     "", "",     "FxnStop",      Note, "Stops.", 0, 0, "", 0, true},
};
// clang-format on

class ControlsTest : public StoreTest {
 protected:
  ControlsTest() {
    AddPanel({"TestPanel", "Test", "", DimPrecision});
    AddControls("TestPanel", "run", Controls);
    WriteAllControls();
    commits = 0;
  }
};

TEST_F(ControlsTest, ATypedValueWaitsForACommitOrForACommandThatReadsThePanel) {
  Control& control = ControlNamed("NumPoints");
  ASSERT_EQ(TypeInto(control, "500"), "");
  EXPECT_EQ(Model.NumPoints, 10240);
  ReadControls("TestPanel", "run");
  EXPECT_EQ(Model.NumPoints, 500);
  EXPECT_EQ(commits, 0) << "reading a panel runs nothing";
  ASSERT_EQ(TypeInto(control, "600"), "");
  Commit(control);
  EXPECT_EQ(Model.NumPoints, 600);
  EXPECT_EQ(commits, 1);
  EXPECT_EQ(previousSeen, 500.0);
}

TEST_F(ControlsTest, ARefusedValueLeavesWhatTheFieldShowed) {
  for (const auto& [name, text] :
       {std::pair{"NumPoints", "2.5"}, {"SimulatorKind", "3"}, {"StateOn[1]", "2"}, {"Plain", "1"}}) {
    const double shown = ControlNamed(name).number;
    EXPECT_NE(TypeInto(ControlNamed(name), text), "") << name << ' ' << text;
    EXPECT_EQ(ControlNamed(name).number, shown);
  }
}

TEST_F(ControlsTest, ShowingAndReadingBackLosesNoDigit) {
  Model.Precision = 0.00012345678F;
  const float exact = Model.Precision;
  WriteControls("TestPanel", "run");
  EXPECT_EQ(ShownText(ControlNamed("Precision")), "1.23e-04");
  ReadControls("TestPanel", "run");
  EXPECT_EQ(Model.Precision, exact);
}

TEST_F(ControlsTest, APressFlipsASwitchAndStepsAChoice) {
  Press(*FindCommand("OnOff_State_7"));
  EXPECT_EQ(Model.StateOn[7], 1);
  EXPECT_EQ(indexSeen, 7);
  Press(*FindCommand("OnOff_State_7"));
  EXPECT_EQ(Model.StateOn[7], 0);
  Press(*FindCommand("FxnKind"));
  EXPECT_EQ(Model.SimulatorKind, AdaptiveIntegrator);
  Press(*FindCommand("FxnKind"));
  EXPECT_EQ(Model.SimulatorKind, FixedStepIntegrator);
  EXPECT_EQ(ShownText(ControlNamed("SimulatorKind")), "fixed");
}

TEST_F(ControlsTest, DimmingFollowsTheStoreAndADimmedControlRefuses) {
  EXPECT_TRUE(ControlNamed("Precision").dimmed);
  EXPECT_EQ(Commit(ControlNamed("Precision")), "dimmed");
  EXPECT_EQ(commits, 0);
  ASSERT_EQ(TypeInto(ControlNamed("SimulatorKind"), "adaptive"), "");
  Commit(ControlNamed("SimulatorKind"));
  EXPECT_FALSE(ControlNamed("Precision").dimmed);
  Model.SimulatorKind = FixedStepIntegrator;
  WriteControls("TestPanel", "run");
  EXPECT_TRUE(ControlNamed("Precision").dimmed);
}

TEST_F(ControlsTest, AFieldShownInAnotherUnitKeepsItsCountUntilTheUserTypes) {
  ControlDecl decl{"NumRuns", ControlKind::Number, "Length", "ms", "%g", "FxnLength", Note, "Length."};
  decl.toShown = [](double count) { return count * 0.3; };
  decl.toStored = [](double ms) { return std::trunc(ms / 0.3); };
  AddControl("TestPanel", "lengths", decl);
  Control& control = ControlNamed("NumRuns");
  Model.NumRuns = 7;
  WriteControls("TestPanel", "lengths");
  EXPECT_FLOAT_EQ(static_cast<float>(control.number), 2.1F);
  ReadControls("TestPanel", "lengths");
  EXPECT_EQ(Model.NumRuns, 7) << "2.1 / 0.3 is a bit less than 7";
  ASSERT_EQ(TypeInto(control, "2"), "");
  ReadControls("TestPanel", "lengths");
  EXPECT_EQ(Model.NumRuns, 6);
  EXPECT_FLOAT_EQ(static_cast<float>(control.number), 1.8F);
  EXPECT_NE(TypeInto(control, "1e12"), "") << "no count can hold it";
}

TEST_F(ControlsTest, WhileACommandRunsOnlyTheStopButtonActs) {
  Press(ControlNamed("Busy"));
  EXPECT_EQ(nestedRefusal, "a run is in progress");
  EXPECT_EQ(commits, 1);
  EXPECT_EQ(Screen.busy, 0);
}

TEST_F(ControlsTest, OnlyTheFourFileErrorsAreTold) {
  for (const int code : {99, 100, 101, 102, 103, 104}) FileErrorPopup(code);
  ASSERT_EQ(popups.size(), 4U);
  EXPECT_EQ(popups[3], (SeenPopup{"! File error", "IO Error 103: Wrong File Format"}));
}

TEST_F(ControlsTest, TaskPanelsReplaceOneAnotherAndComeBackOnce) {
  AddPanel({"MainPanel", "Main", "MN"});
  AddPanel({"StimulusPanel", "Stimulus", "ST"});
  AddPanel({"AnalysisPanel", "Analysis", "AN"});
  ShowTask("MainPanel");
  ShowTask("StimulusPanel");
  ShowTask("AnalysisPanel");
  EXPECT_FALSE(PanelVisible("MainPanel"));
  for (const auto& [left, tag, shown] : {std::tuple{"AnalysisPanel", "ST", "StimulusPanel"},
                                         {"AnalysisPanel", "ST", "StimulusPanel"},  // it is not in front
                                         {"StimulusPanel", "MN", "MainPanel"}}) {
    LeaveTask(left);
    EXPECT_EQ(Screen.PanelTag, tag);
    EXPECT_TRUE(PanelVisible(shown));
    EXPECT_FALSE(PanelVisible(left));
  }
}

}  // namespace
}  // namespace zelvane
