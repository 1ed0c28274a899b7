// The filtered copy of the trace and the Nyquist test of its low-pass corner.
#include "trace/filtered_trace.h"

#include <limits>

#include "support/store_test.h"
#include "trace/noise_store.h"
#include "trace/trace_store.h"

namespace zelvane {
namespace {

class FilteredTraceTest : public StoreTest {
 protected:
  FilteredTraceTest() {
    Model.NumPoints = 2000;
    Model.ADInterval = 0.01F;
    Trace.TraceValid = 1;
    Trace.SimTraceUsed = 2000;
    for (std::size_t i = 0; i < 2000; ++i) Trace.SimTrace[i] = 5.0F;
  }
};

TEST_F(FilteredTraceTest, FollowsTheTraceOnlyWhileItIsValidAndEndsWithIt) {
  Trace.SimTrace[1000] = 6.0F;
  TraceFilterUpdate();
  EXPECT_NEAR(Noise.FilteredTrace[1000], 1.0F, 0.01F);
  Model.NumPoints = 1000;
  TraceFilterUpdate();
  EXPECT_EQ(Noise.FilteredTrace[1000], 0.0F);
  Trace.TraceValid = 0;
  Trace.SimTrace[10] = 7.0F;
  TraceFilterUpdate();
  EXPECT_NEAR(Noise.FilteredTrace[10], 0.0F, 1e-6F);
}

TEST_F(FilteredTraceTest, AStandingCurrentIsGoneAndASampleThatIsNoNumberSpoilsNoOther) {
  Trace.SimTrace[0] = std::numeric_limits<float>::quiet_NaN();
  Trace.SimTrace[700] = std::numeric_limits<float>::infinity();
  for (const int lowPass : {0, 1}) {
    Noise.LowPassOn = lowPass;
    TraceFilterUpdate();
    for (std::size_t i = 0; i < 2000; ++i) {
      ASSERT_EQ(std::isnan(Noise.FilteredTrace[i]), i == 0 || i == 700) << i;
      ASSERT_FALSE(std::abs(Noise.FilteredTrace[i]) > 1e-6F) << i;
    }
  }
}

TEST_F(FilteredTraceTest, ALowPassCornerAboveNyquistIsToldAndHeldBelowIt) {
  Noise.LowPassFc = 60000.0;
  HoldLowPassToNyquist();
  ASSERT_EQ(popups.size(), 1U);
  EXPECT_EQ(popups[0], (SeenPopup{"!", "Attempted cutoff frequency is past Nyquist frequency."}));
  EXPECT_NEAR(Noise.LowPassFc, 49999.0, 0.01);  // the interval is a 32-bit float
  HoldLowPassToNyquist();
  EXPECT_EQ(popups.size(), 1U);
}

}  // namespace
}  // namespace zelvane
