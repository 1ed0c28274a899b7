// Averages of sweeps: alignment against its plain form, sums and counts at the edges, variance, exports, the panel.
#include "analysis/averages.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <random>

#include "analysis/analysis_store.h"
#include "analysis/averages_files.h"
#include "analysis/averages_store.h"
#include "analysis/plain_averages.h"
#include "platform/index.h"
#include "support/drive_test.h"
#include "trace/trace_store.h"

namespace zelvane {
namespace {

class AveragesTest : public StoreTest {
 protected:
  void SetUp() override {
    StoreTest::SetUp();
    Model.NumPoints = 1000;
    Model.ADInterval = 0.1F;
    Trace.TraceValid = 1;
    Averages.WaveBaselineStart = 0.0F;
    Averages.WaveStartAnalysis = 10.0F;
    Averages.WavePeakSearchPts = 400;
  }

  /// Fills the trace with a response that begins at `onset`, on a baseline of 5, with noise.
  void Fill(int onset, double noise, unsigned seed = 1, double baseline = 5) {
    std::mt19937 random(seed);
    std::normal_distribution<double> normal(0.0, 1.0);
    for (int i = 0; i < Model.NumPoints; ++i) {
      const double t = (i - onset) * 0.1;
      const double response = t > 0.0 ? -80 * (1 - std::exp(-t)) * std::exp(-t / 12) : 0.0;
      Trace.SimTrace[Index(i)] = static_cast<float>(baseline + response + noise * normal(random));
    }
  }
};

TEST_F(AveragesTest, IdenticalSweepsGiveThemselvesAndAPeakOfAHundredPercent) {
  Averages.AlignMode = AlignAtPeak;
  Fill(200, 0.0);
  WaveAddAverage();
  WaveAddAverage();
  EXPECT_EQ(Averages.AlignAnchor, Averages.WavePeakPos);
  const std::vector<float> mean = MeanWave();
  for (std::size_t i = 0; i < 1000; ++i) ASSERT_FLOAT_EQ(mean[i], Trace.SimTrace[i]);
  EXPECT_NEAR(NormalizedWave()[Index(Averages.WavePeakPos)], 100, 1e-3);
  EXPECT_EQ(VarianceWave()[500], 0);
}

TEST_F(AveragesTest, EverySweepIsLaidOnTheFirstByEachRule) {
  for (const int mode : {AlignByFit, AlignAtRise, AlignAtPeak}) {
    SCOPED_TRACE(mode);
    ClearAverage();
    Averages.AlignMode = mode;
    for (const int onset : {200, 210, 195, 203}) {
      Fill(onset, 0.0, 1, 0);  // the fit divides by the peak with its baseline
      WaveAddAverage();
    }
    Fill(200, 0.0, 1, 0);
    const std::vector<float> mean = MeanWave();
    for (std::size_t i = 100; i < 900; ++i) ASSERT_NEAR(mean[i], Trace.SimTrace[i], 1e-3) << i;
    EXPECT_EQ(Averages.WaveCount[500], 4);
    EXPECT_EQ(Averages.WaveCount[0], 3) << "the sweep moved right by 5 did not reach it";
    EXPECT_EQ(Averages.WaveCount[999], 2) << "nor did those moved left";
    EXPECT_EQ(Averages.WaveCount[1000], 0);
  }
  ClearAverage();
  Averages.AlignMode = AlignAtCursor;
  Averages.AlignCursor = 250.7;
  WaveAddAverage();
  EXPECT_EQ(Averages.AlignAnchor, 250);
  Averages.AlignMode = AlignNot;
  Averages.AlignAnchor = 0;
  WaveAddAverage();
  EXPECT_EQ(Averages.WaveCount[0], 2) << "as it lies";
}

TEST_F(AveragesTest, SumsAndAlignmentAreThoseOfThePlainForm) {
  PlainSums plain;
  Averages.WaveBaselineCorrect = 1;
  for (unsigned sweep = 0; sweep < 8; ++sweep) {
    Fill(200 + static_cast<int>(sweep * 7 % 11), 3.0, sweep);
    WaveMeasure();
    const int range = Averages.WaveRisePoints * Averages.AlignRange;
    const AlignSearch search{Averages.SteepestPos, 2 * range, Averages.AlignAnchor, range};
    const int point =
        sweep == 0 ? Averages.SteepestPos : PlainAlign(Trace.SimTrace, Averages.WavePeak, plain, search);
    const int anchor = sweep == 0 ? point : Averages.AlignAnchor;
    WaveAddAverage();
    PlainAdd(plain, Trace.SimTrace, 1000, std::int64_t{point} - anchor, Averages.WaveBaseline,
             Averages.WaveBaseline, Averages.WavePeak);
  }
  for (std::size_t k = 0; k < 1100; ++k) {
    ASSERT_EQ(Averages.WaveSum[k], plain.sum[k]) << k;
    ASSERT_EQ(Averages.WaveCount[k], plain.count[k]) << k;
    ASSERT_EQ(Averages.WaveNormSum[k], plain.norm[k]) << k;
  }
}

TEST_F(AveragesTest, TheVarianceIsThatOfTheNoise) {
  Averages.AlignMode = AlignNot;
  for (unsigned sweep = 0; sweep < 400; ++sweep) {
    Fill(200, 2.0, sweep + 1);
    WaveAddAverage();
  }
  double sum = 0.0;
  for (const float v : VarianceWave()) sum += static_cast<double>(v);
  EXPECT_NEAR(sum / 1000, 4.0, 4.0 * 3 * std::sqrt(2.0 / (399.0 * 1000))) << "three standard errors";
  EXPECT_EQ(Averages.Faint.size(), 200U);
}

TEST_F(AveragesTest, ASearchBeyondTheRecordIsToldAndAddsAtPlaceZero) {
  Fill(200, 0.0);
  WaveAddAverage();
  Averages.AlignRange = 100'000;
  WaveAddAverage();
  EXPECT_EQ(popups,
            (std::vector<SeenPopup>{{"! Error", "Searching position in data record exceeds file length."}}));
  EXPECT_EQ(Averages.AverageCount, 2);
  EXPECT_EQ(Averages.WaveCount[0], 1) << "moved by the whole anchor";
}

TEST_F(AveragesTest, TheSteepestRiseIsTheFirstOfEqualOnesMovedByHalfTheWindow) {
  Floats ramp;
  for (int i = 0; i < 100; ++i) ramp.push_back(static_cast<float>(i));
  EXPECT_EQ(SteepestRise(ramp, 20, 60, 6), 23);
  EXPECT_EQ(SteepestRise(ramp, 20, 60, 0), 21);
  ramp[50] = 80;
  EXPECT_EQ(SteepestRise(ramp, 20, 60, 6), 53);
  EXPECT_EQ(SteepestRise({}, 2, 6, 6), 0);
  EXPECT_EQ(SteepestRise(ramp, 3, 400, 6), 53) << "both ends outside";
}

TEST_F(AveragesTest, RecordsWithoutAResponseHarmNothing) {
  for (const int points : {0, 1, 1000}) {
    Model.NumPoints = points;
    std::fill_n(Trace.SimTrace.begin(), 1000, points == 1000 ? std::nanf("") : 2.0F);
    WaveAddAverage();
    WaveAddAverage();
  }
  EXPECT_EQ(Averages.AverageCount, 6);
  EXPECT_EQ(Averages.WaveNormSum[0] == 0.0F || std::isnan(Averages.WaveNormSum[0]), true);
}

class WavePanelTest : public DriveTest {
 protected:
  const std::string file = Recordings + "abf2/20101002.abf";
  const std::string opened = "open " + file +
                             "\npress Waveform\nenter WaveBaselineStart 0\nenter WaveBaselinePts 1\n" +
                             "enter WaveStartAnalysis 2\nenter WavePeakSearchPts 1.5\n";
};

TEST_F(WavePanelTest, SweepsAreAddedExportedReadBackAndCleared) {
  const std::string average = folder.File("mean.ave");
  const auto lines = Run(
      opened + "press FxnAverageNextButton\npress AddAverageButton\npress FxnAverageAll\nget AverageCount\n" +
      "get EpisodeIndex\nchoose " + average + "\npress ExportWaveAverage\nchoose " + average +
      "\npress ExportWaveAverage\nanswer no\nchoose " + folder.File("n.nrm") +
      "\npress ExportWaveNormalized\nchoose " + folder.File("n.nrm") +
      "\npress ExportWaveNormalized\nchoose " + folder.File("v.csv") + "\npress ExportWaveVariance\nchoose " +
      folder.File("t.asc") + "\npress ExportWaveTrace\n");
  EXPECT_EQ(Averages.AverageCount, 5);
  EXPECT_EQ(Trace.EpisodeIndex, 2) << "as before all were added";
  const std::string normalized = ReadWholeFile(folder.File("n.nrm"));
  const std::string half = normalized.substr(0, normalized.size() / 2);
  EXPECT_EQ(half + half, normalized) << "appended";
  EXPECT_TRUE(ReadWholeFile(folder.File("v.csv")).starts_with("Time (ms),Mean,Variance,Sweeps\n0,"));
  const std::vector<float> mean = MeanWave();
  std::string told;
  for (const auto& line : lines) told += line.dump();
  EXPECT_NE(told.find("mean.ave already exists.  Do you want to overwrite it?"), std::string::npos);
  Run("answer yes\nanswer yes\nopen " + average + "\n");
  ASSERT_GE(Model.NumPoints, static_cast<int>(mean.size()));
  for (std::size_t i = 0; i < mean.size(); ++i)
    ASSERT_NEAR(Trace.SimTrace[i], mean[i], 1e-6 * std::fabs(mean[i])) << "seven digits";
  Run(opened + "press AddAverageButton\npress ClearAverageButton\nanswer yes\npress ClearAverageButton\n");
  EXPECT_EQ(Averages.AverageCount, 0);
  EXPECT_EQ(Averages.WaveCount[100], 0);
  EXPECT_EQ(AverageColumn(MeanWave(), 0.5F), "5.000000e-01\n") << "an empty average";
}

TEST_F(WavePanelTest, CursorsAndFieldsFollowEachOther) {
  const auto lines = Run(
      opened + "cursor WaveAnalysisPanel.compressed 2 30\ncursor WaveAnalysisPanel.compressed 1 130\n" +
      "get WaveStartAnalysis\nget WavePeakSearchPts\ncursor WaveAnalysisPanel.expanded 4 90\n" +
      "get WavePeakSearchPts\ncursor WaveAnalysisPanel.expanded 7 60\ncontrol ManualRiseIndex\n" +
      "enter AlignMode 2\nenter ManualRise 4\ncontrol ManualRiseIndex\nenter ShowAverage 1\npress AddAverageButton\n");
  const Values told = Told(lines);
  EXPECT_EQ(told, (Values{1.5, 100, 60, "60", "80"}));
  EXPECT_EQ(Averages.AlignAnchor, 80);
  EXPECT_EQ(GraphNamed("WaveAnalysisPanel.expanded").plots.back().colour.green, 144)
      << "the average is green";
  EXPECT_EQ(Screen.PanelTag, "WV");
}

}  // namespace
}  // namespace zelvane
