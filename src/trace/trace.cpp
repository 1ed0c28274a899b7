#include "trace/trace.h"

#include <algorithm>
#include <bit>
#include <cstdint>

#include "model/model_store.h"
#include "platform/zero_pages.h"
#include "trace/trace_events.h"
#include "trace/trace_store.h"

namespace zelvane {

void BeginTrace(TraceOrigin origin) {
  Trace.TraceValid = 1;
  AdoptRunLength();
  Trace.TraceFromFile = origin == TraceOrigin::Recording ? 1 : 0;
  Trace.TraceParsed = 0;
  Trace.RsCorrected = 0;
  Trace.RcFiltered = 0;
}

void AdoptRunLength() {
  Trace.TracePoints = Model.NumPoints;
  Trace.TraceInterval = Model.ADInterval;
}

void FollowRunLength() {
  if (Trace.TraceValid == 0) return;
  const bool sameInterval =
      std::bit_cast<std::uint32_t>(Trace.TraceInterval) == std::bit_cast<std::uint32_t>(Model.ADInterval);
  if (!sameInterval) ClearTrace();
  if (Trace.TracePoints != Model.NumPoints) Trace.TraceValid = 0;
}

void TellTraceWillChange() {
  TraceWillChange.Tell();
}

void TellTraceChanged() {
  TraceChanged.Tell();
}

void TellTraceCame() {
  LengthGiven.Tell();
  TraceChanged.Tell();
}

std::span<float> TraceToWrite(int samples) {
  TellTraceWillChange();
  const int count = std::clamp(samples, 0, static_cast<int>(Trace.SimTrace.size()));
  Trace.SimTraceUsed = std::max(Trace.SimTraceUsed, count);
  return Trace.SimTrace.first(static_cast<std::size_t>(count));
}

void ClearTrace() {
  TellTraceWillChange();
  ClearSamples(Trace.SimTraceUsed);
  Trace.TraceValid = 0;
  TraceGone.Tell();
}

void ClearSamples(int samples) {
  ClearUsed(Trace.SimTrace, Trace.SimTraceUsed, samples);
}

void EndSamplesAt(std::size_t samples) {
  const auto used = static_cast<std::size_t>(Trace.SimTraceUsed);
  if (used > samples) {
    const std::span<float> rest = Trace.SimTrace.subspan(samples, used - samples);
    std::fill(rest.begin(), rest.end(), 0.0F);
  }
  Trace.SimTraceUsed = static_cast<int>(samples);
}

}  // namespace zelvane
