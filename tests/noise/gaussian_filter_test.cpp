// GaussianFilter: kernel, gain, ends and refusals. Gains are the closed form exp(-(ln 2 / 2)(f / fc)^2).
#include "noise/gaussian_filter.h"

#include <cmath>
#include <cstring>
#include <limits>
#include <numbers>
#include <random>

#include "model/model_store.h"
#include "noise/noise_store.h"
#include "plain_convolution.h"
#include "support/store_test.h"

namespace zelvane {
namespace {

using GaussianFilterTest = StoreTest;

constexpr char Aliasing[] = "Aliasing in data record at selecting filter frequency.";
constexpr char TooHeavy[] = "Requested filtering is too heavy; too many points to filter.";
constexpr char TooLight[] = "Requested filtering is too light; too few points to filter.";

std::vector<float> Ramp(std::size_t size) {
  std::vector<float> trace(size);
  for (std::size_t i = 0; i < size; ++i) trace[i] = static_cast<float>(i % 17);
  return trace;
}

// Coefficients worked out by hand for an interval of 0.01 ms: corner 2, 10 and 50 kHz.
TEST_F(GaussianFilterTest, KernelsHaveTheirWorkedCoefficientsAndUnitSum) {
  struct Case {
    float corner;
    int half;
    double a0, a1;
  };
  for (const Case& c : {Case{0.02F, 26, 0.060219, 0.059537}, Case{0.1F, 5, 0.301084, 0.226470},
                        Case{0.5F, 1, 0.929770, 0.035115}, Case{0.0006F, 883, 0.0, 0.0}}) {
    SCOPED_TRACE(c.corner);
    const GaussianKernel kernel = MakeGaussianKernel(c.corner);
    EXPECT_EQ(kernel.half, c.half);
    if (c.a0 > 0.0) {
      EXPECT_NEAR(kernel.coefficient[0], c.a0, 1e-6);
      EXPECT_NEAR(kernel.coefficient[1], c.a1, 1e-6);
    }
    double sum = kernel.coefficient[0];
    for (int i = 1; i <= c.half; ++i) sum += 2.0 * kernel.coefficient[static_cast<std::size_t>(i)];
    EXPECT_NEAR(sum, 1.0, 1e-5);
  }
  EXPECT_GT(MakeGaussianKernel(0.0005F).half, MaxKernelHalf);
}

TEST_F(GaussianFilterTest, AttenuatesSinesAsTheClosedFormSays) {
  Model.ADInterval = 0.01F;
  for (const double kHz : {0.5, 1.0, 2.0}) {
    SCOPED_TRACE(kHz);
    std::vector<float> trace(8000);
    const auto sine = [&](std::size_t i) {
      return std::sin(2.0 * std::numbers::pi * kHz * 0.01 * static_cast<double>(i));
    };
    for (std::size_t i = 0; i < trace.size(); ++i) trace[i] = static_cast<float>(sine(i));
    GaussianFilter(trace, 1.0F);
    const double gain = std::exp(-0.5 * std::numbers::ln2 * kHz * kHz);
    // The kernel ends at 4 standard deviations.
    for (std::size_t i = 1000; i < 7000; ++i) ASSERT_NEAR(trace[i], gain * sine(i), 2e-4) << i;
  }
}

TEST_F(GaussianFilterTest, SumsSideBySideEqualThePlainSumsBitForBit) {
  std::mt19937 random(7);
  std::normal_distribution<float> normal;
  constexpr float Infinite = std::numeric_limits<float>::infinity();
  // Around groups of 32 and 64 sums and blocks of 4096, for 1, 5, 26 and 883 coefficients a side.
  for (const float corner : {0.5F, 0.1F, 0.02F, 0.0006F}) {
    const GaussianKernel kernel = MakeGaussianKernel(corner);
    for (const int sums : {0, 1, 31, 32, 33, 63, 65, 4095, 4096, 4097, 9000}) {
      std::vector<float> in(static_cast<std::size_t>(sums + 2 * kernel.half));
      for (float& sample : in) sample = normal(random);
      if (sums % 2 == 1) in[in.size() / 2] = in.back() = corner > 0.05F ? Infinite : std::nanf("");
      std::vector<float> plain = in;
      std::vector<float> fast = in;
      PlainConvolve(plain, kernel);
      ConvolveInPlace(fast, kernel);
      for (std::size_t i = 0; i < in.size(); ++i) {
        const bool noNumber = std::isnan(fast[i]) && std::isnan(plain[i]);
        ASSERT_TRUE(noNumber || std::memcmp(&fast[i], &plain[i], sizeof(float)) == 0) << corner << ", " << i;
      }
    }
  }
}

TEST_F(GaussianFilterTest, RefusesKernelsThatAreTooLongAndLeavesTheTrace) {
  Model.ADInterval = 0.01F;
  struct Case {
    float fc;
    int recordPoints;
    const char* warning;
  };
  // Corners of 4.6 and 5.0 kHz make kernels of 11 and 10 coefficients a side.
  for (const Case& c : {Case{0.05F, 10240, TooHeavy}, Case{1e-30F, 10240, TooHeavy}, Case{4.6F, 30, TooLight},
                        Case{5.0F, 30, nullptr}, Case{0.06F, 10240, nullptr}, Case{50.0F, 1, nullptr},
                        Case{51.0F, 1, Aliasing}}) {
    SCOPED_TRACE(c.fc);
    popups.clear();
    Noise.RecordPoints = c.recordPoints;
    for (const int fit : {1, 0}) {  // a fit is told nothing, but the refusals stay in force
      Model.FitActive = fit;
      std::vector<float> trace = Ramp(4000);
      GaussianFilter(trace, c.fc);
      EXPECT_EQ(trace == Ramp(4000), c.warning == TooHeavy || c.warning == TooLight);
      const bool told = c.warning != nullptr && fit == 0;
      EXPECT_EQ(PopupTexts(), told ? std::vector<std::string>{c.warning} : std::vector<std::string>{});
    }
  }
}

TEST_F(GaussianFilterTest, LeavesTheTraceWholeForCornersThatAreNoneAndShortTraces) {
  const auto expectWhole = [](std::size_t size, float corner) {
    std::vector<float> trace = Ramp(size);
    GaussianFilter(trace, corner);
    EXPECT_EQ(trace, Ramp(size)) << size << " samples, " << corner << " kHz";
  };
  constexpr float NoNumber = std::numeric_limits<float>::quiet_NaN();
  constexpr float Infinite = std::numeric_limits<float>::infinity();
  for (const float corner : {0.0F, -1.0F, -Infinite, NoNumber}) expectWhole(200, corner);
  for (std::size_t size = 0; size <= 52; ++size) expectWhole(size, 2.0F);  // 26 coefficients a side
  for (const float interval : {0.0F, -0.01F, NoNumber}) {
    Model.ADInterval = interval;
    expectWhole(200, 2.0F);
  }
}

}  // namespace
}  // namespace zelvane
