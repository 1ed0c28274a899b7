#include "model/model_text.h"

#include <clocale>
#include <limits>

#include "analysis/analysis_fit_store.h"
#include "analysis/analysis_store.h"
#include "app/stores.h"
#include "dwells/dwell_fit_store.h"
#include "fit/fit_store.h"
#include "model/constraints_store.h"
#include "model/model_file_lines.h"
#include "model/model_lines.h"
#include "model/saved_fields.h"
#include "parameters/parameters_store.h"
#include "rscm/rscm_store.h"
#include "stimulus/stimulus_store.h"
#include "support/store_test.h"

namespace zelvane {
namespace {

class ModelTextTest : public StoreTest {
 protected:
  /// Returns the text of the stores with one line replaced; lines count from 1.
  static std::string WithLine(int line, const std::string& text) {
    std::vector<std::string> lines = LinesOf(ModelText());
    lines[static_cast<std::size_t>(line - 1)] = text;
    return JoinLines(lines);
  }
};

// -- Writing --

/// A group of lines of the file and the text of its first line.
struct RowOfFile {
  int lines;
  std::string first;
};

TEST_F(ModelTextTest, WritesTheNinetySixRowsOfTheNewestFormatAtTheirLines) {
  Model.ModelTitle = "A title";
  SetFieldText(FindField("DrugLabel[1]"), "glutamate");
  SetFieldText(FindField("StateLabel[1]"), "C0");
  // clang-format off
  for (const auto& [name, value] : {
      std::pair{"StateOn[1]", 1.0}, {"StateMonitored[1]", 1}, {"StateConductance[0]", 7},
      {"StateConductance[1]", 12.5}, {"StartOccupancy[1]", 0.25}, {"KOn[1]", 4.6e6}, {"KOff[1]", 4260},
      {"DrugDepend[2][1][2]", 1}, {"VoltDepend[1][2]", 2}, {"VoltSteepness[1][2]", 1.5}, {"VoltRange[1][2]", 25},
      {"DrugDepend[6][2][1]", 1}, {"VoltSteepness[2][1]", -1.5}, {"VoltRange[2][1]", 26},
      {"TableRate[1][1]", 0.5}, {"TableDrugDepend[3][1][1]", 1}, {"TableVoltDepend[1][1]", 1},
      {"TableVoltSteepness[1][1]", 2}, {"TableVoltRange[1][1]", 3}, {"AnalysisDisplay[2]", 1},
      {"AnalysisFitLimits[1].lo", 1}, {"AnalysisFitLimits[1].hi", 10}, {"SpecFitLimits[1].lo", 2},
      {"SpecFitLimits[1].hi", 20}, {"AnalysisFitFixed[1]", 1}, {"AnalysisFitSeed[1]", 0.75},
      {"MultiStimTable[0][0]", 0.001}}) {
    SetFieldNumber(FindField(name), value);
  }
  // clang-format on

  const auto fifteenTimes = [](const std::string& value) {
    std::string row = value;
    for (int w = 2; w <= 15; ++w) row.append(" ").append(value);
    return row;
  };
  // clang-format off
  const RowOfFile rows[] = {
      {1, "4ZV"}, {1, "A title"},
      {1, "[State1-20: onoff]"}, {20, "1 1 12.500000 0.250000"},
      {1, "[Drug dependence labels]"}, {6, "glutamate"},
      {1, "[K1-31on]"}, {31, "4600000.000000"},
      {1, "[Kon concentration/voltage dependent]"}, {31, "0 1 0 0 0 0 2"},
      {1, "[Kon steepness of voltage dependence]"}, {31, "1.500000"},
      {1, "[Kon activation range for voltage dependence]"}, {31, "25.000000"},
      {1, "[K1-31off]"}, {31, "4260.000000"},
      {1, "[Koff concentration/voltage dependent]"}, {31, "0 0 0 0 0 1 0"},
      {1, "[Koff steepness of voltage dependence]"}, {31, "-1.500000"},
      {1, "[Koff activation range for voltage dependence]"}, {31, "26.000000"},
      {1, "[QMatrixMonteCarlo,#passes,#pts,#start,#channels,openstate,startstate,pApS,mVmM]"},
      {7, "1"}, {1, "1 1"}, {1, "1 "}, {1, "0"}, {1, "1"}, {1, "0 0 1"},
      {1, "[extra storage space]"}, {1, "5.000000e-03 5.000000e-04"}, {1, "25.000000"}, {1, "1.0000e-06"},
      {1, "1 1 1 1 0 0 10.000000"}, {1, "100 10 1 3 0 0.500000"}, {1, "0 1"},
      {1, "0 2.000000 0 1.000000 0 0.000000"}, {13, "1"},
      {1, "[adinterval,conductance,voltage,vrev,valence,kzero]"}, {4, "0.010000"}, {1, "1"},
      {1, "[Stimulus: Mode,AutoStep,ManualStep,Exp,Fc,pole,autofilt]"}, {1, "1"}, {1, "5.000000e-03"},
      {2, "1.000000"}, {1, "5.000000e-03 0"}, {1, "1.000000 5.000000"}, {1, "99.000000 5.000000"},
      {1, "10.000000"}, {2, "1.000000e+00"}, {4, "1.000000"}, {1, "0"}, {1, "1"}, {1, "1.000000"},
      {1, "1 1 1 1 100.000000 1.000000"}, {1, "0 0"}, {1, "0"},
      {1, "[Analysis: pksrch,pkave,basepts,basepos,startpos,risebeg,riseend]"}, {1, "1"},
      {1, "1 0 0 0 1 0 0"}, {1, "1"}, {1, "1.000000"}, {1, "1.000000 1.000000"}, {1, "0.100000 0.100000"},
      {1, "0.900000"},
      {1, "[Analysis: expmodel,parse,numfitpts,numiter,numrestarts,tol,dual,startpts]"}, {5, "1"},
      {1, "0.000010 0.000001"}, {2, "30"},
      {1, "[Analysis: Fit limits hi,lo for vertex 1-72]"},
      {144, "10.000000 0.000000 100000.000000 100000.000000 1.000000 10.000000 20.000000"},
      {1, "[Analysis: Fixed fit params for vertex 1-72]"}, {72, "1 0"},
      {1, "[Analysis: Seeds for vertex 1-72, fitlims,autoseed,fixfree]"}, {72, "0.750000 0.000000"}, {3, "0"},
      {1, "[FitWaveforms: start, stop positions for fit]"}, {1, "0"}, {1, "0.050000"},
      {1, "0 1 0 10.000000"}, {1, fifteenTimes("2.500000")}, {1, fifteenTimes("4.500000")},
      {2, {}}, {3, fifteenTimes("30")}, {20, "0.000000"}, {15, "1"},
      {1, "[Rate constants for transitions between all states]"},
      {400, "1 1 0.500000 0 0 1 0 0 0 1 2.000000 3.000000"},
      {1, "[Constraints for rate constants for transitions]"}, {60, "0 1 1 1 1 2 1.000000 "},
      {1, "[Loop Constraints for rate constants for transitions]"}, {40, "0 0 0 0 0 0 0 0 0 1 1"},
      {1, "[Multi-stimulus file voltage / concentration parameters]"},
      {49, "0.001000 0.000000 0.000000 0.000000 0.000000 0.000000"},
      {1, "20 [TState1-20: labels]"}, {20, "1"}, {1, "[State1-20: labels]"}, {20, "C0"}};
  // clang-format on

  const std::vector<std::string> lines = LinesOf(ModelText());
  std::size_t line = 0;
  for (const RowOfFile& row : rows) {
    ASSERT_LT(line, lines.size()) << row.first;
    EXPECT_EQ(row.first.empty() ? row.first : lines[line], row.first) << "line " << line + 1;
    line += static_cast<std::size_t>(row.lines);
  }
  EXPECT_EQ(line, lines.size());
  EXPECT_EQ(lines.size(), static_cast<std::size_t>(LinesOfModelFile));
  EXPECT_EQ(lines[static_cast<std::size_t>(
                      LineNumber(lines, "[Rate constants for transitions between all states]")) +
                  22],
            "2 3 0.000000 0 0 0 0 0 0 0 0.000000 0.000000");
}

TEST_F(ModelTextTest, KeepsEveryLineShortEnoughToBeReadBack) {
  const float hugeFloat = std::numeric_limits<float>::max();
  const double hugeDouble = std::numeric_limits<double>::max();
  Model.ModelTitle = std::string(1000, 't');
  Model.StateLabel[20] = std::string(1000, 'l');
  Model.KOn[1] = hugeDouble;
  Model.Depend.Steepness[1][2] = -hugeFloat;
  for (FitLimit& limit : DwellFit.DwellFitLimits) limit = {-hugeDouble, hugeDouble};
  for (FitWindow& window : Fit.Waveform) window.DataFitStart = -hugeFloat;
  const std::string text = ModelText();
  for (const std::string& line : LinesOf(text))
    EXPECT_LE(line.size(), static_cast<std::size_t>(MaxLineBytes));

  ResetStores();
  ASSERT_TRUE(ReadModelText(text));
  EXPECT_EQ(Model.ModelTitle, std::string(299, 't'));
  EXPECT_EQ(Model.StateLabel[20], std::string(19, 'l'));
  EXPECT_EQ(Model.KOn[1], 0.0) << "a rate that is no 32-bit float keeps its value";
  EXPECT_EQ(Model.Depend.Steepness[1][2], -hugeFloat);
  EXPECT_EQ(DwellFit.DwellFitLimits[72].lo, -hugeDouble);
  EXPECT_EQ(Fit.Waveform[15].DataFitStart, -hugeFloat);
  EXPECT_EQ(AnalysisFit.ExpFitLimits[1].hi, 100000);
}

TEST_F(ModelTextTest, WritesATextUpToItsFirstLineBreakAndNeverHalfACharacter) {
  Model.StateLabel[1] = "open\nshut";
  Model.StateLabel[2] =
      "\xC2\xB5\xC2\xB5\xC2\xB5\xC2\xB5\xC2\xB5\xC2\xB5\xC2\xB5\xC2\xB5\xC2\xB5\xC2\xB5";  // 20 bytes
  ASSERT_TRUE(ReadModelText(ModelText()));
  EXPECT_EQ(Model.StateLabel[1], "open");
  EXPECT_EQ(Model.StateLabel[2].size(), 18U);
}

TEST_F(ModelTextTest, NumbersHaveAFullStopInALocaleWithCommas) {
  const std::string text = ModelText();
  const char* chosen = nullptr;
  for (const char* name : {"de_DE.UTF-8", "de_DE.utf8", "fr_FR.UTF-8", "fr_FR.utf8"}) {
    if (chosen == nullptr) chosen = std::setlocale(LC_ALL, name);
  }
  if (chosen == nullptr) GTEST_SKIP() << "no locale with a decimal comma is installed";
  EXPECT_EQ(ModelText(), text);
  Model.ADInterval = 99;
  EXPECT_TRUE(ReadModelText(text));
  EXPECT_EQ(Model.ADInterval, 0.01F);
  std::setlocale(LC_ALL, "C");
}

// -- Reading --

/// Returns whether a format lacks a field of the newest: rows of the fit tables, or waveforms.
bool MissingBefore(int version, const std::string& name) {
  const auto parsed = ParseFieldName(name);
  if (!parsed || parsed->indices.empty()) return false;
  const std::string base = parsed->key.substr(0, parsed->key.find('['));
  const int row = parsed->indices[0];
  for (const char* table : {"FitLimits", "FitFixed", "FitOwnFixed", "FitSeed"}) {
    if (base.ends_with(table)) return version == 1 && row > 36;
  }
  for (const char* window : {"DataBaselineStart", "DataFitStart", "SimBaselineStart", "SimFitStart",
                             "NumBaselinePts", "NumAlignPts", "NumFitPts"}) {
    if (base == window) return version < 3 && row > 5;
  }
  return false;
}

TEST_F(ModelTextTest, EveryFieldOfAFileOfAnyFormatSurvivesAndNoOtherIsTouched) {
  const auto elements = StoreElements();
  ASSERT_GT(elements.size(), 5000U);
  for (const auto& [version, seed] : std::vector<std::pair<int, std::uint32_t>>{
           {4, 1}, {4, 2}, {4, 3}, {4, 4}, {4, 5}, {1, 7}, {2, 7}, {3, 7}}) {
    const bool newest = version == NewestFileVersion;
    FillAtRandom(elements, seed);
    const std::string text = newest ? ModelText() : InOlderFormat(ModelText(), version);
    const auto saved = ValuesOf(elements);
    const auto labels = Model.StateLabel;
    FillAtRandom(elements, seed + 100);
    const auto former = ValuesOf(elements);
    ASSERT_TRUE(ReadModelText(text));
    const auto now = ValuesOf(elements);
    for (std::size_t i = 0; i < elements.size(); ++i) {
      const std::string& name = elements[i].name;
      if (!newest && name.starts_with("TableStateLabel")) continue;
      ASSERT_EQ(now[i], elements[i].inFile && !MissingBefore(version, name) ? saved[i] : former[i])
          << name << " in format " << version;
    }
    if (newest) {
      EXPECT_EQ(ModelText(), text);
    } else {
      EXPECT_EQ(Model.TableStateLabel, labels) << "the table takes the labels of the grid";
    }
  }
}

TEST_F(ModelTextTest, AFileCutAtAnyByteLeavesEachFieldTheFilesOrTheFormerOne) {
  const auto elements = StoreElements();
  FillAtRandom(elements, 11);
  const std::string text = ModelText();
  const auto saved = ValuesOf(elements);
  FillAtRandom(elements, 111);
  const auto former = ValuesOf(elements);
  const auto stores = std::tuple{Model, Constraints, Stimulus, Analysis, Fit, DwellFit, RsCm};
  // The last line counts without its end, so a cut within it is not noticed.
  const std::size_t lastLine = text.rfind('\n', text.size() - 2);
  const std::size_t runRows = text.find("[QMatrixMonteCarlo");
  const std::size_t limitRows = text.find("[Analysis: Fit limits");
  for (std::size_t size = 0; size <= lastLine;) {
    ModelFaults faults;
    const bool isModel = ReadModelText(std::string_view(text).substr(0, size), &faults);
    ASSERT_EQ(faults.size(), isModel ? 1U : 0U) << size;
    const auto now = ValuesOf(elements);
    for (std::size_t i = 0; i < elements.size(); ++i) {
      ASSERT_TRUE(now[i] == former[i] || (elements[i].inFile && now[i] == saved[i]))
          << elements[i].name << " is " << ::testing::PrintToString(now[i]) << " after " << size << " bytes";
    }
    std::tie(Model, Constraints, Stimulus, Analysis, Fit, DwellFit, RsCm) = stores;
    // Every byte where each line is different, and a sample of the long tables.
    const bool everyByte = size < 600 || (size >= runRows && size < limitRows) || size + 300 > lastLine;
    size += everyByte ? 1 : 197;
  }
}

// -- Corrections of values --

/// A line in an otherwise sound file, and the values of its fields afterwards.
struct LineCase {
  int line;  // from 1
  std::string text;
  std::vector<std::pair<std::string, double>> fields;
};

TEST_F(ModelTextTest, ValuesOutOfRangeAreCorrectedAndWhatIsNoNumberLeavesItsField) {
  constexpr double Unchanged = -1e99;
  // clang-format off
  const LineCase cases[] = {
      {4, "2 1 3 0.5", {{"StateOn[1]", 1}}}, {4, "-1 1 3 0.5", {{"StateOn[1]", 1}}},
      {4, "0 1 3 0.5", {{"StateOn[1]", 0}}},
      {4, "0 7 -3 1.5", {{"StateMonitored[1]", 7}, {"StateConductance[1]", -3}, {"StartOccupancy[1]", 1.5}}},
      {32, "-5e6", {{"KOn[1]", 5e6}}}, {160, "-0.25", {{"KOff[1]", 0.25}}},
      {290, "1000", {{"NumPoints", 100'000}}}, {290, "-4", {{"NumPoints", 100'000}}},
      {290, "100001", {{"NumPoints", 100'001}}}, {290, "5000001", {{"NumPoints", 5'000'001}}},
      {290, "5000002", {{"NumPoints", 5'000'000}}}, {290, "99999999999", {{"NumPoints", Unchanged}}},
      {295, "0", {{"MultiSubunit", 0}}}, {295, "0 3", {{"MultiSubunit", 3}}},
      {299, "1 2 -1", {{"Autosave", 0}, {"AutosaveFormat", 0}}}, {301, "0.001", {{"Precision", 5e-5F}}},
      {301, "0.001 1e-9", {{"Precision", 1e-5F}}}, {301, "0.001 1001", {{"Precision", 1e-5F}}},
      {301, "0.001 2e-9", {{"Precision", 2e-9F}}},
      {301, "-1 1000", {{"Precision", 1000}, {"MaxStepSize", -1}}},
      {301, "0.001 nan", {{"Precision", Unchanged}}},
      {304, "7 7 2 -1 9 3 1", {{"FitAlign", 7}, {"WaveFitFixOn", 0}, {"WaveFitLimitsOn", 0},
       {"WaveFitAutoSeed", 0}, {"AutoGenFitLims", 0}, {"FitLimsXFold", 2}}},
      {304, "1 1 1 1 0 0 1000001", {{"FitLimsXFold", 2}}},
      {305, "499 9 0 0 -1 0.4", {{"FitPeakSearchPts", 500}, {"FitNumIterations", 10}, {"FitNumRestarts", 1},
       {"FitPeakAve", 1}, {"FitDualSpeed", 0}, {"FitStepSize", 0.5}}},
      {306, "2 -1", {{"StartAtEquilibrium", 0}, {"FitStartAtEquilibrium", 0}}},
      {307, "1 -0.1 1 -2 1 -3", {{"AutoFilterFc", 5}}}, {307, "1 50.1 1 -2 1 -3", {{"AutoFilterFc", 5}}},
      {307, "1 50 1 -2 1 -3", {{"AutoNoiseSTD", 0}, {"ChannelsSTD", 0}}}, {332, "1 2", {{"StepRamp", 0}}},
      {333, "7 -1", {{"StepRiseTau", 5}}}, {334, "8 -1", {{"StepDecayTau", 5}}},
      {345, "3 2 -1 -1 4 -1", {{"TrainExpFlag", 1}, {"TrainRiseFlag", 1}, {"TrainCount", 1},
       {"TrainInterval", 1}}},
      {345, "3 0 1000001 0 4 1e6", {{"TrainCount", 1}}}, {345, "3 0 0 0 4 1000001", {{"TrainInterval", 1}}},
      {345, "3 0 0 0 4 0", {{"TrainInterval", 0}}}, {346, "1", {{"AutoDrugOrVolt", 0}}},
      {346, "1 2", {{"AutoDrugOrVolt", 0}}}, {346, "0 1", {{"AutoDrugOrVolt", 1}}},
      {350, "4 2 3 4 5 6 7", {{"AutoSaveMeasures", 0}, {"VerifyMeasures", 0}, {"AnalysisDisplay[3]", 0},
       {"RsCmAuto", 0}}},
      {350, "4 1 1 1 1 1 1", {{"AnalysisDisplay[3]", 1}}}, {353, "1 -1", {{"LatencyPos", 0}}},
      {354, "0.2 -0.1", {{"LatencyFrac", 0.1F}}}, {354, "0.2 1.1", {{"LatencyFrac", 0.1F}}},
      {362, "0.5 0", {{"ScTolerance", 0.5}}}, {362, "0.5 0.25", {{"ScTolerance", 0.25}}},
      {362, "0.5", {{"ScTolerance", Unchanged}}}, {662, "1 2 2 0", {{"FitFilterFc", 10}}},
      {662, "1 2 2 20.5", {{"FitFilterFc", 10}}},
      {662, "1 2 2 20", {{"FitAlignRange", 1}, {"FitAlignChoice", 0}}},
      {662, "1 -2 2 20", {{"FitAlignRange", -2}}},
      // Not a number, or not a number of the type.
      {294, "abc", {{"StartState", 1}}}, {322, "abc", {{"ADInterval", 0.01F}}},
      {322, "", {{"ADInterval", 0.01F}}}, {322, "nan", {{"ADInterval", 0.01F}}},
      {322, "1e999", {{"ADInterval", 0.01F}}}, {322, "-inf", {{"ADInterval", 0.01F}}},
      {322, "1e39", {{"ADInterval", 0.01F}}}, {322, "  +2.5E-1x", {{"ADInterval", 0.25}}},
      {322, "0x1p-3", {{"ADInterval", 0.125}}}, {326, "2147483648", {{"Valence", 1}}},
      {326, "3.7", {{"Valence", 3}}}, {4, "3.7 1 5 5", {{"StateMonitored[1]", 0}}},
      {4, "1 nan 5 5", {{"StateConductance[1]", 0}}}, {4, "1 99999999999 5 6", {{"StartOccupancy[1]", 6}}}};
  // clang-format on
  for (const LineCase& test : cases) {
    for (const auto& [name, value] : test.fields) {
      ResetStores();
      const std::string text = WithLine(test.line, test.text);
      const double before = FieldNumber(FindField(name));
      ASSERT_TRUE(ReadModelText(text));
      EXPECT_EQ(FieldNumber(FindField(name)), value == Unchanged ? before : value)
          << name << " from \"" << test.text << "\"";
    }
  }
}

// -- Shapes of a file --

TEST_F(ModelTextTest, TellsWhatAFileDoesNotHold) {
  const auto faultsOf = [](const std::string& text) {
    ModelFaults faults;
    EXPECT_TRUE(ReadModelText(text, &faults));
    return faults;
  };
  Model.Temperature = 25.0F;
  Model.MultiSubunit = 1;
  struct Case {
    int line;
    std::string text;
    std::string fault;  // empty: as older files may be
  };
  const Case cases[] = {
      {302, "abc", "line 302: 'abc' is not a number, 25 kept"},
      {302, "", "line 302: no number for Temperature, 25 kept"},
      {302, "1e999", "line 302: '1e999' is out of range, 25 kept"},
      {302, "3O", "line 302: '3O' was read as 3"},
      {4, "1 0 x 0.5", "line 4: 'x' is not a number, 0 kept"},
      {898, "1 x 5", "line 898: 'x' is not a number, the settings of this line kept"},
      {898, "", "line 898: a number is missing, the settings of this line kept"},
      {295, "0", ""},
      {2, std::string("a\0b", 3), "line 2 holds a NUL byte; only the text before it was read"},
      {3, "a header of any kind", ""},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.text);
    const std::string text = WithLine(c.line, c.text);
    EXPECT_EQ(faultsOf(text), c.fault.empty() ? ModelFaults{} : ModelFaults{c.fault});
    Model.Temperature = 25.0F;
  }
  const std::string text = ModelText();
  EXPECT_EQ(faultsOf(text), ModelFaults{});
  EXPECT_EQ(
      faultsOf(JoinLines(LinesOf(text)).substr(0, text.find("[extra storage space]"))),
      ModelFaults{"the file ends at line 299 of 1299: the settings from MaxStepSize on are those of before"});
  EXPECT_EQ(
      faultsOf(text.substr(0, text.find("[Multi-stimulus")) + "\n").back(),
      "the file ends at line 1208 of 1299: the settings from MultiStimTable[0][0] on are those of before");
  std::vector<std::string> lines = LinesOf(text);
  for (std::size_t i = 31; i < 41; ++i) lines[i] = "word";
  EXPECT_EQ(faultsOf(JoinLines(lines)).size(), 6U);
  EXPECT_EQ(faultsOf(JoinLines(lines)).back(), "5 more lines do not hold their numbers");
}

TEST_F(ModelTextTest, TheFirstThreeCharactersTellAModelFileAndAnotherChangesNothing) {
  const auto elements = StoreElements();
  const auto former = ValuesOf(elements);
  for (const std::string magic : {"", "4Z", "5ZV", "mod", "[4ZV", "x4ZV", "4 ZV", "\0\0\0"}) {
    EXPECT_FALSE(ReadModelText(magic + "\nThe title\n")) << magic;
  }
  EXPECT_EQ(ValuesOf(elements), former);
  for (const std::string magic : {"4ZV", "4ZVx", "4ZVwhatever 5 6", "\n \t4ZV"}) {
    Model.ModelTitle = "former";
    ASSERT_TRUE(ReadModelText(magic + "\nThe title\n")) << magic;
    EXPECT_EQ(Model.ModelTitle, "The title") << magic;
  }
}

TEST_F(ModelTextTest, LinesBeforeTheTablesLabelsArePassedOver) {
  Model.TableStateLabel[1] = "first";
  Model.TableStateLabel[20] = "20 is no header here";
  std::vector<std::string> lines = LinesOf(ModelText());
  const auto header = lines.begin() + LineNumber(lines, "20 [TState1-20: labels]") - 1;
  lines.insert(header, {"200 too many", "", "[20]", "2", "-20"});
  ResetStores();
  ASSERT_TRUE(ReadModelText(JoinLines(lines)));
  EXPECT_EQ(Model.TableStateLabel[1], "first");
  EXPECT_EQ(Model.TableStateLabel[20], "20 is no header her");
}

TEST_F(ModelTextTest, ForeignLineEndsAndAMissingLastOneLeaveNoTrace) {
  FillAtRandom(StoreElements(), 3);
  const std::string text = ModelText();
  for (const std::string& read : {JoinLines(LinesOf(text), "\r\n"), text.substr(0, text.size() - 1)}) {
    ResetStores();
    ASSERT_TRUE(ReadModelText(read));
    EXPECT_EQ(ModelText(), text);
  }
}

TEST_F(ModelTextTest, ALineOfAnyLengthIsOneLine) {
  const std::string filler(100'000, '9');
  std::vector<std::string> lines = LinesOf(ModelText());
  lines[2] = filler;
  lines[1] = "A title" + std::string(100'000, ' ') + "with a tail";
  lines[3] =
      std::string(100'000, ' ') + "1 " + std::string(99'999, '0') + "5 " + filler + "." + filler + " 0.5";
  lines[4] = "1 1 0." + std::string(99'999, '0') + "1 0.75";
  ASSERT_TRUE(ReadModelText(JoinLines(lines)));
  EXPECT_EQ(Model.ModelTitle.size(), 299U);
  EXPECT_EQ(Model.StateMonitored[1], 5);
  EXPECT_EQ(Model.StateConductance[1], 0.0F) << "a number of 100,000 digits is none";
  EXPECT_EQ(Model.StartOccupancy[1], 0.5F);
  EXPECT_EQ(Model.StateConductance[2], 0.0F);
  EXPECT_EQ(Model.StartOccupancy[2], 0.75F);
}

TEST_F(ModelTextTest, TheTablesStatesThatAreOnFollowItsRates) {
  Model.TableRate[1][7] = 5;
  const std::string text = ModelText();
  ResetStores();
  ASSERT_TRUE(ReadModelText(text));
  EXPECT_EQ(Model.TableStateOn[7], 1);
  EXPECT_EQ(Model.TableStateOn[1], 0);
}

}  // namespace
}  // namespace zelvane
