// FitPanel: what a reading changes, loading by line and by name, cursors, log and export.
#include "fit/fit_panel.h"

#include <string>
#include <vector>

#include "fit/fit_export.h"
#include "fit/fit_store.h"
#include "fit/wave_load.h"
#include "fit/wave_set_panels.h"
#include "model/model_store.h"
#include "parameters/parameters_store.h"
#include "stimulus/stimulus_file.h"
#include "stimulus/stimulus_store.h"
#include "support/pressing.h"
#include "trace/trace_store.h"
#include "trace/trace_write.h"

namespace zelvane {
namespace {

class FitPanelTest : public PanelTest {
 protected:
  FitPanelTest() {
    Model.ADInterval = 0.125F;
    Model.NumPoints = 1000;
    for (std::size_t i = 0; i < 1000; ++i) Trace.SimTrace[i] = i < 100 ? 0.0F : 8.0F;
    for (const char* name : {"a", "b"}) {
      EXPECT_EQ(TraceAbfWrite(folder.File(std::string(name) + ".abf")), Outcome::Done);
      EXPECT_EQ(StimFileWrite(folder.File(std::string(name) + ".stm"), 1000), Outcome::Done);
    }
    PressCommand("FxnWaveFit");
  }
};

TEST_F(FitPanelTest, AReadingKeepsItsLimitsAndGivesAllWaveformsThePositionsOnDisplay) {
  Enter("NumFitPts[1]", "2000000");
  EXPECT_EQ(Fit.Waveform[15].NumFitPts, 1'000'000);
  Enter("FitAlignRange", "7");
  EXPECT_EQ(Fit.FitAlignRange, 1);
  Enter("FitAlignChoice", "1");
  Enter("NumFitPts[3]", "70");
  EXPECT_EQ(Fit.Waveform[4].NumFitPts, 1'000'000);
  Enter("SimFitStart[1]", "999997");
  Enter("FitPeakAve", "5");
  EXPECT_EQ(Fit.FitPeakAve, 3) << "the window ends within the array of a waveform";
}

TEST_F(FitPanelTest, TheTypedToleranceStaysWhenAnotherFitUsesItsOwn) {
  Enter("FitTolerance", "1e-7");
  EXPECT_EQ(Parameters.FitTolerance, 1e-7);
  Parameters.FitTolerance = 1.0;
  ReadFitPanel();
  EXPECT_EQ(Fit.WaveFitTolerance, 1e-7);
}

TEST_F(FitPanelTest, LinesWaitForTheFirstAndABadStimulusDropsThePair) {
  PressCommand("FxnFitDataTrace2");
  EXPECT_EQ(popups.back().text, "Load data waveform-1 first.");
  Model.ADInterval = 1.0F;
  WriteAllControls();
  choices = {folder.File("a.abf"), folder.File("a.stm")};
  PressCommand("FxnFitDataTrace1");
  EXPECT_EQ(Fit.Wave[1].StimName, "a.stm");
  EXPECT_EQ(ControlNumber("ADInterval"), 0.125) << "a session reads the interval from its panel";
  EXPECT_EQ(Fit.WaveStimInterval, 0.125F);
  PressCommand("FxnFitNormalized");
  EXPECT_EQ(Fit.Wave[1].WaveData[500], 1.0F);
  EXPECT_TRUE(ControlNamed("FitNormalized").dimmed);
  PressCommand("FxnFitDataTrace2");
  EXPECT_EQ(popups.back().text,
            "Do you want to load a new waveform after normalization of previously loaded waveforms?");
  EXPECT_EQ(Fit.Wave[2].DataOn, 0);
  PressCommand("FxnFitStimulus1");
  choices = {folder.File("a.abf")};
  PressCommand("FxnFitStimulus1");
  EXPECT_EQ(Fit.FitWaveCount, 0);
  EXPECT_EQ(Fit.Wave[1].DataName, "");
}

TEST_F(FitPanelTest, DroppedFilesArePairedByName) {
  const std::vector<std::string> files = {folder.File("a.stm"), folder.File("b.abf"), folder.File("a.abf"),
                                          folder.File("c.stm")};
  EXPECT_EQ(AddWaveFiles(files), Outcome::Failed);
  EXPECT_EQ(Fit.Wave[1].DataName, "b.abf");
  EXPECT_EQ(Fit.Wave[2].StimName, "a.stm");
  EXPECT_EQ(Fit.FitShowCurves, 2);
  EXPECT_EQ(notes, (Texts{"c.stm: no loaded recording without a stimulus has its name.",
                          "b.abf: no stimulus file (.stm) has its name. Load its stimulus on line 1."}));
}

TEST_F(FitPanelTest, AcceptedCursorsAreTheFourStarts) {
  AddWaveFiles(std::vector<std::string>{folder.File("a.abf"), folder.File("a.stm")});
  Graph& graph = GraphNamed("FitPanel.data");
  EXPECT_NE(MoveCursor(graph, 1, 40.0, {}), "") << "they move only between two presses";
  PressCommand("FitPositionButton");
  EXPECT_EQ(ShownText(ControlNamed("FitPositionButton")), "__Done");
  MoveCursor(graph, 1, 40.0, {});
  MoveCursor(graph, 3, 96.0, {});
  EXPECT_EQ(graph.cursors[3].x, 136.0) << "the end of a window follows its start";
  PressCommand("FitPositionButton");
  const FitWindow& window = Fit.Waveform[1];
  EXPECT_EQ(window.DataBaselineStart, 5.0F);
  EXPECT_EQ(window.SimBaselineStart, 5.0F);
  EXPECT_EQ(window.DataFitStart, 12.0F);
  EXPECT_EQ(window.SimFitStart, 12.0F);
  EXPECT_EQ(window.NumAlignPts, 40);
}

TEST_F(FitPanelTest, TheLogKeepsTheNewestLinesAtTheTop) {
  for (int k = 0; k < 10'005; ++k) AddFitLogLine(std::to_string(k));
  const std::vector<std::string>& lines = LinesOf(TextBoxNamed("FitLogBox"));
  EXPECT_EQ(lines.size(), 10'000U);
  EXPECT_EQ(lines.front(), "10004");
  EXPECT_EQ(lines.back(), "5");
}

TEST_F(FitPanelTest, AnExportHasThirtyOneColumns) {
  Fit.Wave[1].FitX[1] = 8.0F;
  Fit.Wave[1].FitData[1] = 2.0F;
  Fit.Wave[15].FitSim[1] = -1.5F;
  ASSERT_EQ(ExportFitNamed(folder.File("x.fit"), 2), Outcome::Done);
  const std::string text = ReadWholeFile(folder.File("x.fit"));
  EXPECT_TRUE(text.starts_with("(ms),Data1,Fit1,Data2,")) << text;
  EXPECT_NE(text.find("Data15,Fit15\n0.000000, 0.000000, "), std::string::npos);
  EXPECT_NE(text.find("\n1.000000, 2.000000, 0.000000, "), std::string::npos);
  EXPECT_TRUE(text.ends_with(", 0.000000, -1.500000\n"));
}

}  // namespace
}  // namespace zelvane
