#include "trace/parse_rules.h"

#include <algorithm>
#include <cstdint>

#include "model/model_store.h"
#include "screen/popups.h"
#include "trace/trace_store.h"

namespace zelvane {
namespace {

constexpr MessageTitle ReadErrorTitle{MessageKind::Error, "! Read error"};
constexpr char BeyondEnd[] = "Position specified is beyond end of file";

constexpr int Accepted = 1;
constexpr int Cancelled = 2;

/// Returns the samples that the present skip keeps from the present start to the end of the file.
int Remaining() {
  return (Trace.ParseLength - Trace.ParseStart) / Trace.ParseSkip;
}

/// Truncates to a sample number; a value outside their range becomes 0.
int Truncated(float value) {
  return value > 0.0F && value < 2147483648.0F ? static_cast<int>(value) : 0;
}

void ShowDuration() {
  Trace.ParseDuration = static_cast<float>(Trace.ParseCount) * Trace.ParseInterval;
}

void CutCount() {
  if (Trace.ParseMaxPoints != 0) Trace.ParseCount = MaxParseCount;
  Trace.ParseCount = std::clamp(Trace.ParseCount, 1, MaxParseCount);
  if (Trace.ParseCount > Remaining()) Trace.ParseCount = std::max(Remaining(), 1);
  ShowDuration();
}

/// Limits the skip to at least 1 and at most the rest of the file, and sets the interval to match.
void LimitSkip() {
  Trace.ParseSkip = std::clamp(Trace.ParseSkip, 1, std::max(Trace.ParseLength - Trace.ParseStart, 1));
  Trace.ParseInterval = Model.ADInterval * static_cast<float>(Trace.ParseSkip);
}

void ShowStartTime() {
  Trace.ParseStartTime = static_cast<float>(Trace.ParseStart) * Model.ADInterval;
}

}  // namespace

ParseSettings StoredParse() {
  return {.requested = Trace.ParseRequested,
          .skip = Trace.ParseSkip,
          .count = Trace.ParseCount,
          .start = Trace.ParseStart,
          .startTime = Trace.ParseStartTime,
          .interval = Trace.ParseInterval,
          .duration = Trace.ParseDuration,
          .maxPoints = Trace.ParseMaxPoints,
          .result = Trace.ParseResult,
          .length = Trace.ParseLength};
}

void StoreParse(const ParseSettings& settings) {
  Trace.ParseRequested = settings.requested;
  Trace.ParseSkip = settings.skip;
  Trace.ParseCount = settings.count;
  Trace.ParseStart = settings.start;
  Trace.ParseStartTime = settings.startTime;
  Trace.ParseInterval = settings.interval;
  Trace.ParseDuration = settings.duration;
  Trace.ParseMaxPoints = settings.maxPoints;
  Trace.ParseResult = settings.result;
  Trace.ParseLength = settings.length;
}

void BeginParse(int length, int skip) {
  Trace.ParseLength = length;
  Trace.ParseResult = 0;
  if (Trace.ParseStart < 0 || Trace.ParseStart >= length) Trace.ParseStart = 0;
  ShowStartTime();
  Trace.ParseSkip = skip;
  LimitSkip();
  CutCount();
}

void ParseCountChanged() {
  Trace.ParseCount = std::clamp(Trace.ParseCount, 1, MaxParseCount);
  const std::int64_t span = static_cast<std::int64_t>(Trace.ParseCount) * Trace.ParseSkip;
  if (Trace.ParseLength - Trace.ParseStart <= span) Trace.ParseCount = std::max(Remaining(), 1);
  ShowDuration();
}

void ParseDurationChanged() {
  const int typed = Truncated(Trace.ParseDuration / Trace.ParseInterval);
  Trace.ParseCount = std::clamp(typed, 1, std::max(std::min(MaxParseCount, Remaining()), 1));
  if (Trace.ParseCount != typed) ShowDuration();
}

void ParseStartChanged() {
  if (Trace.ParseStart < 0 || Trace.ParseStart >= Trace.ParseLength) {
    MessagePopup(ReadErrorTitle, BeyondEnd);
    Trace.ParseStart = 0;
  }
  ShowStartTime();
  LimitSkip();
  CutCount();
}

void ParseStartTimeChanged() {
  const float start = Trace.ParseStartTime / Model.ADInterval;
  // A time after every sample number is also after the end of the file.
  Trace.ParseStart = start < 2147483648.0F ? Truncated(start) : Trace.ParseLength;
  if (!(start >= 0.0F)) Trace.ParseStart = -1;
  ParseStartChanged();
}

void ParseSkipChanged() {
  LimitSkip();
  ParseStartChanged();
}

void AcceptParse() {
  if (Trace.ParseStart < 0 || Trace.ParseStart >= Trace.ParseLength) Trace.ParseStart = 0;
  ShowStartTime();
  LimitSkip();
  CutCount();
  Trace.ParseResult = Accepted;
}

void CancelParse() {
  Trace.ParseResult = Cancelled;
}

}  // namespace zelvane
