#include "sim/dwell_recorder.h"

#include <algorithm>
#include <cstddef>
#include <limits>
#include <span>

namespace zelvane {
namespace {

bool HasRoom(std::span<const float> list, float count) {
  return static_cast<std::size_t>(count) < list.size();
}

void Append(std::span<float> list, float& count, float value) {
  list[static_cast<std::size_t>(count)] = value;
  count += 1.0F;
}

bool RecordHasRoom(const DwellStore& lists) {
  return static_cast<std::size_t>(lists.NumIdealEvents) < lists.IdealDuration.size();
}

/// Stores an entry of the record where it has room. It is not counted yet.
void StoreEntry(const DwellStore& lists, float duration, float dwellClass) {
  if (!RecordHasRoom(lists)) return;
  const auto at = static_cast<std::size_t>(lists.NumIdealEvents);
  lists.IdealDuration[at] = duration;
  lists.IdealClass[at] = dwellClass;
}

/// A full record goes on counting, as far as the count can.
void AppendEntry(DwellStore& lists, float duration, float dwellClass) {
  StoreEntry(lists, duration, dwellClass);
  if (lists.NumIdealEvents < std::numeric_limits<int>::max()) ++lists.NumIdealEvents;
}

void RecordOpening(DwellRecorder& recorder, int state, float t, float d) {
  DwellStore& lists = recorder.lists;
  if (recorder.opened && !recorder.wasOpen) {
    const float closed = t - recorder.lastOpeningEnd;
    Append(lists.ClosedTimes, lists.NumClosedTimes, closed);
    AppendEntry(lists, closed, ClosedClass);
  }
  recorder.lastOpeningEnd = t + d;
  if (recorder.wasOpen) {
    lists.OpenTimes[static_cast<std::size_t>(lists.NumOpenTimes) - 1] += d;
  } else {
    Append(lists.OpenTimes, lists.NumOpenTimes, d);
  }
  AppendEntry(lists, d, static_cast<float>(recorder.openClass[static_cast<std::size_t>(state)]));
  recorder.wasOpen = true;
}

}  // namespace

void ClearDwells(DwellRecorder& recorder) {
  DwellStore& lists = recorder.lists;
  lists.NumOpenTimes = lists.NumClosedTimes = lists.NumLatencies = 0.0F;
  lists.NumIdealEvents = 0;
  lists.SegmentCounter = 1;
  recorder.wasOpen = recorder.opened = false;
  recorder.lastOpeningEnd = 0.0F;
}

void StartSweepRecord(DwellRecorder& recorder) {
  DwellStore& lists = recorder.lists;
  if (RecordHasRoom(lists)) {
    AppendEntry(lists, static_cast<float>(lists.SegmentCounter), SegmentMarker);
    ++lists.SegmentCounter;
  }
  recorder.opened = false;
  recorder.lastOpeningEnd = 0.0F;
}

void RecordOpenDwell(DwellRecorder& recorder, int state, float t, float d) {
  DwellStore& lists = recorder.lists;
  if (HasRoom(lists.OpenTimes, lists.NumOpenTimes) && HasRoom(lists.ClosedTimes, lists.NumClosedTimes)) {
    RecordOpening(recorder, state, t, d);
  }
  if (recorder.opened) return;
  if (HasRoom(lists.Latencies, lists.NumLatencies)) Append(lists.Latencies, lists.NumLatencies, t);
  recorder.opened = true;
}

void EndRecord(const DwellRecorder& recorder) {
  StoreEntry(recorder.lists, static_cast<float>(recorder.lists.NumIdealEvents), RecordEnd);
}

void KeepRawOpenTimes(DwellStore& lists) {
  const auto most = static_cast<float>(std::min(lists.OpenTimes.size(), lists.RawOpenTimes.size()));
  const auto count = static_cast<std::size_t>(std::clamp(lists.NumOpenTimes, 0.0F, most));
  std::copy_n(lists.OpenTimes.begin(), count, lists.RawOpenTimes.begin());
  lists.NumRawOpenTimes = static_cast<int>(count);
  lists.OpenListSelector = 0;
}

}  // namespace zelvane
