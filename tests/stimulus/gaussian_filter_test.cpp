// GaussianFilter: gain, ends and refusals. Gains are the closed form exp(-(ln 2 / 2)(f / fc)^2).
#include "stimulus/gaussian_filter.h"

#include <limits>
#include <numbers>

#include "screen/window_reporter.h"
#include "support/store_test.h"

namespace zelvane {
namespace {

using GaussianFilterTest = StoreTest;

constexpr char Aliasing[] = "Aliasing in data record at selecting filter frequency.";
constexpr char TooHeavy[] = "Requested filtering is too heavy; too many points to filter.";
constexpr char TooLight[] = "Requested filtering is too light; too few points to filter.";

Floats Ramp(std::size_t size) {
  Floats trace(size);
  for (std::size_t i = 0; i < size; ++i) trace[i] = static_cast<float>(i % 17);
  return trace;
}

TEST_F(GaussianFilterTest, AttenuatesSinesAsTheClosedFormSays) {
  Model.ADInterval = 0.01F;
  for (const double kHz : {0.5, 1.0, 2.0}) {
    SCOPED_TRACE(kHz);
    Floats trace(8000);
    const auto sine = [&](std::size_t i) {
      return std::sin(2.0 * std::numbers::pi * kHz * 0.01 * static_cast<double>(i));
    };
    for (std::size_t i = 0; i < trace.size(); ++i) trace[i] = static_cast<float>(sine(i));
    GaussianFilter(trace, 1.0F, WindowReporter());
    const double gain = std::exp(-0.5 * std::numbers::ln2 * kHz * kHz);
    // The kernel ends at 4 standard deviations.
    for (std::size_t i = 1000; i < 7000; ++i) ASSERT_NEAR(trace[i], gain * sine(i), 2e-4) << i;
  }
}

TEST_F(GaussianFilterTest, RefusesKernelsThatAreTooLongAndLeavesTheTrace) {
  Model.ADInterval = 0.01F;
  using Case = std::tuple<float, int, const char*>;
  // Corners of 4.6 and 5.0 kHz make kernels of 11 and 10 coefficients a side.
  for (const auto& [fc, recordPoints, warning] :
       {Case{0.05F, 10240, TooHeavy}, Case{1e-30F, 10240, TooHeavy}, Case{4.6F, 30, TooLight},
        Case{5.0F, 30, nullptr}, Case{0.06F, 10240, nullptr}, Case{50.0F, 1, nullptr},
        Case{51.0F, 1, Aliasing}}) {
    SCOPED_TRACE(fc);
    popups.clear();
    Model.RecordPoints = recordPoints;
    for (const bool silent : {true, false}) {  // the same refusals, without a message
      Floats trace = Ramp(4000);
      GaussianFilter(trace, fc, silent ? RunReporter{} : WindowReporter());
      EXPECT_EQ(trace == Ramp(4000), warning == TooHeavy || warning == TooLight);
      const bool told = warning != nullptr && !silent;
      EXPECT_EQ(PopupTexts(), told ? Texts{warning} : Texts{});
    }
  }
}

TEST_F(GaussianFilterTest, LeavesTheTraceWholeForCornersThatAreNoneAndShortTraces) {
  const auto expectWhole = [](std::size_t size, float corner) {
    Floats trace = Ramp(size);
    GaussianFilter(trace, corner, WindowReporter());
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
