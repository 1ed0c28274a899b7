// Lists of waveforms and tables of measures that are opened by name: dropped on the window, or on the command
// line.
#include <sstream>

#include "analysis/analysis_store.h"
#include "fit/fit_store.h"
#include "headless/drive/drive.h"
#include "support/drive_test.h"

namespace zelvane {
namespace {

using Lines = std::vector<nlohmann::json>;

class NamedFilesTest : public DriveTest {
 protected:
  NamedFilesTest() {
    const std::string recording = std::string(ZELVANE_TEST_DATA) + "/recordings/abf1/130618-1-12.abf";
    std::filesystem::copy_file(recording, folder.File("cell.abf"));
    std::filesystem::copy_file(ZELVANE_DATA "/config.mod", folder.File("scheme.mod"));
    Run("enter ExportPoints 100\nchoose " + folder.File("step.stm") + "\npress ButtonSaveStim\nopen " +
        folder.File("scheme.mod") + "\nopen " + folder.File("cell.abf") +
        "\npress Analysis\nenter FitMode 0\npress AN_AutoAnalyzeButton\npress AN_SaveTable\n");
  }

  /// Starts again and opens a file, as an argument or as one dropped on the window. The answers for dialogs
  /// are queued before.
  Lines Opened(const std::string& name, bool dropped, const std::string& queued = {}) {
    if (dropped) return Run(queued + "open " + folder.File(name) + "\n");
    StartOptions options;
    options.folder = folder.File("none");
    options.files = {folder.File(name)};
    std::istringstream in;
    std::ostringstream out;
    EXPECT_EQ(RunDrive(in, out, options), 0);
    return ParsedLines(out.str());
  }

  /// Returns the titles of the file dialogs and the texts of the messages.
  static Texts Shown(const Lines& lines) {
    Texts shown;
    for (const auto& line : lines) {
      if (line.value("popup", "") == "file") shown.push_back(line["title"]);
      if (line.value("popup", "") == "message") shown.push_back(line["text"]);
    }
    return shown;
  }

  void List(const std::string& lines) { WriteWholeFile(folder.File("set.lst"), "LIST\n" + lines); }
};

TEST_F(NamedFilesTest, AListLoadsWhatLiesBesideIt) {
  List("/gone/scheme.mod\n2\n/gone/cell.abf\nC:\\gone\\step.stm\ncell.abf\nstep.stm\n");
  for (const bool dropped : {true, false}) {
    SCOPED_TRACE(dropped);
    EXPECT_EQ(Shown(Opened("set.lst", dropped)), Texts{});
    EXPECT_EQ(Fit.FitWaveCount, 2);
    EXPECT_EQ(Fit.FitListName, folder.File("set.lst"));
    EXPECT_EQ(Model.ModelFileName, folder.File("scheme.mod"));
    EXPECT_EQ(Fit.Wave[2].DataLength, 50'000);
    EXPECT_EQ(Fit.Wave[2].StimLength, 100);
  }
}

TEST_F(NamedFilesTest, FilesOfAListThatAreMissingAreAskedForAndEndItWhenThereAreNone) {
  const std::string model = "Read Parameters: cannot open " + folder.File("none.mod");
  const std::string data = "Read ASCII or Binary Data File to Fit";
  const std::string stimulus = "Read Binary Stimulus Profile for Fitting";
  List("none.mod\n2\nnone.abf\nstep.stm\ncell.abf\nnone.stm\n");
  for (const bool dropped : {true, false}) {
    EXPECT_EQ(Shown(Opened("set.lst", dropped)), (Texts{model, data})) << "all dialogs are cancelled";
    EXPECT_EQ(Fit.FitWaveCount, 0);
    EXPECT_EQ(Model.ModelFileName, "") << "the former model stays";
  }
  const std::string chosen = "choose cancel\nchoose " + folder.File("cell.abf") + "\nchoose ";
  EXPECT_EQ(Shown(Opened("set.lst", true, chosen + "cancel\n")), (Texts{model, data, stimulus}));
  EXPECT_EQ(Fit.FitWaveCount, 1) << "the pairs so far stay";
}

TEST_F(NamedFilesTest, ATableBringsItsModelAndRecording) {
  for (const bool dropped : {true, false}) {
    SCOPED_TRACE(dropped);
    EXPECT_EQ(Shown(Opened("cell.tbl", dropped)), Texts{});
    EXPECT_EQ(Analysis.TableRow, 4);
    EXPECT_EQ(Analysis.Rows[3].episode, 3);
    EXPECT_EQ(Trace.TraceFileName, folder.File("cell.abf"));
    EXPECT_EQ(Trace.EpisodeCount, 3);
    EXPECT_EQ(Model.ModelFileName, folder.File("scheme.mod"));
  }
  Run("choose " + folder.File("cell.tbl") + "\npress AN_ReadTable\n");
  EXPECT_EQ(Analysis.TableRow, 4) << "chosen on the panel";
  std::filesystem::remove(folder.File("cell.abf"));
  for (const bool dropped : {true, false}) {
    EXPECT_EQ(Shown(Opened("cell.tbl", dropped)), Texts{"IO Error 100: FileOpen failed"});
    EXPECT_EQ(Analysis.TableRow, 1) << "rows without their recording are not shown";
  }
}

TEST_F(NamedFilesTest, FilesThatOnlyBearTheNameAreToldAndChangeNothing) {
  for (const char* name : {"set.lst", "cell.tbl"}) {
    WriteWholeFile(folder.File(name), "no such file\n");
    for (const bool dropped : {true, false}) {
      EXPECT_EQ(Shown(Opened(name, dropped)), Texts{"IO Error 103: Wrong File Format"}) << name;
      EXPECT_EQ(Fit.FitWaveCount, 0);
      EXPECT_EQ(Analysis.TableRow, 1);
    }
  }
  EXPECT_EQ(Shown(Opened("missing.lst", true)), Texts{"IO Error 100: FileOpen failed"});
  EXPECT_EQ(Shown(Opened("missing.lst", false)), Texts{}) << "an argument that names no file is passed over";
}

}  // namespace
}  // namespace zelvane
