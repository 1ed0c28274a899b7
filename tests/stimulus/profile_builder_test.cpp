// The engine of the profiles: indices, levels, waveforms and trains, against closed forms and plain loops.
#include "stimulus/profile_builder.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <vector>

namespace zelvane {
namespace {

constexpr float Interval = 0.01F;
constexpr float Infinite = std::numeric_limits<float>::infinity();
constexpr float NotANumber = std::numeric_limits<float>::quiet_NaN();

const KeepGoing Always = [](double) { return true; };

std::vector<float> Train(std::size_t size, const Pulse& pulse, const PulseTrain& train,
                         float interval = Interval) {
  std::vector<float> profile(size, 0.25F);
  std::vector<float> scratch(size);
  AddTrain(profile, pulse, train, interval, scratch, Always);
  return profile;
}

TEST(LevelsTest, ALevelReplacesWhateverTheProfileHeld) {
  std::vector<float> profile(5000, NotANumber);
  FillLevel(SamplesWithin(profile, 1500, 3000), 3.0F);
  FillLevel(SamplesWithin(profile, 0, 1500), -0.0F);
  FillLevel(SamplesWithin(profile, 0, 2000), 0.0F);
  for (std::size_t i = 0; i < profile.size(); ++i) {
    const bool cleared = profile[i] == 0.0F && !std::signbit(profile[i]);
    ASSERT_TRUE(i < 2000 ? cleared : i < 3000 ? profile[i] == 3.0F : std::isnan(profile[i])) << i;
  }
}

TEST(LevelsTest, WhatLiesOutsideTheProfileIsLeftOut) {
  const std::int64_t far = std::int64_t{1} << 53;
  std::vector<float> profile(10, 0.0F);
  AddStep(profile, 1.0F, -far, 3);
  AddStep(profile, 2.0F, 7, far);
  AddStep(profile, 4.0F, 5, 5);
  AddStep(profile, 8.0F, 6, 2);
  EXPECT_EQ(profile, (std::vector<float>{1, 1, 1, 0, 0, 0, 0, 2, 2, 2}));
}

TEST(LevelsTest, ARampEndsOneIncrementBelowItsAmplitude) {
  std::vector<float> profile(8, 1.0F);
  AddRamp(profile, 4.0F, 2, 6);
  EXPECT_EQ(profile, (std::vector<float>{1, 1, 1, 2, 3, 4, 1, 1}));
  std::vector<float> one(4, 1.0F);
  AddRamp(one, 4.0F, 2, 3);
  EXPECT_EQ(one, (std::vector<float>{1, 1, 1, 1})) << "a ramp over one sample adds nothing";
  std::vector<float> cut(4, 0.0F);
  AddRamp(cut, 8.0F, -4, 4);
  EXPECT_EQ(cut, (std::vector<float>{0, 1, 2, 3})) << "samples are counted from the first one touched";
}

// Closed forms, t = k x interval; over 500 samples the running sum differs from it by less than 1e-6 of its
// value.
TEST(WaveformTest, EdgedAndExponentialPulsesFollowTheirClosedForms) {
  constexpr std::int64_t Rise = 200;
  std::vector<float> out(500);
  SamplePulse(EdgedPulse{3.0F, 0.5F, 1.5F, Rise}, Interval, 0, out);
  for (int k = 0; k < 500; ++k) {
    const double expected =
        k < Rise ? 3.0 * (1.0 - std::exp(-k * 0.01 / 0.5)) : 3.0 * std::exp(-(k - Rise) * 0.01 / 1.5);
    ASSERT_NEAR(out[static_cast<std::size_t>(k)], expected, 1e-5) << k;
  }
  for (const int components : {1, 2}) {
    for (const bool rises : {false, true}) {
      SamplePulse(ExponentialPulse{0.5F, 2.0F, 3.0F, 1.0F, 4.0F, 0.25F, components, rises}, Interval, 0, out);
      for (int k = 0; k < 500; ++k) {
        const double t = k * 0.01;
        const double second = components == 2 ? 3.0 : 0.0;
        const double rise = rises ? (2.0 + second) * std::exp(-t / 0.25) : 0.0;
        const double expected = 0.5 + 2.0 * std::exp(-t) + second * std::exp(-t / 4.0) - rise;
        ASSERT_NEAR(out[static_cast<std::size_t>(k)], expected, 1e-5) << components << rises << k;
      }
    }
  }
}

TEST(WaveformTest, TimeIsARunningSumInSinglePrecision) {
  constexpr std::size_t Count = 2'000'000;  // here the sum differs from k x interval by several percent
  std::vector<float> out(Count);
  SamplePulse(ExponentialPulse{0.0F, 1.0F, 0.0F, 20000.0F, 0.0F, 0.0F, 1, false}, Interval, 0, out);
  float t = 0.0F;
  for (std::size_t k = 0; k + 1 < Count; ++k) t += Interval;
  ASSERT_GT(std::abs(t - 20000.0F), 100.0F);
  EXPECT_EQ(out.back(), static_cast<float>(std::exp(-static_cast<double>(t) / 20000.0)));
}

TEST(WaveformTest, ATimeConstantOfZeroIsAnEdgeForStepsAndNothingForExponentials) {
  std::vector<float> out(4);
  SamplePulse(EdgedPulse{2.0F, 0.0F, 0.0F, 2}, Interval, 0, out);
  EXPECT_EQ(out, (std::vector<float>{2, 2, 0, 0}));
  EXPECT_FALSE(AddsNothing(EdgedPulse{}));
  using Case = std::tuple<float, float, float, int, bool, bool>;
  for (const auto& [tau1, tau2, riseTau, components, rises, nothing] :
       {Case{1, 0, 0, 1, false, false}, Case{0, 1, 1, 1, false, true}, Case{1, 0, 1, 2, false, true},
        Case{1, 1, 0, 2, true, true}, Case{1, 1, 1, 2, true, false}, Case{1, 1, 1, 3, false, true},
        Case{1, 1, 1, 0, false, true}}) {
    EXPECT_EQ(AddsNothing(ExponentialPulse{1, 1, 1, tau1, tau2, riseTau, components, rises}), nothing);
  }
}

// -- Trains, against single pulses --

/// The plain form: samples every pulse again and adds it alone.
std::vector<float> PlainTrain(std::size_t size, const Pulse& pulse, const PulseTrain& train) {
  std::vector<float> profile(size, 0.25F);
  const auto* square = std::get_if<SquarePulse>(&pulse);
  const auto* edged = std::get_if<EdgedPulse>(&pulse);
  const std::int64_t body = square != nullptr ? square->samples : edged != nullptr ? edged->samples : 0;
  std::vector<float> wave(4 * size);
  SamplePulse(pulse, Interval, 0, wave);
  for (int p = 0; p < train.count; ++p) {
    const std::int64_t start = PulseStart(train, p);
    if (start + body >= static_cast<std::int64_t>(size)) continue;
    for (std::int64_t i = start; i < static_cast<std::int64_t>(size); ++i) {
      if (square != nullptr && i >= start + body) break;
      profile[static_cast<std::size_t>(i)] += wave[static_cast<std::size_t>(i - start)];
    }
  }
  return profile;
}

TEST(TrainTest, EqualsOnePulseAfterTheOtherBitForBit) {
  std::mt19937 random(20240607);
  std::uniform_real_distribution<double> uniform(0.0, 1.0);
  for (int round = 0; round < 60; ++round) {
    SCOPED_TRACE(round);
    const auto samples = static_cast<std::int64_t>(uniform(random) * 400);
    const Pulse pulses[] = {SquarePulse{0.3F, samples}, EdgedPulse{0.3F, 0.7F, 2.0F, samples},
                            ExponentialPulse{0.1F, 0.3F, 0.2F, 1.0F, 5.0F, 0.3F, 2, true}};
    PulseTrain train{uniform(random) * 800, 1.0 + uniform(random) * 90,
                     1 + static_cast<int>(uniform(random) * 20)};
    if (round % 3 == 0) train = {train.first + train.step * train.count, -train.step, train.count};
    for (const Pulse& pulse : pulses) EXPECT_EQ(Train(1000, pulse, train), PlainTrain(1000, pulse, train));
  }
}

TEST(TrainTest, PulsesOnOneSampleAreAddedTogetherAtOnce) {
  std::vector<float> expected(100, 0.25F);
  for (std::size_t i = 10; i < 30; ++i) expected[i] += 2'000'000'000.0F * 0.5F;
  EXPECT_EQ(Train(100, SquarePulse{0.5F, 20}, {10.9, 0.0, 2'000'000'000}), expected);
  // Four pulses per sample: 1 ms / 4 between starts, samples of 1 ms.
  const std::vector<float> fine = Train(100, SquarePulse{1.0F, 1}, {10.0, 0.25, 12});
  for (std::size_t i = 0; i < fine.size(); ++i) EXPECT_EQ(fine[i], i >= 10 && i < 13 ? 4.25F : 0.25F) << i;
}

TEST(TrainTest, TailsEnterFromBeforeTheRecordAndFromAStopBeforeTheStart) {
  const std::vector<float> tail = Train(300, EdgedPulse{2.0F, 0.5F, 1.0F, 50}, {-150.0, 0.0, 1});
  for (std::size_t i = 0; i < tail.size(); ++i) {
    ASSERT_NEAR(tail[i], 0.25 + 2.0 * std::exp(-(static_cast<double>(i) + 100.0) * 0.01), 1e-5) << i;
  }
  EXPECT_EQ(Train(50, SquarePulse{1.0F, 20}, {-30.0, 0.0, 1}), std::vector<float>(50, 0.25F));
  const std::vector<float> early = Train(300, EdgedPulse{2.0F, 0.5F, 1.0F, -50}, {150.0, 0.0, 1});
  EXPECT_EQ(early[99], 0.25F);
  EXPECT_EQ(early[100], 2.25F);
  EXPECT_NEAR(early[200], 0.25 + 2.0 * std::exp(-1.0), 1e-5);
}

TEST(TrainTest, NothingIsAddedForIntervalsThatAreNone) {
  for (const float interval : {0.0F, NotANumber}) {
    const double step = 1.0 / static_cast<double>(interval);
    EXPECT_EQ(Train(50, SquarePulse{1.0F, TimeIndex(1.0F, interval)}, {step, step, 1'000'000}, interval),
              std::vector<float>(50, 0.25F));
  }
}

}  // namespace
}  // namespace zelvane
