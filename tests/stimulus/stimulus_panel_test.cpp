// The stimulus panel, used as a user does.
#include <sstream>

#include "model/model_events.h"
#include "stimulus/stimulus.h"
#include "stimulus/stimulus_file.h"
#include "stimulus/stimulus_store.h"
#include "support/drive_test.h"
#include "support/pressing.h"

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
  const std::string automatic = "AutoValue AutoStart AutoStop AutoDrugOrVolt AutoFilterOn ";
  const std::string manual =
      "StepAmp StepStart StepStop StepDuration StepRamp StepRiseTau StepDecayTau TrainCount TrainDelay "
      "TrainInterval TrainExpFlag TrainRiseFlag ";
  const std::string exponential = "ExpStart ExpOffset ExpAmp1 ExpTau1 ExpComponents ExpRiseFlag ";
  const auto open = [&] {
    std::istringstream names(automatic + manual + exponential + "ExpAmp2 ExpTau2 ExpRiseTau FilterFc");
    std::string found;
    for (std::string name; names >> name;) found += ControlNamed(name).dimmed ? "" : name + ' ';
    return found;
  };
  Stimulus.StimFromFile = 1;
  for (const auto& [mode, parameters] : {std::pair{"USER", std::string()},
                                         {"AUTOMATIC", automatic + "FilterFc "},
                                         {"MANUAL", manual + "FilterFc "},
                                         {"EXPONENTIAL", exponential + "FilterFc "}}) {
    Enter("StimMode", mode);
    EXPECT_EQ(open(), parameters) << mode;
  }
  Enter("ExpComponents", "2");
  EXPECT_EQ(open(), exponential + "ExpAmp2 ExpTau2 FilterFc ");
  PressCommand("ExpRise");
  EXPECT_EQ(open(), exponential + "ExpAmp2 ExpTau2 ExpRiseTau FilterFc ");
}

using StimulusScreenTest = DriveTest;

TEST_F(StimulusScreenTest, OpeningShowsTheProfileOfTheAutomaticStep) {
  EXPECT_EQ(
      Told("enter AutoDrugOrVolt 1; enter StimTarget 4; press FxnStimulusButton; panels; get StimTarget; "
           "control StimSweepLength"),
      (Values{{"StimulusPanel"}, 0, "1.024e+02ms"}));
  const Graph& graph = GraphNamed("StimulusPanel");
  EXPECT_EQ(graph.y.title, "Voltage (V)");
  EXPECT_EQ(graph.plots.front().y.size(), 10240U);
  EXPECT_NEAR(graph.plots.front().step, 0.01, 1e-9);
  EXPECT_EQ(ShownText(ControlNamed("StimTarget")), "Voltage");
  Press(*FindCommand("FxnStimDone"));
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

TEST_F(StimulusScreenTest, DurationAndStopFollowEachOther) {
  EXPECT_EQ(Told("press FxnStimulusButton; enter StimMode MANUAL; enter StepStart 10; control StepDuration; "
                 "enter StepDuration 5; get StepStop; control StepStop; enter StepDuration 1e300; "
                 "control StepDuration"),
            (Values{89, 15, 15, "This duration is too long.", 5}));
}

TEST_F(StimulusPanelTest, TrainReadoutsFollowTheFields) {
  Enter("StimMode", "MANUAL");
  Enter("TrainCount", "20");
  Enter("TrainInterval", "25");
  EXPECT_EQ(ShownText(ControlNamed("TrainLength")), "500");
  EXPECT_EQ(ShownText(ControlNamed("TrainFrequency")), "40");
  Enter("TrainInterval", "-1");
  EXPECT_EQ(ShownText(ControlNamed("TrainFrequency")), "");
  Stimulus.TrainInterval = std::nanf("");
  StimPanelRefresh();
  EXPECT_EQ(ControlNumber("TrainInterval"), 1.0);
}

TEST_F(StimulusPanelTest, ARebuildShowsTheNewStimulus) {
  PressCommand("FxnStimulusButton");
  Stimulus.AutoValue = 0.25F;  // as a model file does
  Stimulus.AutoStart = 0.0F;
  StimPanelRefresh();
  Outcome shown = Outcome::Done;
  ModelFileCameIn.Tell(shown);
  EXPECT_EQ(ShownPlot().y[5], 0.25F);
}

// -- USER mode --

TEST_F(StimulusPanelTest, WithoutAFileTheModeGoesBackToAutomaticAndElseKeepsTheFile) {
  Enter("StimMode", "USER");  // and cancels the dialog
  EXPECT_EQ(fileRequests.at(0).title, "Read Stimulus Profile");
  EXPECT_EQ(fileRequests[0].filter, "*.stm");
  EXPECT_TRUE(popups.empty()) << "a cancelled dialog says nothing";
  EXPECT_EQ(ShownText(ControlNamed("StimMode")), "AUTOMATIC");
  EXPECT_FALSE(ControlNamed("AutoValue").dimmed);
  const std::string good = folder.File("good.stm");
  Stimulus.ScriptRunning = 1;  // does not ask about the length and interval of a file
  Stimulus.Profile[1][0] = 2.0F;
  ASSERT_EQ(StimFileWrite(good, 10), Outcome::Done);
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

TEST_F(StimulusPanelTest, AFileWithoutItsLastProfileTellsWhatTheProfilesHold) {
  Stimulus.ScriptRunning = 1;
  std::fill_n(Stimulus.Profile[1].begin(), 10, 2.0F);
  std::fill_n(Stimulus.Profile[2].begin(), 10, 2.0F);
  const std::string path = folder.File("short.stm");
  ASSERT_EQ(StimFileWrite(path, 10), Outcome::Done);
  std::filesystem::resize_file(path, 8 + 24 * 10);
  const std::string start = "short.stm ends before its last profile: ";
  using Case = std::tuple<int, int, float, const char*>;
  for (const auto& [mode, volts, drug1, left] :
       {Case{StimAutomatic, 0, 0.0F,
             "the automatic step is in voltage and Drug1 again, the other profiles hold what was read."},
        Case{StimAutomatic, 1, 2.0F,
             "the automatic step is in the voltage again, the other profiles hold what was read."},
        Case{StimManual, 0, 2.0F, "the profiles hold what was read, followed by zeros."}}) {
    Stimulus.StimMode = mode;
    Stimulus.AutoDrugOrVolt = volts;
    StimPanelRefresh();
    notes.clear();
    EXPECT_EQ(OpenStimulusNamed(path), Outcome::Failed);
    EXPECT_EQ(notes, Texts{start + left});
    EXPECT_EQ(Stimulus.Profile[1][0], drug1);
    EXPECT_EQ(Stimulus.Profile[2][0], 2.0F);
  }
  choices = {path};
  notes.clear();
  Enter("StimMode", "USER");
  EXPECT_EQ(notes.size(), 1U);
  EXPECT_EQ(Stimulus.StimMode, StimAutomatic);
}

TEST_F(StimulusPanelTest, TheFifthModeSaysSoAndBecomesUser) {
  Enter("StimMode", "5");
  EXPECT_EQ(PopupTexts(),
            Texts{"This option will be available soon/it is undergoing development and testing."});
  EXPECT_EQ(Stimulus.StimMode, StimUser);
  EXPECT_EQ(ShownText(ControlNamed("StimMode")), "USER");
}

// -- The table --

TEST_F(StimulusScreenTest, TheTableHoldsAGroupAColumnFromColumnTwo) {
  const std::string last = "cell MultiStimTable 6 50; get MultiStimTable[48][5]; ";
  EXPECT_EQ(
      Told(
          "cell MultiStimTable 1 1; cell MultiStimTable 6 1; enter-cell MultiStimTable 6 50 12.5; " + last +
          "enter-cell MultiStimTable 3 2 0.5; enter-cell MultiStimTable 1 2 1e300; enter-cell MultiStimTable 2 1 5; "
          "press FxnClearMultiStim; " +
          last + "cell MultiStimTable 3 2"),
      (Values{"Concentration (M)", "Duration (ms)", 12.5, 12.5, 12.5, 0.5,
              "This value is too large for the table.", 0, "Change/sweep (M)", 0, 0, 0}));
}

}  // namespace
}  // namespace zelvane
