// Choosing, importing and exporting the dwell lists, through the commands of a user.
#include "dwells/dwell_lists.h"

#include <vector>

#include "dwells/dwell_store.h"
#include "support/drive_test.h"
#include "support/pressing.h"

namespace zelvane {
namespace {

using nlohmann::json;
class DwellListsTest : public PanelTest {
 protected:
  Floats Import(const std::string& content, bool replace = true) {
    WriteWholeFile(folder.File("list.txt"), content);
    const int current = static_cast<int>(Dwell.NumOpenTimes);
    const auto count = ReadSingleColumnList(Dwell.OpenTimes, folder.File("list.txt"), replace, current);
    Dwell.NumOpenTimes = static_cast<float>(count.value_or(-1));
    return {Dwell.OpenTimes.begin(), Dwell.OpenTimes.begin() + count.value_or(0)};
  }

  static void Fill(std::span<float> list, float& count, const Floats& values) {
    std::copy(values.begin(), values.end(), list.begin());
    count = static_cast<float>(values.size());
  }
};

TEST_F(DwellListsTest, ReadsAPlainColumnAndAnAtfFileAlike) {
  const Floats expected{1.5F, 0.25F, 1e-3F};
  EXPECT_EQ(Import("1.5\n0.25\n1e-3\n"), expected);
  EXPECT_EQ(Import("1.5\r\n0.25\r\n1e-3"), expected);
  EXPECT_EQ(Import("ATF 1.0\n2 1\n\"Type=\"\n\"Comment=\"\n\"Open Times (ms)\"\n1.5\n0.25\n1e-3\n"),
            expected);
  EXPECT_EQ(Import("1.5 ms\n\nnone\n0.25\nnan\n1e-3\n"), expected)
      << "lines without a number are passed over";
  EXPECT_TRUE(popups.empty());
  EXPECT_EQ(Import("ATF\t1.0\n0\t2\n\"a\"\t\"b\"\n1.5\t9\n0.25\t9\n1e-3\t9\n"), expected);
  EXPECT_EQ(popups, (std::vector<SeenPopup>{
                        {"! Warning", "You cannot import more than 1 column ascii files with this option"}}));
}

TEST_F(DwellListsTest, AListOfOneIsEmptyAndAListCanGrow) {
  EXPECT_EQ(Import("7\n"), Floats{});
  EXPECT_EQ(Import("1\n2\n"), (Floats{1, 2}));
  EXPECT_EQ(Import("3\n", false), (Floats{1, 2, 3}));
  EXPECT_EQ(Import(""), Floats{});
  EXPECT_EQ(Import("ATF 1.0\n5000 1\n\"short\"\n"), Floats{});
  std::string many;
  for (int i = 0; i < MaxDwells + 5; ++i) many += "2\n";
  EXPECT_EQ(Import(many).size(), 999'999U);
  EXPECT_EQ(Dwell.OpenTimes[999'999], 0.0F);
  EXPECT_TRUE(popups.empty());
}

TEST_F(DwellListsTest, AFileThatCannotBeReadLeavesTheListAsItWas) {
  Import("1\n2\n");
  EXPECT_EQ(ReadSingleColumnList(Dwell.OpenTimes, folder.File("missing"), true, 2), std::nullopt);
  EXPECT_EQ(popups.back(), (SeenPopup{"! File error", "IO Error 100: FileOpen failed"}));
  WriteWholeFile(folder.File("bad"), "ATF 1.0\nno numbers\n5\n6\n");
  EXPECT_EQ(ReadSingleColumnList(Dwell.OpenTimes, folder.File("bad"), true, 2), std::nullopt);
  EXPECT_EQ(popups.back(), (SeenPopup{"! File error", "IO Error 103: Wrong File Format"}));
  EXPECT_EQ(Dwell.OpenTimes[0], 1.0F);
}

TEST_F(DwellListsTest, TheSelectorBringsAListIntoUse) {
  Fill(Dwell.OpenTimes, Dwell.NumOpenTimes, {9, 9, 9});
  Dwell.RawOpenTimes[0] = 1.0F;
  Dwell.NumRawOpenTimes = 1;
  Dwell.ClassOpenTimes[4][0] = 4.0F;
  Dwell.ClassOpenTimes[4][1] = 5.0F;
  Dwell.NumClassOpenTimes[4] = 2;
  Enter("OpenListSelector", "4");
  EXPECT_EQ(Dwell.NumOpenTimes, 2.0F);
  EXPECT_EQ(Dwell.OpenTimes[1], 5.0F);
  EXPECT_EQ(Shown("OpenTimesCount"), "2");
  TypeOnly("OpenListSelector", "0");
  PressCommand("FxnSCOpenWorkHistogram");
  EXPECT_EQ(Dwell.NumOpenTimes, 1.0F);
  EXPECT_EQ(Dwell.OpenTimes[0], 1.0F);
}

TEST_F(DwellListsTest, ExportsAreTheExactLines) {
  const auto header = [](const char* title) {
    return "ATF 1.0\n2 1\n\"Type=\"\n\"Comment=\"\n\"" + std::string(title) + " (ms)\"\n";
  };
  choices = {folder.File("run.two.ops"), folder.File("run.two.ops")};
  PressCommand("FxnExportOpenTimes");
  EXPECT_EQ(popups.size(), 1U) << "there is nothing to export";
  EXPECT_TRUE(folder.Names().empty());
  Fill(Dwell.OpenTimes, Dwell.NumOpenTimes, {0.1F, 12345.678F, 0});
  PressCommand("FxnExportOpenTimes");
  EXPECT_EQ(ReadWholeFile(folder.File("run.ops")),
            header("Open Times") + "1.000000e-01\n1.234568e+04\n0.000000e+00\n");
  EXPECT_EQ(folder.Names(), Texts{"run.ops"});
  EXPECT_EQ(fileRequests.back().filter, "*.ops");
  EXPECT_EQ(fileRequests.back().title, "Export Open Times as ATF ASCII File");
  EXPECT_TRUE(fileRequests.back().save);
  Fill(Dwell.ClosedTimes, Dwell.NumClosedTimes, {2});
  Fill(Dwell.Latencies, Dwell.NumLatencies, {3});
  choices = {folder.File("all"), folder.File("c.txt"), folder.File("l.txt")};
  for (const char* command : {"FxnExportOpenTimes", "FxnExportClosedTimes", "FxnExportLatencies"})
    PressCommand(command);
  const std::string closed = header("Closed Times") + "2.000000e+00\n";
  const std::string latencies = header("Latencies") + "3.000000e+00\n";
  EXPECT_EQ(ReadWholeFile(folder.File("all.sht")), closed);
  EXPECT_EQ(ReadWholeFile(folder.File("c.txt")), closed);
  EXPECT_EQ(ReadWholeFile(folder.File("all.lat")), latencies);
  EXPECT_EQ(ReadWholeFile(folder.File("l.txt")), latencies);
  std::string many = header("Closed Times");  // more than one written block
  for (int i = 0; i < MaxDwells; ++i) many += "2.500000e-01\n";
  Fill(Dwell.ClosedTimes, Dwell.NumClosedTimes, Floats(MaxDwells, 0.25F));
  ASSERT_EQ(ExportDwellList(DwellListKind::Closed, folder.File("many.sht")), Outcome::Done);
  EXPECT_TRUE(ReadWholeFile(folder.File("many.sht")) == many);
  EXPECT_EQ(popups.size(), 1U);
}

// -- The modal choice, in the command language --

using ListChoiceTest = DriveTest;

TEST_F(ListChoiceTest, TheReplyChoosesTheListAndTheFileFillsIt) {
  const std::string import = "choose " + folder.Written("a.txt", "1\n2\n3\n") + "\npress FxnSCImportAscii\n";
  const auto lines = Run("reply ok\n" + import + "get NumOpenTimes\nget NumRawOpenTimes\n" +
                         "reply ChoiceOpen off ChoiceClosed on ok\n" + import + "get NumClosedTimes\n" +
                         "reply ListReplace 0\n" + import + "get NumClosedTimes\n");
  std::vector<json> seen;
  for (const json& line : lines) {
    for (const char* key : {"title", "value"}) {
      if (line.contains(key)) seen.push_back(line[key]);
    }
  }
  const std::string file = " Time Histograms from Single Column Ascii file ";
  EXPECT_EQ(seen, (Values{"Import Open" + file, 3, 3, "Import Closed" + file, 3, "Import Closed" + file, 6}));
  EXPECT_EQ(lines[1]["filter"], "*.*");
}

TEST_F(ListChoiceTest, TwoBoxesAreRefusedAndNoBoxOrACancelDoesNothing) {
  const std::string import = "press FxnSCImportAscii\n";
  EXPECT_EQ(Told("reply ChoiceClosed on ok\n" + import + "reply ChoiceOpen off ChoiceClosed off ok\n" +
                 import + "reply ChoiceOpen on cancel\n" + import + "get ChoiceOpen\n" +
                 "reply ChoiceOpen on ok\nchoose cancel\n" + import + "get NumOpenTimes\n" + import),
            (Values{"You must import each array of channel open/closed/burst/etc times individually.", 0, 0}))
      << "a cancelled dialog changes nothing";
}

}  // namespace
}  // namespace zelvane
