// The results table, its files and the rows of the measures file.
#include "analysis/results_files.h"

#include "analysis/analysis_fit_store.h"
#include "analysis/analyze.h"
#include "analysis/results_table.h"
#include "analysis/run_analysis.h"
#include "analysis/table_text.h"
#include "parameters/parameters_store.h"
#include "support/store_test.h"
#include "trace/trace_store.h"

namespace zelvane {
namespace {

class ResultsTest : public StoreTest {
 protected:
  ResultsTest() {
    Parameters.FitMode = 0;
    Trace.TraceFromFile = 1;
    Trace.TraceFileName = folder.File("cell 1.old.abf");
    Analysis.MeasuredFile = Trace.TraceFileName;
    ResponseMeasures& m = Analysis.Measures;
    m = {.measured = ~0U, .Baseline = -1.5F, .BaselineVar = 0.25F, .PeakValue = -51.5F, .PeakPos = 600};
    m.RiseTime = 0.5F;
    m.RisePoints = 40;
    m.FracWidth = 2.25F;
    m.Integral = -130.0F;
  }
  void AddRows(int count) {
    for (int i = 0; i < count; ++i) {
      Trace.EpisodeIndex = Analysis.TableRow;
      if (TableAddRow(Analysis.TableRow)) ++Analysis.TableRow;
    }
  }
};

TEST_F(ResultsTest, AThousandEventsFillTheRowsBeforeTheLast) {
  AddRows(1000);
  EXPECT_EQ(Analysis.TableRow, 1000);
  EXPECT_EQ(Analysis.Rows[999].episode, 999);
  EXPECT_FALSE(Analysis.Rows[1000].filled);
  EXPECT_EQ(PopupTexts(),
            Texts{"You have exceeded the capacity of the table. Clear table before analyzing more events."});
}

TEST_F(ResultsTest, DeletingGoesBackRowByRowAndStopsAtTheFirst) {
  AddRows(2);
  Analysis.MeasuresFileOpen = 1;
  Analysis.MeasuresCount = 2;
  DeleteLastRow();
  EXPECT_EQ(Analysis.TableRow, 2);
  EXPECT_TRUE(Analysis.Rows[1].filled);
  EXPECT_FALSE(Analysis.Rows[2].filled);
  EXPECT_EQ(Analysis.Rows[2].episode, 1);
  EXPECT_EQ(Analysis.MeasuresFileOpen, 0);
  DeleteLastRow();
  DeleteLastRow();
  EXPECT_EQ(Analysis.TableRow, 1);
}

TEST_F(ResultsTest, SiblingsAreNamedByTheFileNotByItsFolder) {
  EXPECT_EQ(SiblingFile("/data.d/cell.b.abf", ".res"), "/data.d/cell.res");
  EXPECT_EQ(SiblingFile("/data.d/cell", ".tbl"), "/data.d/cell.tbl");
  EXPECT_EQ(SiblingFile(std::string(200, 'x') + ".abf", ".res"), std::string(75, 'x') + ".res");
}

TEST_F(ResultsTest, ATableFileReadsBackAsItWasWritten) {
  AddRows(2);
  Analysis.Rows[2].fileName = "2 cells, day 3 1.5 ";
  Analysis.Rows[2].value[6] = 1.0F / 3.0F;
  Analysis.Rows[1].value[20] = std::nanf("");  // variance of one sample
  Model.ModelFileName = "/models/ampa.mod";
  SaveResultsTable();
  const std::string text = ReadWholeFile(folder.File("cell 1.tbl"));
  EXPECT_TRUE(text.starts_with("TABLE\n/models/ampa.mod\n" + Trace.TraceFileName +
                               "\nFilename Episode Base Amp Risetime Width FitAmp1 Tau1 FitAmp2 Tau2 Offset "
                               "LatRise LatPeak Integral Slope Risepts Coastline FracDecay BaseVar "
                               "Goodness-of-Fit\n2\ncell 1.old.abf 1 -1.500000 -50.000000 "));
  const auto table = ParseTable(text);
  ASSERT_TRUE(table);
  EXPECT_EQ(table->dataPath, Trace.TraceFileName);
  ASSERT_EQ(table->rows.size(), 2U);
  EXPECT_EQ(table->rows[0].fileName, "cell 1.old.abf");
  EXPECT_EQ(table->rows[1].fileName, "2 cells, day 3 1.5 ") << "numbers of a name are no measures";
  EXPECT_EQ(table->rows[1].episode, 2);
  EXPECT_EQ(table->rows[1].value[5], -50.0F);
  EXPECT_FLOAT_EQ(table->rows[1].value[6], 0.333333F);
  EXPECT_FALSE(table->rows[0].measured[20]);
  EXPECT_TRUE(table->rows[1].measured[20]);
}

TEST_F(ResultsTest, EveryPrefixOfATableFileReadsToWholeRowsOrIsRefused) {
  AddRows(3);
  const std::string text = TableText("", "", FilledRows());
  for (std::size_t length = 0; length < text.size(); ++length) {
    const auto table = ParseTable(text.substr(0, length));
    if (!table) continue;
    for (const AnalysisRow& row : table->rows) EXPECT_EQ(row.value[5], -50.0F) << length;
  }
  EXPECT_FALSE(ParseTable("ATF\t1.0\n"));
  EXPECT_FALSE(ParseTable("TABLE\na\nb\nc\nmany\n"));
  EXPECT_FALSE(ParseTable("TABLE\na\nb\nc\n-3\n"));
  const auto empty = ParseTable("TABLE\n\n\ntitles\n0\n");
  ASSERT_TRUE(empty);
  EXPECT_TRUE(empty->rows.empty());
}

TEST_F(ResultsTest, CsvLeavesUnmeasuredCellsEmpty) {
  Analysis.Measures.measured = MeasuredBaseline | MeasuredAmplitude;
  Trace.TraceFileName = "a,\"b\".abf";
  AddRows(1);
  const std::string csv = TableCsv(FilledRows());
  EXPECT_TRUE(csv.ends_with("\n1,\"a,\"\"b\"\".abf\",1,-1.5,-50,,,,,,,,,,,,,,,,\n")) << csv;
}

TEST_F(ResultsTest, MeasuresRowsHaveTheFieldsOfTheFitMode) {
  SaveAnalysis();
  const std::string path = folder.File("cell 1.res");
  const std::string text = ReadWholeFile(path);
  const std::size_t end = text.find('\n');
  EXPECT_EQ(text.substr(0, 47), "\"Datafilename\", \"episode\", \"num\", \"Latency to R");
  EXPECT_EQ(text.substr(end - 14, 14), ", \"fracwidth\" ");
  EXPECT_EQ(
      text.substr(end + 1),
      '"' + Trace.TraceFileName +
          "\", 1, 0, 0.0000, 0.0000, -50.0000, 0.5000, 0.0000, \"   ---\", \"   ---\", \"   ---\", "
          "\"   ---\", \"   ---\", \"   ---\", \"   ---\", \"   ---\",  -130.0000, 0.0000, -1.5000, 0.2500, "
          "0.0000, 2.2500, \n");
  Parameters.FitMode = FitTwoDecays;
  EXPECT_NE(MeasuresRow("x", 3, AnalysisRow{}).find("\"   ---\",\t0.0000, 0.0000, \"   ---\",\t0.0000"),
            std::string::npos);
  Parameters.FitMode = FitDwells;
  EXPECT_NE(MeasuresRow("x", 3, AnalysisRow{}).find("0.0000,  0.0000, 0.000000,  0.0000"), std::string::npos);
}

TEST_F(ResultsTest, RowsOfAFitHaveItsValuesInTheStatedForm) {
  AnalysisFit.FitAmp1 = -40.5;
  AnalysisFit.FitTau1 = 2.25;
  AnalysisFit.FitAmp2 = -9.125;
  AnalysisFit.FitTau2 = 20;
  AnalysisFit.FitOffset = 0.5;
  AnalysisFit.FitGoodness = 0.984375F;
  const std::string dash = "\"   ---\", ";
  const std::string one = "2.2500, " + dash + dash + "-40.5000, " + dash + dash + " 0.5000, 0.984375,  ";
  const std::string two =
      "\"   ---\",\t2.2500, 20.0000, \"   ---\",\t-40.5000, -9.1250,  0.5000, 0.984375,  ";
  for (const auto& [mode, fields] :
       {std::pair{FitDecay, one}, std::pair{FitRise, one}, std::pair{FitTwoDecays, two}}) {
    SCOPED_TRACE(mode);
    Parameters.FitMode = Analysis.FittedMode = mode;
    const AnalysisRow row = ResultsRow({}, "a.abf", 2);
    EXPECT_EQ(MeasuresRow("/d/a.abf", 7, row),
              "\"/d/a.abf\", 2, 7, 0.0000, 0.0000, 0.0000, 0.0000, 0.0000, " + fields +
                  "0.0000, 0.0000, 0.0000, 0.0000, 0.0000, 0.0000, \n");
    const std::string table = TableText("m.mod", "a.abf", std::span(&row, 1));
    EXPECT_TRUE(table.ends_with(
        "a.abf 2 0.000000 0.000000 0.000000 0.000000 -40.500000 2.250000 -9.125000 20.000000 0.500000 "
        "0.000000 0.000000 0.000000 0.000000 0.000000 0.000000 0.000000 0.000000 0.984375 \n"))
        << table;
    EXPECT_EQ(row.measured[10], mode == FitTwoDecays) << "the second amplitude";
  }
}

TEST_F(ResultsTest, AnExistingMeasuresFileIsAppendedToOnlyWithTheUsersWord) {
  const std::string path = folder.File("cell 1.res");
  WriteWholeFile(path, "old\n");
  SaveAnalysis();
  EXPECT_EQ(PopupTexts(), Texts{"File Present; Append ?"});
  EXPECT_EQ(ReadWholeFile(path), "old\n");
  EXPECT_EQ(Analysis.MeasuresCount, 0);
  answers = {true};
  SaveAnalysis();
  SaveAnalysis();
  EXPECT_EQ(Analysis.MeasuresCount, 2);
  const std::string text = ReadWholeFile(path);
  EXPECT_TRUE(text.starts_with("old\n\"Datafilename\""));
  EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 4) << "one header, two rows";
}

TEST_F(ResultsTest, RowsThatCannotBeWrittenAreKeptAndOfferedAgain) {
  const std::string away = folder.File("cell 1.res.away");
  const std::string path = folder.File("cell 1.res");
  const auto rowsIn = [](const std::string& file) {
    const std::string text = ReadWholeFile(file);
    EXPECT_EQ(text.find("\"Datafilename\""), text.rfind("\"Datafilename\"")) << "one header";
    return std::count(text.begin(), text.end(), '\n') - 1;
  };
  answers = {true};  // append to the folder that stands in the way
  std::filesystem::create_directory(path);
  EXPECT_EQ(SaveAnalysis(Saving::Automatic), Outcome::Failed);
  EXPECT_EQ(SaveAnalysis(Saving::Automatic), Outcome::Failed);
  EXPECT_EQ(errors, 1) << "once for a series";
  EXPECT_EQ(SaveAnalysis(), Outcome::Failed);
  EXPECT_EQ(errors, 2) << "again on request";
  EXPECT_EQ(Analysis.MeasuresCount, 0);
  std::filesystem::remove(path);
  EXPECT_EQ(SaveAnalysis(), Outcome::Done);
  EXPECT_EQ(rowsIn(path), 4);
  EXPECT_EQ(Analysis.MeasuresCount, 4);

  std::filesystem::remove(path);
  std::filesystem::create_directory(path);
  Analysis.MeasuresCount = 0;
  SaveAnalysis();
  answers = {true};
  choices = {away};
  DeleteLastRow();
  EXPECT_EQ(popups.back().text,
            "Rows of measures (1) could not be written to " + path + ". Write them to another file?");
  EXPECT_EQ(rowsIn(away), 1);
  EXPECT_EQ(Analysis.Unwritten.count, 0);
}

TEST_F(ResultsTest, AnOtherFormerTableIsKept) {
  const std::string path = folder.Written("cell 1.tbl", "last week");
  AddRows(1);
  ASSERT_EQ(SaveResultsTable(), Outcome::Done);
  ASSERT_EQ(SaveResultsTable(), Outcome::Done) << "the same table again";
  EXPECT_EQ(ReadWholeFile(path + ".bak"), "last week");
  AddRows(1);
  ASSERT_EQ(SaveResultsTable(), Outcome::Done);
  EXPECT_EQ(ReadWholeFile(path + ".bak"), "last week") << "the table of today has only grown";
  std::filesystem::remove(path + ".bak");
  std::filesystem::create_directory(path + ".bak");
  Analysis.Rows[1].episode = 7;
  const std::string before = ReadWholeFile(path);
  EXPECT_EQ(SaveResultsTable(), Outcome::Failed);
  EXPECT_EQ(ReadWholeFile(path), before) << "a table that cannot be kept is not replaced";
}

TEST_F(ResultsTest, RunsGiveRowsMeanAndVarianceOfSuccessiveDifferences) {
  choices = {folder.File("runs.x.res")};
  Model.NumPoints = 3;
  Model.ADInterval = 1.0F;
  Analysis.RiseStartFrac = 0.9F;
  Analysis.RiseEndFrac = 0.1F;
  ASSERT_TRUE(BeginRunAnalysis());
  const float runs[3][3] = {{1, 0, 2}, {3, 0, 2}, {2, 0, 2}};
  for (int run = 0; run < 3; ++run) {
    std::copy(std::begin(runs[run]), std::end(runs[run]), Trace.SimTrace.begin());
    AnalyzeRun();
  }
  EndRunAnalysis();
  const std::string fault = "Position for starting risetime calculation > ending position.";
  EXPECT_EQ(PopupTexts(), Texts{fault}) << "once for the series";
  MeasureTrace();
  EXPECT_EQ(popups.size(), 2U) << "and again behind it";
  // Mean 2, squares 4 + 1 over two differences; sample 1 has mean 0, sample 2 no variance.
  EXPECT_EQ(ReadWholeFile(folder.File("runs.var")), "2.000000e+00, 2.500000e+00,\n");
  const std::string rows = ReadWholeFile(folder.File("runs.x.res"));
  EXPECT_EQ(std::count(rows.begin(), rows.end(), '\n'), 4);
  EXPECT_EQ(Analysis.MeasuresFileOpen, 0);
  EXPECT_FALSE(BeginRunAnalysis()) << "the dialog is cancelled";
}

}  // namespace
}  // namespace zelvane
