#include "trace/filtered_trace.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

#include "model/model_store.h"
#include "numerics/butterworth.h"
#include "screen/popups.h"
#include "trace/noise_store.h"
#include "trace/trace_store.h"

namespace zelvane {
namespace {

constexpr char PastNyquist[] = "Attempted cutoff frequency is past Nyquist frequency.";
constexpr double MsPerSecond = 1000.0;
constexpr int FilterOrder = 8;
constexpr double BelowNyquist = 1.0;  // Hz

}  // namespace

void TraceFilterUpdate() {
  if (Trace.TraceValid == 0) return;
  const std::size_t room = std::min(Trace.SimTrace.size(), Noise.FilteredTrace.size());
  const std::size_t count = std::min(static_cast<std::size_t>(std::max(Model.NumPoints, 0)), room);
  const std::span<const float> trace = Trace.SimTrace.first(count);
  const std::span<float> filtered = Noise.FilteredTrace;
  const double rate = MsPerSecond / static_cast<double>(Model.ADInterval);

  std::vector<double> samples(trace.begin(), trace.end());
  Bw_HPF(samples, rate, Noise.HighPassFc, FilterOrder, samples);
  if (Noise.LowPassOn != 0) {
    Bw_BPF(samples, rate, Noise.HighPassFc, Noise.LowPassFc, FilterOrder, samples);
  }
  for (std::size_t i = 0; i < count; ++i) {
    filtered[i] =
        std::isfinite(trace[i]) ? static_cast<float>(samples[i]) : std::numeric_limits<float>::quiet_NaN();
  }
  const auto used = static_cast<std::size_t>(std::max(Noise.FilteredUsed, 0));
  for (std::size_t i = count; i < used; ++i) filtered[i] = 0.0F;
  Noise.FilteredUsed = static_cast<int>(count);
}

void HoldLowPassToNyquist() {
  const double nyquist = MsPerSecond / (static_cast<double>(Model.ADInterval) * 2.0);
  if (!(Noise.LowPassFc > nyquist)) return;
  MessagePopup(NoticeTitle, PastNyquist);
  Noise.LowPassFc = nyquist - BelowNyquist;
}

}  // namespace zelvane
