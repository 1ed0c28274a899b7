// The operations on the profiles: what each mode builds and what each creator adds.
#include "stimulus/stimulus.h"

#include "run/result_store.h"
#include "screen/popups.h"
#include "screen/popups_store.h"
#include "stimulus/stimulus_store.h"
#include "support/store_test.h"
#include "trace/noise_store.h"

namespace zelvane {
namespace {

/// The panels show the stores: after a change of a store Show() replaces the user's typing.
class StimulusTest : public PanelTest {
 protected:
  StimulusTest() { Show(); }
  static void Show() { WriteAllControls(); }
  static std::span<float> Voltage() { return Stimulus.Profile[0]; }
  static std::span<float> Drug(std::size_t drug) { return Stimulus.Profile[drug]; }

  static void Manual(int numPoints) {
    Stimulus.StimMode = StimManual;
    Model.NumPoints = numPoints;
    Show();
  }
};

/// Returns the first and last index at which the profile differs from `level`; -1, -1 without a difference.
std::pair<int, int> Span(std::span<const float> profile, float level) {
  std::pair<int, int> span{-1, -1};
  for (std::size_t i = 0; i < profile.size(); ++i) {
    if (profile[i] == level) continue;
    if (span.first < 0) span.first = static_cast<int>(i);
    span.second = static_cast<int>(i);
  }
  return span;
}

TEST_F(StimulusTest, TheAutomaticDrugStepFillsAllSamplesAndNothingElse) {
  Drug(1)[MaxStimPoints - 1] = 7.0F;
  Drug(2)[3] = 8.0F;
  Voltage()[MaxStimPoints - 1] = 9.0F;
  Model.VHold = -60.0F;
  Stimulus.StimFromFile = 1;
  StimRebuild();
  EXPECT_EQ(Span(Drug(1), 0.0F), std::pair(100, 9899));
  EXPECT_EQ(Drug(1)[100], 0.005F);
  EXPECT_EQ(Span(Voltage(), -60.0F / 1000.0F), std::pair(-1, -1));
  EXPECT_EQ(Drug(2)[3], 8.0F);
  EXPECT_EQ(Stimulus.StimFromFile, 0);
  Model.FitActive = 1;  // a running fit keeps the profiles
  Drug(1)[0] = 2.0F;
  StimRebuild();
  EXPECT_EQ(Drug(1)[0], 2.0F);
}

TEST_F(StimulusTest, TheAutomaticVoltageStepStandsOnTheHoldingPotential) {
  Model.VHold = -70.0F;
  Stimulus.AutoDrugOrVolt = 1;
  Stimulus.AutoValue = 0.1F;
  Drug(1)[5] = 1.0F;
  Show();
  StimRebuild();
  const float hold = -70.0F / 1000.0F;
  EXPECT_EQ(Span(Voltage(), hold), std::pair(100, 9899));
  EXPECT_EQ(Voltage()[5000], hold + 0.1F);
  EXPECT_EQ(Drug(1)[5], 1.0F) << "Drug1 stays as it was";
}

TEST_F(StimulusTest, IndicesFollowFromTimesByTruncation) {
  using Case = std::tuple<float, float, float, int, int>;
  for (const auto& [interval, start, stop, first, last] :
       {Case{0.01F, 1.0F, 99.0F, 100, 9899}, Case{0.1F, 1.0F, 2.0F, 9, 18}, Case{0.01F, 5.0F, 5.0F, -1, -1},
        Case{0.01F, 9.0F, 3.0F, -1, -1}, Case{0.01F, -5.0F, 1.0F, 0, 99}, Case{0.0F, 0.0F, 0.0F, -1, -1},
        Case{-0.01F, -1.0F, -2.0F, 100, 199}, Case{0.01F, 1.0F, 1e30F, 100, MaxStimPoints - 1},
        Case{std::nanf(""), 1.0F, 2.0F, -1, -1}}) {
    SCOPED_TRACE(interval);
    Model.ADInterval = interval;
    Stimulus.AutoStart = start;
    Stimulus.AutoStop = stop;
    Show();
    StimRebuild();
    EXPECT_EQ(Span(Drug(1), 0.0F), std::pair(first, last));
  }
}

TEST_F(StimulusTest, TheAutomaticStepIsFilteredOnlyWhileDrug1IsShown) {
  Stimulus.AutoFilterOn = 1;
  for (const int target : {0, 1}) {
    Stimulus.StimTarget = target;
    Show();
    StimRebuild();
    EXPECT_EQ(Drug(1)[99] > 0.0F, target == 1);
    EXPECT_NEAR(Drug(1)[5000], 0.005F, 1e-7F);
  }
}

TEST_F(StimulusTest, StepsAreAddedToWhatTheTargetHoldsUpToNumPoints) {
  Stimulus.StimTarget = 3;
  Manual(5000);
  Drug(3)[5000] = 4.0F;
  CreateStim();
  CreateStim();
  EXPECT_EQ(Span(Drug(3), 0.0F), std::pair(100, 5000)) << "clipped without a message";
  EXPECT_EQ(Drug(3)[4999], 0.01F);
  EXPECT_EQ(Drug(3)[5000], 4.0F);
  Stimulus.StepStop = 0.5F;
  Show();
  CreateStim();
  EXPECT_EQ(Drug(3)[200], 0.01F) << "a stop before the start adds nothing";
  EXPECT_TRUE(popups.empty());
}

TEST_F(StimulusTest, AnEdgedStepAndARampFollowTheirFields) {
  Stimulus.StepStop = 3.0F;
  Stimulus.StepDecayTau = 2.0F;
  Manual(1000);
  CreateExpStim();
  EXPECT_NEAR(Drug(1)[200], 0.005 * (1.0 - std::exp(-1.0 / 5.0)), 3e-8);
  EXPECT_NEAR(Drug(1)[400], 0.005 * std::exp(-1.0 / 2.0), 3e-8);
  Stimulus.StepRamp = 1;
  Stimulus.StimTarget = 2;
  Show();
  CreateStim();
  EXPECT_EQ(Span(Drug(2), 0.0F), std::pair(101, 299));
}

TEST_F(StimulusTest, AnEdgedStepMustStopInsideTheRecord) {
  constexpr char Text[] = "Stop position is past end of arra; increase number of simulated points.";
  for (const int points : {9901, 9900}) {
    Manual(points);
    EXPECT_TRUE(popups.empty());
    CreateExpStim();
    EXPECT_FLOAT_EQ(Drug(1)[9900], 0.005F);
  }
  EXPECT_EQ(PopupTexts(), Texts{Text});
}

TEST_F(StimulusTest, AnExponentialWaveformFollowsItsFieldsFromItsStart) {
  Stimulus.StimMode = StimExponential;
  Stimulus.ExpAmp2 = 3.0F;
  Stimulus.ExpTau2 = 4.0F;
  Stimulus.ExpComponents = 2;
  Stimulus.ExpRiseFlag = 1;
  Model.NumPoints = 2000;
  Show();
  CreateExp();
  EXPECT_EQ(Drug(1)[999], 0.0F) << "the offset begins with the waveform";
  EXPECT_NEAR(Drug(1)[1100], 1.0 + std::exp(-1.0) + 3.0 * std::exp(-0.25) - 4.0 * std::exp(-10.0), 1e-5);
  EXPECT_EQ(Drug(1)[2000], 0.0F);
}

TEST_F(StimulusTest, ATrainFollowsItsFieldsAndSkipsPulsesThatDoNotFit) {
  Stimulus.TrainExpFlag = 0;
  Stimulus.TrainRiseFlag = 0;
  Stimulus.TrainCount = 3;
  for (const auto& [points, first, last] : {std::tuple{10240, -1, -1}, {20000, 10000, 19899}}) {
    Manual(points);
    CreateTrain();
    EXPECT_EQ(Span(Drug(1), 0.0F), std::pair(first, last)) << "the last pulse would end at the last point";
  }
  EXPECT_EQ(Drug(1)[10099], 0.005F);
  EXPECT_EQ(Drug(1)[10100], 0.005F + 0.005F);
}

TEST_F(StimulusTest, ALongTrainMovesTheProgressAndStopsOnRequest) {
  Stimulus.TrainCount = 1'000'000;
  Stimulus.TrainDelay = 0.0F;
  Stimulus.TrainInterval = 0.01F;
  Stimulus.ExpTau1 = 1e-3F;
  RequestStop();  // for an earlier run
  Manual(1'000'000);
  onPump = [](int pump) { Requests.StopRequested = pump == 2 ? 1 : 0; };
  CreateTrain();
  EXPECT_EQ(pumps, 2);
  EXPECT_GT(Drug(1)[999'999], 1.0F);
  EXPECT_LT(Drug(1)[999'999], 100.0F);
}

TEST_F(StimulusTest, EraseClearsTheRunAndRebuilds) {
  Model.NumPoints = 1000;
  for (const std::size_t drug : {1U, 2U}) {
    Stimulus.StimTarget = static_cast<int>(drug);
    Drug(drug)[10] = 3.0F;
    Drug(drug)[1000] = 5.0F;
    Show();
    EraseStim();
    EXPECT_EQ(Drug(drug)[10], 0.0F);
    EXPECT_EQ(Drug(drug)[1000], drug == 1 ? 0.005F : 5.0F) << "the automatic step of Drug1 is back";
  }
}

TEST_F(StimulusTest, CreatorsOtherThanTheTrainEndAProtocolFromAFile) {
  Manual(10240);
  for (const auto& [create, fromFile] :
       {std::pair{&CreateStim, 0}, {+[] { CreateExpStim(); }, 0}, {&CreateExp, 0}, {&CreateTrain, 1}}) {
    Stimulus.StimFromFile = 1;
    create();
    EXPECT_EQ(Stimulus.StimFromFile, fromFile);
  }
}

}  // namespace
}  // namespace zelvane
