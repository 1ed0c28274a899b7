// The samples that a fit compares, baselines, and the normalised set.
#include "fit/wave_compare.h"

#include <cmath>
#include <vector>

#include "fit/wave_faults.h"
#include "model/model_store.h"
#include "support/store_test.h"

namespace zelvane {
namespace {

class WaveCompareTest : public StoreTest {
 protected:
  /// Loads a step from `base` to `peak` at sample 10, 40 samples long, with an interval of 0.125 ms.
  static void Load(int w, float base, float peak) {
    FitWaveform& wave = Fit.Wave[Index(w)];
    for (std::size_t i = 0; i < 40; ++i) wave.WaveData[i] = i < 10 ? base : peak;
    wave.WaveLoaded = 1;
    wave.DataLength = 40;
    FitWindow& window = Fit.Waveform[Index(w)];
    window = {.DataBaselineStart = 0.125F, .DataFitStart = 1.0F, .NumBaselinePts = 8, .NumFitPts = 20};
  }

  WaveCompareTest() { Model.ADInterval = 0.125F; }
};

TEST(ComparedSamples, AreDenseAtFirstAndThenEveryNth) {
  struct Case {
    int samples, dense, parse;
    std::vector<int> offsets;
  };
  for (const Case& c :
       {Case{11, 2, 3, {0, 1, 2, 5, 8}}, Case{4, 0, 1, {0, 1, 2, 3}}, Case{5, 0, 2, {0, 2, 4}},
        Case{3, 0, 0, {0, 1, 2}}, Case{0, 0, 1, {}}, Case{-5, 0, 1, {}}}) {
    std::vector<int> offsets;
    const int count = ForComparedSamples(c.samples, {c.dense, c.parse}, [&](std::size_t k, int offset) {
      EXPECT_EQ(k, offsets.size());
      offsets.push_back(offset);
    });
    EXPECT_EQ(offsets, c.offsets) << c.samples;
    EXPECT_EQ(count, static_cast<int>(c.offsets.size()));
  }
  EXPECT_EQ(ForComparedSamples(3'000'000, {0, 1}, [](std::size_t, int) {}), MaxWaveformPoints);
}

TEST(WaveBaselines, CountOnlySamplesOfTheRecord) {
  const std::vector<float> record = {1.0F, 2.0F, 3.0F, 6.0F};
  EXPECT_EQ(WaveBaseline(record, 1, 2), 2.5F);
  EXPECT_EQ(WaveBaseline(record, 2, 100), 4.5F);
  EXPECT_EQ(WaveBaseline(record, 4, 2), 0.0F);
  EXPECT_EQ(WaveBaseline(record, -9, 2), 1.5F);
  EXPECT_EQ(WaveBaseline(record, 0, -1), 0.0F);
}

TEST_F(WaveCompareTest, DataOfTheFitAreIndexAndRecordingLessItsBaseline) {
  Load(1, 1.0F, 5.0F);
  Fit.FitParse = 3;
  Fit.Wave[1].FitData[7] = 9.0F;  // of a longer fit before
  FitDataBuild();
  EXPECT_EQ(Fit.Wave[1].FittedCount, 7);
  EXPECT_EQ(Fit.Wave[1].FitX[1], 11.0F);
  EXPECT_EQ(Fit.Wave[1].FitData[0], 0.0F);
  EXPECT_EQ(Fit.Wave[1].FitData[1], 4.0F);
  EXPECT_EQ(Fit.Wave[1].FitData[7], 0.0F);
  EXPECT_TRUE(notes.empty());
}

TEST_F(WaveCompareTest, AFitBeyondTheRecordingReadsNoSampleAfterTheArray) {
  Load(1, 1.0F, 5.0F);
  Fit.Waveform[1].NumFitPts = 100;
  FitDataBuild();
  EXPECT_EQ(Fit.Wave[1].FitData[49], -1.0F);
  Fit.Waveform[1].DataFitStart = 3e8F;
  Fit.Waveform[1].DataBaselineStart = -1e30F;
  FitDataBuild();
  EXPECT_EQ(Fit.Wave[1].FitData[49], -1.0F);
}

TEST_F(WaveCompareTest, FaultsOfTheWaveformsAreToldOnceForEachKind) {
  for (const int w : {1, 2, 4}) {
    Load(w, 1.0F, 5.0F);
    FitWaveform& wave = Fit.Wave[Index(w)];
    wave.StimOn = 1;
    wave.StimLength = 60;
    wave.WaveDataInterval = wave.WaveStimInterval = 0.125F;
  }
  TellWaveFaults();
  EXPECT_EQ(notes, Texts{});
  Fit.Waveform[1].NumFitPts = 0;
  Fit.Waveform[2].NumFitPts = Fit.Waveform[4].NumFitPts = 50;
  Fit.Waveform[2].DataBaselineStart = 4.5F;
  Fit.Wave[4].WaveStimInterval = 0.25F;
  EXPECT_TRUE(WaveIntervalsDiffer());
  TellWaveFaults();
  EXPECT_EQ(notes,
            (Texts{"Waveform 1: there are no fit points, so nothing is compared.",
                   "Waveforms 2, 4: the recording ends before the fit does; the rest is compared with 0.",
                   "Waveforms 2, 4: the stimulus ends before the fit does; from there on the voltage and all "
                   "drugs are 0.",
                   "Waveform 2: the baseline goes beyond the end of the recording, where all samples are 0.",
                   "Waveform 4: the intervals of recording and stimulus differ."}));
}

TEST_F(WaveCompareTest, NormalisedRecordingsAreInUnitsOfTheFirstPeak) {
  Fit.FitNormalized = 1;
  EXPECT_EQ(NormalizeWaves(), Outcome::Refused);
  EXPECT_EQ(Fit.FitNormalized, 0);
  Load(1, 1.0F, 5.0F);
  Load(2, 2.0F, 4.0F);
  Fit.FitNormalized = 1;
  EXPECT_EQ(NormalizeWaves(), Outcome::Done);
  EXPECT_EQ(NormalizeWaves(), Outcome::Done) << "once";
  EXPECT_EQ(Fit.Wave[1].WaveData[5], 0.0F);
  EXPECT_EQ(Fit.Wave[1].WaveData[20], 1.0F);
  EXPECT_EQ(Fit.Wave[2].WaveData[20], 0.5F);
  EXPECT_EQ(Fit.Wave[2].WaveData[MaxWaveformPoints - 1], -0.5F)
      << "0 before, so that it stays below the baseline";
  EXPECT_EQ(popups.size(), 1U);
}

TEST_F(WaveCompareTest, ARecordingWithoutAPeakIsDividedByOneAndStaysFinite) {
  Load(1, 3.0F, 3.0F);
  Fit.FitNormalized = 1;
  NormalizeWaves();
  EXPECT_EQ(popups.back().text, "No peak found in 1st dataset.");
  EXPECT_EQ(Fit.Wave[1].WaveData[5], 0.0F);
}

TEST_F(WaveCompareTest, AnIncompletePairLosesItsSwitchesAndStaysInTheFit) {
  Load(2, 1.0F, 5.0F);
  Load(3, 1.0F, 5.0F);
  Fit.Wave[2].DataOn = 1;
  Fit.Wave[3].StimOn = 1;
  Fit.Wave[4].StimOn = 1;
  ValidPairs();
  EXPECT_EQ(PopupTexts(), (Texts{"Both stimulus2 and data2 file must be loaded",
                                 "Both stimulus3 and data file3 must be loaded",
                                 "Both stimulus4 and data4 file must be loaded"}));
  EXPECT_EQ(Fit.Wave[2].DataOn + Fit.Wave[3].StimOn + Fit.Wave[4].StimOn, 0);
  EXPECT_EQ(Fit.Wave[2].WaveLoaded, 1);
  EXPECT_EQ(notes.size(), 2U) << "waveforms 2 and 3 have an empty stimulus";
}

TEST_F(WaveCompareTest, PeaksAreComparedWithTheirSigns) {
  Fit.FitPeakSearchPts = 20;
  Load(1, 0.0F, -2.0F);
  Load(2, 0.0F, -5.0F);
  EXPECT_TRUE(FirstPeakIsLargest());
  Load(2, 0.0F, -1.0F);
  EXPECT_FALSE(FirstPeakIsLargest());
  EXPECT_EQ(popups.back().text,
            "Peak for waveform 2 is larger than first waveform; reload so that first waveform is largest.");
  EXPECT_EQ(notes.size(), 1U);
}

}  // namespace
}  // namespace zelvane
