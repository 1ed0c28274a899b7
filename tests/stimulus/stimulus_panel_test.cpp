// The stimulus panel, pressed as a user does.
#include <cmath>
#include <set>

#include "model/model_store.h"
#include "screen/screen.h"
#include "stimulus/stimulus.h"
#include "stimulus/stimulus_file.h"
#include "stimulus/stimulus_store.h"
#include "support/pressing.h"
#include "support/store_test.h"

namespace zelvane {
namespace {

class StimulusPanelTest : public PanelTest {
 protected:
  StimulusPanelTest() {
    ShowTask("MainPanel");
    StimPanelRefresh();
    StimRebuild();
  }

  static const Plot& ShownPlot() { return GraphNamed("StimulusPanel").plots.front(); }
};

TEST_F(StimulusPanelTest, OnlyTheParametersOfTheModeCanBeEdited) {
  using Names = std::set<std::string>;
  const Names automatic{"AutoValue", "AutoStart", "AutoStop", "AutoDrugOrVolt", "AutoFilterOn"};
  const Names manual{"StepAmp",    "StepStart",     "StepStop",     "StepDuration",
                     "StepRamp",   "StepRiseTau",   "StepDecayTau", "TrainCount",
                     "TrainDelay", "TrainInterval", "TrainExpFlag", "TrainRiseFlag"};
  const Names exponential{"ExpStart", "ExpOffset", "ExpAmp1", "ExpTau1", "ExpComponents", "ExpRiseFlag"};
  const Names rest{"ExpAmp2", "ExpTau2", "ExpRiseTau", "FilterFc"};
  const auto expectOpen = [&](const Names& open) {
    for (const Names& names : {automatic, manual, exponential, rest}) {
      for (const std::string& name : names) {
        EXPECT_EQ(ControlNamed(name).dimmed, !open.contains(name)) << name;
      }
    }
  };
  const auto with = [](Names names, std::initializer_list<const char*> more) {
    names.insert(more.begin(), more.end());
    return names;
  };
  Stimulus.StimFromFile = 1;
  for (const auto& [mode, open] : {std::pair{"USER", Names{}},
                                   {"AUTOMATIC", with(automatic, {"FilterFc"})},
                                   {"MANUAL", with(manual, {"FilterFc"})},
                                   {"EXPONENTIAL", with(exponential, {"FilterFc"})}}) {
    SCOPED_TRACE(mode);
    Enter("StimMode", mode);
    expectOpen(open);
  }
  Enter("ExpComponents", "2");
  expectOpen(with(exponential, {"FilterFc", "ExpAmp2", "ExpTau2"}));
  PressCommand("ExpRise");
  expectOpen(with(exponential, {"FilterFc", "ExpAmp2", "ExpTau2", "ExpRiseTau"}));
}

TEST_F(StimulusPanelTest, OpeningShowsTheProfileOfTheAutomaticStep) {
  Stimulus.AutoDrugOrVolt = 1;
  Stimulus.StimTarget = 4;
  PressCommand("FxnStimulusButton");
  EXPECT_TRUE(PanelVisible("StimulusPanel"));
  EXPECT_EQ(Screen.PanelTag, "ST");
  EXPECT_EQ(Stimulus.StimTarget, 0);
  EXPECT_EQ(ShownText(ControlNamed("StimTarget")), "Voltage");
  EXPECT_EQ(GraphNamed("StimulusPanel").y.title, "Voltage (V)");
  EXPECT_EQ(ShownPlot().y.size(), 10240U);
  EXPECT_NEAR(ShownPlot().step, 0.01, 1e-9);
  EXPECT_EQ(ShownText(ControlNamed("StimSweepLength")), "1.024e+02ms");
  PressCommand("FxnStimDone");
  EXPECT_FALSE(PanelVisible("StimulusPanel"));
  EXPECT_EQ(Screen.PanelTag, "MN");
}

TEST_F(StimulusPanelTest, TheAutomaticStepFollowsEveryField) {
  PressCommand("FxnStimulusButton");
  Enter("AutoValue", "0.001");
  Enter("AutoStart", "2");
  Enter("AutoStop", "3");
  EXPECT_EQ(ShownPlot().y[199], 0.0F);
  EXPECT_EQ(ShownPlot().y[200], 0.001F);
  EXPECT_EQ(ShownPlot().y[300], 0.0F);
  ASSERT_EQ(TypeInto(ControlNamed("AutoValue"), "0.1"), "");
  PressCommand("AutoDrugVoltage");
  EXPECT_EQ(Stimulus.StimTarget, 0);
  EXPECT_EQ(ShownPlot().y[200], 0.1F) << "a typed value reaches the next command";
}

TEST_F(StimulusPanelTest, TheTargetNamesTheAxis) {
  Model.DrugLabel[2] = "GABA";
  for (const auto& [target, title] :
       {std::pair("Drug1", "Drug1 (M)"), std::pair("Drug2", "GABA (M)"), std::pair("0", "Voltage (V)")}) {
    Enter("StimTarget", target);
    EXPECT_EQ(GraphNamed("StimulusPanel").y.title, title);
  }
  Enter("StimLogAxis", "1");
  EXPECT_TRUE(GraphNamed("StimulusPanel").y.log);
}

TEST_F(StimulusPanelTest, DurationAndStopFollowEachOther) {
  Enter("StimMode", "MANUAL");
  Enter("StepStart", "10");
  EXPECT_EQ(ControlNumber("StepDuration"), 89.0);
  Enter("StepDuration", "5");
  EXPECT_EQ(Stimulus.StepStop, 15.0F);
  EXPECT_EQ(ControlNumber("StepStop"), 15.0);
  Enter("StepDuration", "1e300");
  EXPECT_EQ(PopupTexts(), std::vector<std::string>{"This duration is too long."});
  EXPECT_EQ(ControlNumber("StepDuration"), 5.0);
}

TEST_F(StimulusPanelTest, TrainReadoutsFollowTheFields) {
  Enter("StimMode", "MANUAL");
  Enter("TrainCount", "20");
  Enter("TrainInterval", "25");
  EXPECT_EQ(ShownText(ControlNamed("TrainLength")), "500");
  EXPECT_EQ(ShownText(ControlNamed("TrainFrequency")), "40");
  Enter("TrainInterval", "-1");
  EXPECT_EQ(ShownText(ControlNamed("TrainFrequency")), "");
  for (const float interval : {0.0F, -1.0F, std::nanf("")}) {
    Stimulus.TrainInterval = interval;
    StimPanelRefresh();
    EXPECT_EQ(ControlNumber("TrainInterval"), 1.0);
  }
}

// -- USER mode --

TEST_F(StimulusPanelTest, WithoutAFileTheModeGoesBackToAutomaticAndElseKeepsTheFile) {
  Enter("StimMode", "USER");  // and cancels the dialog
  ASSERT_EQ(fileRequests.size(), 1U);
  EXPECT_EQ(fileRequests[0].title, "Read Stimulus Profile");
  EXPECT_EQ(fileRequests[0].filter, "*.stm");
  EXPECT_TRUE(popups.empty()) << "a cancelled dialog says nothing";
  EXPECT_EQ(ShownText(ControlNamed("StimMode")), "AUTOMATIC");
  EXPECT_FALSE(ControlNamed("AutoValue").dimmed);
  const TemporaryFolder folder;
  const std::string good = folder.File("good.stm");
  Stimulus.ScriptRunning = 1;  // a file's length and interval are not asked for
  Stimulus.Profile[1][0] = 2.0F;
  ASSERT_TRUE(StimFileWrite(good, 10));
  StimRebuild();
  for (const std::string& file : {folder.File("none.stm"), good}) {
    EXPECT_EQ(Stimulus.StimMode, StimAutomatic);
    EXPECT_EQ(Stimulus.Profile[1][0], 0.0F);
    choices = {file};
    Enter("StimMode", "USER");
  }
  EXPECT_EQ(Stimulus.StimMode, StimUser);
  StimRebuild();
  EXPECT_EQ(Stimulus.Profile[1][0], 2.0F);
  EXPECT_EQ(fileRequests.size(), 3U) << "a read file is asked for once";
}

TEST_F(StimulusPanelTest, TheFifthModeSaysSoAndBecomesUser) {
  Enter("StimMode", "5");
  EXPECT_EQ(PopupTexts(),
            std::vector<std::string>{
                "This option will be available soon/it is undergoing development and testing."});
  EXPECT_EQ(Stimulus.StimMode, StimUser);
  EXPECT_EQ(ShownText(ControlNamed("StimMode")), "USER");
}

// -- The table --

TEST_F(StimulusPanelTest, TheTableHoldsAGroupAColumnFromColumnTwo) {
  Table& table = TableNamed("MultiStimTable");
  EXPECT_EQ(CellText(table, 1, 1), "Concentration (M)");
  EXPECT_EQ(CellText(table, 6, 1), "Duration (ms)");
  ASSERT_EQ(EnterCell(table, 6, 50, "12.5"), "");
  EXPECT_EQ(Stimulus.MultiStimTable[48][5], 12.5F);
  ASSERT_EQ(EnterCell(table, 1, 2, "1e300"), "");
  EXPECT_EQ(popups.size(), 1U);
  EXPECT_EQ(CellText(table, 1, 2), "0");
  ASSERT_EQ(EnterCell(table, 2, 1, "5"), "");
  EXPECT_EQ(CellText(table, 2, 1), "Change/sweep (M)");
  PressCommand("FxnClearMultiStim");
  EXPECT_EQ(CellText(table, 6, 50), "0");
  EXPECT_EQ(Stimulus.MultiStimTable[48][5], 0.0F);
}

}  // namespace
}  // namespace zelvane
