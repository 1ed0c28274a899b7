// AnalysisPanel, used as a user does, with recordings of other programs.
#include <fstream>
#include <iostream>
#include <sstream>

#include "analysis/analysis_fit_store.h"
#include "analysis/analysis_store.h"
#include "analysis/episodes.h"
#include "analysis/results_files.h"
#include "analysis/results_read.h"
#include "analysis/results_table.h"
#include "analysis/table_text.h"
#include "headless/commands/measure_command.h"
#include "model/model_store.h"
#include "platform/index.h"
#include "screen/popups.h"
#include "support/drive_test.h"

namespace zelvane {
namespace {

const std::string Steps = Recordings + "abf2/18702001-step.abf";

class AnalysisPanelTest : public DriveTest {
 protected:
  AnalysisPanelTest() { std::filesystem::copy_file(Steps, recording); }
  std::string Opened(const std::string& rest) {
    return "reply ok\nopen \"" + recording + "\"\npress Analysis\nenter FitMode 0\nenter BaselinePts 10\n" +
           "enter StartAnalysis 20\nenter PeakSearchPts 200\n" + rest;
  }
  std::string recording = folder.File("step.abf");
};

TEST_F(AnalysisPanelTest, AnalyzeAllGivesTheRowsOfTheCommandLine) {
  for (const int mode : {0, 1, 2, 3}) {
    SCOPED_TRACE(mode);
    Run(Opened(FormatText("enter AnalysisFitPts 100\nenter FitMode %d\npress AN_AutoAnalyzeButton\n", mode)));
    EXPECT_EQ(Trace.EpisodeIndex, 1);
    const std::string panel = TableCsv(FilledRows());
    EXPECT_EQ(std::count(panel.begin(), panel.end(), '\n'), 1 + Trace.EpisodeCount);
    EXPECT_EQ(FilledRows().back().measured[9], mode != 0) << "the time constant";
    MeasureOptions options;
    options.file = recording;
    options.fit = mode;
    options.fitPoints = 100;
    options.settings = {"StartAnalysis=20", FormatText("BaselinePts=%d", Analysis.BaselinePts),
                        FormatText("PeakSearchPts=%d", Analysis.PeakSearchPts)};
    std::ostringstream out;
    ASSERT_EQ(MeasureCommand(options, {out, std::cerr}), JobDone);
    EXPECT_EQ(out.str(), panel);
  }
}

TEST_F(AnalysisPanelTest, AWalkThroughTheEpisodesEndsAtTheStopSwitchOrTheLastEpisode) {
  const auto lines = Run(Opened("during 3 press FxnStopAn\npress AN_AutoAnalyzeButton\nget TableRow\n"));
  EXPECT_EQ(LastValue(lines), 3) << "two episodes were measured";
  Analysis.TableRow = 1;
  FrontEnd frontEnd;
  frontEnd.breathe = [](double finished) {
    if (finished > 0.0) RequestStop();  // as at the end of the time of a script
  };
  SetFrontEnd(frontEnd);
  EXPECT_EQ(AnalyzeAllEpisodes(), Outcome::Stopped);
  EXPECT_EQ(Analysis.TableRow, 2);
  SetFrontEnd({});
  const auto last = Run(Opened("key AnalysisPanel End\nget EpisodeIndex\npress AN_AnalyzeNextButton\n"));
  EXPECT_EQ(last.back()["text"], "You have reached the end of the file.");
  EXPECT_EQ(Trace.EpisodeIndex, Trace.EpisodeCount);
  EXPECT_EQ(Analysis.TableRow, 1);
}

TEST_F(AnalysisPanelTest, RowsThatCannotBeWrittenAreOfferedAtTheEndOfAScript) {
  const std::string refused = folder.File("step.res");
  const std::string other = folder.File("other.res");
  std::filesystem::create_directory(refused);
  const std::string script = Opened("press AN_AnalyzeButton\nanswer yes\npress SaveAnalysis\n");
  EXPECT_EQ(Run(script).back()["note"], "Rows of measures (1) were not written to " + refused + ".");
  Run(script + "answer yes\nchoose \"" + other + '"');
  EXPECT_NE(ReadWholeFile(other).find("step.abf"), std::string::npos);
}

TEST_F(AnalysisPanelTest, AClickOnAnEpisodeShowsItsSweepAndMeasuresItAgain) {
  Run(Opened(
      "press AN_AutoAnalyzeButton\nclick AnalysisTable 2 2\nget EpisodeIndex\nclick AnalysisTable 2 3\n"));
  EXPECT_EQ(Trace.EpisodeIndex, 2);
  EXPECT_EQ(TableNamed("AnalysisTable").markedRow, 2);
  EXPECT_EQ(ControlNumber("SectionNumber"), 2.0);
  EXPECT_GT(GraphNamed("AnalysisPanel").plots.size(), 1U) << "marks";
  EXPECT_EQ(Analysis.TableRow, Trace.EpisodeCount + 1) << "no row is added";
  EXPECT_EQ(ClickCell(TableNamed("AnalysisTable"), 1, 6), "");
  EXPECT_EQ(Trace.EpisodeIndex, 2) << "another column only selects";
  EXPECT_NE(Analysis.Measures.measured, 0U);
  Analysis.Rows[3].fileName = "other.abf";
  EXPECT_EQ(ClickCell(TableNamed("AnalysisTable"), 3, 3), "");
  EXPECT_EQ(Trace.EpisodeIndex, 2) << "a row of another file changes nothing";
}

TEST_F(AnalysisPanelTest, AnEpisodeThatCannotBeReadAgainIsNotAnalysed) {
  Run(Opened("press AN_AnalyzeButton\n"));
  std::filesystem::remove(recording);
  Analysis.Rows[1].episode = 2;
  const float peak = std::exchange(Analysis.Rows[1].value[5], 1.0F);
  EXPECT_NE(peak, 1.0F);
  for (const char* walk : {"AN_AutoAnalyzeButton", "AN_AnalyzeNextButton"}) {
    popups.clear();
    EXPECT_EQ(Press(*FindCommand(walk)), "");
    EXPECT_EQ(PopupTexts(), Texts{"IO Error 100: FileOpen failed"}) << walk;
  }
  EXPECT_EQ(ClickCell(TableNamed("AnalysisTable"), 1, 3), "");
  EXPECT_EQ(Analysis.Rows[1].value[5], 1.0F) << "its row keeps its values";
  EXPECT_EQ(Analysis.TableRow, 2);
  EXPECT_EQ(Trace.EpisodeIndex, 1);
}

TEST_F(AnalysisPanelTest, OnlyCommandsChangeResultsAndSavingWritesTheLastOnes) {
  const std::string move = "cursor AnalysisPanel 1 14000\nenter PeakAvePts 3\ncontrol Baseline\n";
  const auto lines = Run(Opened("press SaveAnalysis\npress AN_AnalyzeButton\ncontrol Baseline\n" + move +
                                "enter MeasureWhileMoving 1\n" + move +
                                "get Baseline\npress AN_AnalyzeButton\ncontrol Baseline\n"
                                "press AN_AutoAnalyzeButton\npress SaveAnalysis\nget MeasuresCount\n"));
  ASSERT_EQ(lines.size(), 8U);
  EXPECT_EQ(lines[1]["text"], "Nothing has been measured yet. Analyze a response first.");
  EXPECT_EQ(lines[3], lines[2]) << "the readout of the result";
  EXPECT_EQ(lines[4]["colour"], "mark");
  EXPECT_NE(lines[4]["value"], lines[2]["value"]) << "live";
  EXPECT_NEAR(lines[5]["value"].get<double>(), std::stod(lines[2]["value"].get<std::string>()), 1e-2);
  EXPECT_EQ(lines[6]["value"], lines[4]["value"]) << "what was live is what an analysis gives";
  EXPECT_FALSE(lines[6].contains("colour"));
  EXPECT_EQ(LastValue(lines), 1);
  EXPECT_NE(ReadWholeFile(folder.File("step.res")).find(FormatText("\", %d, 0, ", Trace.EpisodeCount)),
            std::string::npos)
      << "the last episode of the walk";
}

TEST_F(AnalysisPanelTest, ATableWaitsForTheEndOfAutosaveBeforeItReplacesTheRows) {
  Run(Opened("press AN_AnalyzeButton\npress AN_SaveTable\npress AN_AnalyzeButton\nset Autosave 1\n"));
  Model.Autosave = 1;
  EXPECT_EQ(ReadResultsTableNamed(folder.File("step.tbl")), Outcome::Refused);
  EXPECT_EQ(PopupTexts(), Texts{"Turn off autosave before reading or writing other datafiles."});
  EXPECT_EQ(Analysis.TableRow, 3);
  EXPECT_TRUE(Analysis.Rows[2].filled);
}

TEST_F(AnalysisPanelTest, AnOpenedRecordingIsShownWholeAndItsUnitsCanBeChosen) {
  const auto lines =
      Run(Opened("press AnalysisExpand\nenter AutoRescale 0\nreply ok\nopen \"" + recording +
                 "\"\nget AutoRescale\nget ViewedPoints\nenter TraceUnits mV\nget DisplayUnits\n"
                 "control Baseline\nenter TraceUnits Po\nget DisplayUnits\n"));
  ASSERT_EQ(lines.size(), 7U);
  EXPECT_EQ(lines[2]["value"], 1);
  EXPECT_EQ(lines[3]["value"], Model.NumPoints);
  EXPECT_EQ(lines[5]["label"], "Baseline (mV)");
  EXPECT_EQ(lines[4]["value"], 1) << "mV are no display units";
  EXPECT_EQ(lines[6]["value"], 3);
}

TEST_F(AnalysisPanelTest, TheCursorsOfTheMainPanelShowMeanAndVarianceBetweenThem) {
  Run(Opened("press FxnAnalysisDone\ncursor MainPanel 1 30\ncursor MainPanel 2 20\n"));
  double mean = 0.0;
  double variance = 0.0;
  constexpr int first = 400;  // 20 ms; cursor 1 is at sample 600
  for (int i = 0; i < 200; ++i) mean += static_cast<double>(Trace.SimTrace[Index(first + i)]) / 200.0;
  for (int i = 0; i < 200; ++i) {
    variance += std::pow(static_cast<double>(Trace.SimTrace[Index(first + i)]) - mean, 2) / 199.0;
  }
  EXPECT_EQ(ControlNamed("MeanBetweenCursors").text, FormatNumber("%.5g", mean));
  EXPECT_NEAR(ControlNumber("VarBetweenCursors"), variance, 1e-4 * variance);
  EXPECT_EQ(ControlNamed("MeanBetweenCursors").label, "Mean (pA)");
  EXPECT_EQ(Analysis.Measures.Baseline, 0.0F) << "no measure of the response";
}

TEST_F(AnalysisPanelTest, ATableWithoutItsModelAsksForItAndReadsOnWithThePresentOne) {
  const std::string table = folder.File("lone.tbl");
  WriteWholeFile(table, "TABLE\n" + folder.File("gone.mod") + "\n" + recording +
                            "\ntitles\n1\nstep.abf 2 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18\n");
  const auto lines = Run("reply ok\nopen \"" + table + "\"\nget ModelFileName\nget TableRow\n");
  EXPECT_EQ(lines.front()["title"], "Read Parameters: cannot open " + folder.File("gone.mod"));
  EXPECT_FALSE(lines[lines.size() - 2]["value"].get<std::string>().ends_with("gone.mod"));
  EXPECT_EQ(LastValue(lines), 2);
  EXPECT_EQ(Trace.TraceFileName, recording);
}

TEST_F(AnalysisPanelTest, CursorsAndFieldsMoveEachOther) {
  const auto lines = Run(
      "enter NumPoints 1000\nenter ADInterval 0.1\nset SimulatorKind 0\npress AcquireData\npress Analysis\n"
      "enter BaselinePts 2\nget BaselinePts\nenter BaselineStart 2.5\ncursor AnalysisPanel 1 40\n"
      "cursor AnalysisPanel 2 10\ncursor AnalysisPanel 3 100\ncursor AnalysisPanel 4 250\n"
      "set FracDecay 0.5\ncursor AnalysisPanel 9 77\nenter PeakSearchPts 95\nget PeakSearchPts\n");
  EXPECT_EQ(Analysis.BaselinePts, 20) << "2 ms";
  EXPECT_FLOAT_EQ(Analysis.BaselineStart, 4.0F);
  EXPECT_FLOAT_EQ(Analysis.StartAnalysis, 10.0F);
  EXPECT_FLOAT_EQ(Analysis.LatencyPos, 7.7F);
  EXPECT_FLOAT_EQ(Analysis.FracDecay, 0.5F) << "a value typed and not committed";
  EXPECT_EQ(LastValue(lines), 1000 - 100 - 10) << "a stretch past the end is cut";
  const Graph& graph = GraphNamed("AnalysisPanel");
  EXPECT_EQ(graph.cursors[1].x, 60.0) << "snapped back to cursor 1 plus the width";
  EXPECT_FALSE(graph.cursors[4].enabled);
}

TEST_F(AnalysisPanelTest, RangeCommandsFollowTheirRules) {
  for (const auto& [commands, right] :
       {std::pair{"press AnalysisExpand\n", 800.0},
        {"press AnalysisExpand\npress AnalysisCompress\n", 960.0},
        {"press AnalysisCompress\n", 1000.0},
        {"press FxnMenuZoomArea\ncursor AnalysisPanel 5 300 1\ncursor AnalysisPanel 6 120 -1\n"
         "press AnalysisZoom\n",
         300.0},
        {"press FxnMenuZoomArea\ncursor AnalysisPanel 6 120 -1\npress FxnMenuZoomArea\n"
         "cursor AnalysisPanel 5 300 1\npress AnalysisExpand\n",
         800.0}}) {
    Run(std::string("enter NumPoints 1000\nset SimulatorKind 0\npress AcquireData\npress Analysis\n") +
        "press AnalysisFullScale\n" + commands);
    EXPECT_EQ(ViewRange(GraphNamed("AnalysisPanel"), 'x').max, right) << commands;
  }
}

TEST_F(AnalysisPanelTest, WithoutATraceNothingIsMeasuredAndWithoutAFitItsColumnsAreInDoubt) {
  Run("press Analysis\npress AN_AnalyzeButton\npress AN_AutoAnalyzeButton\n");
  EXPECT_EQ(Analysis.TableRow, 1);
  const auto lines = Run(
      Opened("enter FitMode 1\nset FitStartPts 100000000\npress AN_AnalyzeButton\ncell AnalysisTable 1 8\n"
             "control FitAmp1\ncontrol AnalysisFitNote\n"));
  EXPECT_EQ(lines[lines.size() - 3]["value"], 0) << "as the result holds it";
  EXPECT_NE(TableNamed("AnalysisTable").doubt(1, 8), "");
  EXPECT_EQ(TableNamed("AnalysisTable").doubt(1, 4), "");
  EXPECT_EQ(TableNamed("AnalysisTable").doubt(2, 8), "") << "an empty row";
  EXPECT_EQ(lines[lines.size() - 2]["value"], "");
  EXPECT_EQ(lines.back()["value"], "No exponential fit ran.");
}

TEST_F(AnalysisPanelTest, AFitShowsItsResultsItsCurveAndItsResidual) {
  const auto lines =
      Run(Opened("enter FitMode 1\nenter AnalysisFitPts 100\nenter AnalysisParse 5\npress AN_AnalyzeButton\n"
                 "control AnalysisFitNote\ncontrol FitTau2\ncontrol AnalysisNormResidual\n"));
  EXPECT_EQ(lines[lines.size() - 3]["value"], "Converge");
  EXPECT_EQ(lines[lines.size() - 2]["value"], "") << "of one component";
  EXPECT_EQ(lines.back()["label"], "Residual (pA2)");
  const FittedCurve& curve = AnalysisFit.Curve;
  ASSERT_EQ(curve.sample.size(), 100U);
  const Graph& residual = GraphNamed("AnalysisPanel.residual");
  EXPECT_EQ(residual.plots.back().y, curve.residual);
  EXPECT_EQ(GraphNamed("AnalysisPanel").plots.back().y, curve.value);
  for (std::size_t i = 0; i < 100; ++i)
    EXPECT_NEAR(curve.value[i] + curve.residual[i], Trace.SimTrace[Index(static_cast<int>(curve.sample[i]))],
                1e-3);

  const std::string path = folder.File("curve.asc");
  Run(Opened("enter FitMode 1\nenter AnalysisFitPts 100\npress AN_AnalyzeButton\nchoose " + path +
             "\npress ExportAnalysis\npress AN_AnalyzeNextButton\n"));
  const std::string text = ReadWholeFile(path);
  EXPECT_TRUE(text.starts_with("ATF 1.0\n2 2\n\"Type=\"\n\"Comment=\"\n\"Time (s)\" \"Simulated Data\"\n"))
      << text;
  EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 105);
}

TEST_F(AnalysisPanelTest, TheFieldOfTheExponentialNamesAnotherFitAndAnalyzeThenMeasuresWithout) {
  const auto lines = Run(Opened(
      "enter FitMode 2\npress FxnWaveFitParams\ncontrol FitMode\nset FitMode rise\ncontrol FitMode\nget FitMode\n"));
  EXPECT_EQ(lines[lines.size() - 3]["shown"], "waveforms");
  EXPECT_EQ(lines[lines.size() - 2]["shown"], "rise") << "typed, not committed";
  EXPECT_EQ(lines.back()["value"], 10);
  const auto fitted =
      Run(Opened("press FxnVarLimits\npress FxnWaveFitParams\npress FxnFitParams\nget FitMode\n"));
  EXPECT_EQ(LastValue(fitted), 1);
}

TEST_F(AnalysisPanelTest, RunsAreNotAnalysedWhileTheSwitchIsDimmed) {
  const auto lines = Run(
      "enter MultiSubunit 0; enter StateOn[1] 1; enter StateOn[2] 1; enter KOn[1] 1000; enter KOff[1] 500; "
      "enter SimulatorKind 1; enter NumRuns 2; enter AutoAnalyze 1; enter NumRuns 1; press AcquireData");
  for (const auto& line : lines) EXPECT_FALSE(line.value("popup", "") == "file") << line;
}

TEST_F(AnalysisPanelTest, RunsAreAnalysedWithSettingsNeverShownAndBearNoRecordingsName) {
  const float fraction = Analysis.RiseStartFrac;
  Run("reply ok\nopen \"" + recording +
      "\"\npress FxnNextSection\nenter MultiSubunit 0\nenter StateOn[1] 1\nenter StateOn[2] 1\n"
      "enter KOn[1] 1000\nenter KOff[1] 500\nenter StateMonitored[2] 1\nenter StartOccupancy[1] 1\nenter "
      "SimulatorKind 1\n"
      "enter NumRuns 2\nenter AutoAnalyze 1\nchoose \"" +
      folder.File("a.res") + "\"\npress AcquireData\n");
  EXPECT_EQ(Analysis.RiseStartFrac, fraction);
  std::ifstream rows(folder.File("a.res"));
  std::string line;
  ASSERT_TRUE(std::getline(rows, line));
  for (int run = 0; run < 2; ++run) {
    ASSERT_TRUE(std::getline(rows, line));
    EXPECT_TRUE(line.starts_with(FormatText("\"\", 1, %d, ", run))) << line;
  }
}

}  // namespace
}  // namespace zelvane
