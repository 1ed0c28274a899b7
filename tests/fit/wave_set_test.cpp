// List files: names, the search for files, and the set afterwards.
#include "fit/wave_set.h"

#include "fit/wave_list.h"
#include "run/run_panel.h"
#include "stimulus/stimulus_file.h"
#include "stimulus/stimulus_store.h"
#include "support/pressing.h"
#include "trace/trace_store.h"
#include "trace/trace_write.h"

namespace zelvane {
namespace {

class WaveSetTest : public PanelTest {
 protected:
  WaveSetTest() {
    std::filesystem::copy_file(ZELVANE_DATA "/config.mod", folder.File("model.mod"));
    for (int w = 1; w <= 2; ++w) {
      Model.NumPoints = 2000 + w;
      for (int i = 0; i < Model.NumPoints; ++i)
        Trace.SimTrace[static_cast<std::size_t>(i)] = static_cast<float>(w);
      Trace.SimTrace[0] = 0.0F;  // a note tells of equal samples
      EXPECT_EQ(TraceAbfWrite(folder.File("cell" + std::to_string(w) + ".abf")), Outcome::Done);
      Stimulus.Profile[6][0] = static_cast<float>(10 * w);
      EXPECT_EQ(StimFileWrite(folder.File("step" + std::to_string(w) + ".stm"), 100 * w), Outcome::Done);
    }
  }

  std::string List(const std::string& text) {
    WriteWholeFile(folder.File("set.lst"), text);
    return folder.File("set.lst");
  }
};

// The last line has a stray carriage return, which ends the name.
constexpr char TwoPairs[] =
    "LIST\r\n/gone/model.mod\r\n2\r\n/gone/cell1.abf\r\nC:\\gone\\step1.stm\r\ncell2.abf\r\nstep2\r.stm\r\n";

TEST_F(WaveSetTest, NamesAreCutAtTheFirstFullStopOfTheFile) {
  using Case = std::tuple<const char*, const char*, const char*>;
  for (const auto& [line, extension, cleaned] :
       {Case{"cell.abf", "", "cell.abf"}, Case{"cell.2.abf", "", "cell.2.a"}, Case{"cell", "", "cell"},
        Case{"/a.b/c.d/cell.abf ", "", "/a.b/c.d/cell.abf"}, Case{"x.ab", "", "x.ab"},
        Case{"a.b\\step.txt", ".stm", "a.b\\step.stm"}, Case{"", ".mod", ".mod"}}) {
    EXPECT_EQ(CleanedName(line, extension), cleaned) << line;
  }
}

TEST_F(WaveSetTest, AListMovedWithItsFilesLoadsWithoutADialog) {
  choices = {List(TwoPairs)};
  Trace.TraceIsText = 1;
  PressCommand("FxnListFile");
  EXPECT_EQ(Trace.TraceIsText, 0) << "the next episode is one of the last recording";
  EXPECT_EQ(fileRequests.size(), 1U);
  EXPECT_EQ(PopupTexts(), Texts{});
  EXPECT_EQ(Model.ModelFileName, folder.File("model.mod"));
  EXPECT_EQ(Fit.FitWaveCount, 2);
  EXPECT_EQ(Fit.FitListOn, 1);
  const FitWaveform& second = Fit.Wave[2];
  EXPECT_EQ(second.DataName, "cell2.abf");
  EXPECT_EQ(second.DataLength, 2002);
  EXPECT_EQ(second.WaveData[2001], 2.0F);
  EXPECT_EQ(second.StimName, "step2.stm");
  EXPECT_EQ(second.StimLength, 200);
  EXPECT_EQ(second.WaveStim[6][0], 20.0F);
  EXPECT_TRUE(second.WaveLoaded == 1 && second.DataOn == 1 && second.StimOn == 1);
  ASSERT_EQ(Fit.LogLines.size(), 4U);
  EXPECT_EQ(Fit.LogLines[2], "  DATA File: " + folder.File("cell2.abf") + " length=2002 adinterval=0.010000");
  EXPECT_EQ(Fit.LogLines[3], "  STM File: " + folder.File("step2.stm") + " length=200 adinterval=0.010000");
}

TEST_F(WaveSetTest, AWrittenListReadsBackAsTheSamePairs) {
  ReadListNamed(List(TwoPairs));
  choices = {folder.File("new.lst"), folder.File("new.lst")};
  PressCommand("FitSaveList");
  EXPECT_EQ(ReadWholeFile(folder.File("new.lst")),
            "LIST\n" + folder.File("model.mod") + "\n2\ncell1.abf\nstep1.stm\ncell2.abf\nstep2.stm\n");
  PressCommand("FxnListFile");
  EXPECT_EQ(Fit.FitWaveCount, 2);
  EXPECT_EQ(Fit.Wave[1].StimName, "step1.stm");
  PressCommand("FxnFitClear");
  EXPECT_EQ(Fit.FitWaveCount, 0);
  EXPECT_EQ(Fit.Wave[2].DataName, "");
  EXPECT_EQ(Fit.Wave[2].WaveData[5], 0.0F);
  EXPECT_EQ(Fit.Wave[2].WaveStim[6][0], 0.0F);
}

TEST_F(WaveSetTest, APairThatCannotBeReadIsToldAndTheOthersAreLoaded) {
  folder.Written("text.abf", "1\n2\n");
  folder.Written("long.stm", std::string("\x0A\xD7\x23\x3C\x42\x42\x0F\x00", 8));  // 1,000,002 samples
  const std::string list = List(
      "LIST\nmodel.mod\n4\ncell1.abf\nstep1.stm\ntext.abf\nstep1.stm\ncell2.abf\nlong.stm\ncell2.abf\nstep2.stm\n");
  EXPECT_EQ(ReadListNamed(list), Outcome::Failed);
  EXPECT_EQ(notes, (Texts{"Pair 2 (text.abf, step1.stm) cannot be read and is left out.",
                          "Pair 3 (cell2.abf, long.stm) cannot be read and is left out.",
                          "2 of 4 pairs of set.lst are left out."}));
  EXPECT_EQ(Fit.FitWaveCount, 4);
  for (const auto& [w, loaded] : {std::pair{1U, 1}, {2U, 0}, {3U, 0}, {4U, 1}})
    EXPECT_EQ(Fit.Wave[w].WaveLoaded, loaded) << w;
  EXPECT_EQ(Fit.Wave[3].WaveData[5], 0.0F);
  EXPECT_EQ(Fit.Wave[4].WaveData[5], 2.0F);
  EXPECT_EQ(ReadListNamed(List("LIST\nmodel.mod\n1\ncell1.abf" + std::string(300'000, '\0'))),
            Outcome::Failed);
  EXPECT_EQ(popups.back().text, "set.lst was not read: line 4 holds a NUL byte.");
}

TEST_F(WaveSetTest, SixteenPairsAreFifteenAndAFileThatIsNoListIsToldSo) {
  std::string text = "LIST\nmodel.mod\n16\n";
  for (int p = 0; p < 16; ++p) text += "cell1.abf\nstep1.stm\n";
  ReadListNamed(List(text));
  EXPECT_EQ(Fit.FitWaveCount, 15);
  WaveSetClear();
  for (const char* count : {"0", "-3", "none"}) {
    ReadListNamed(List(std::string("LIST\nmodel.mod\n") + count + "\ncell1.abf\nstep1.stm\n"));
    EXPECT_EQ(Fit.FitWaveCount, 0) << count;
  }
  EXPECT_TRUE(popups.empty());
  ReadListNamed(List("LISX\n"));
  Fit.FitListOn = 0;
  ReadListNamed(folder.File("missing.lst"));
  EXPECT_EQ(Fit.FitListOn, 1);
  EXPECT_EQ(PopupTexts(), (Texts{"IO Error 103: Wrong File Format", "IO Error 100: FileOpen failed"}));
  PressCommand("FxnListFile");
  EXPECT_EQ(Fit.FitListOn, 0) << "a cancelled dialog";
}

}  // namespace
}  // namespace zelvane
