#include "kinetics/dwell_recorder.h"

#include <limits>
#include <span>

#include "platform/index.h"

namespace zelvane {
namespace {

bool HasRoom(std::span<const float> list, int count) {
  return Index(count) < list.size();
}

void Append(std::span<float> list, int& count, float value) {
  list[Index(count++)] = value;
}

/// Stores an entry of the record if there is room. Does not count the entry.
void StoreEntry(const DwellLists& lists, float duration, float dwellClass) {
  if (!HasRoom(lists.idealDuration, lists.numIdealEvents)) return;
  const auto at = Index(lists.numIdealEvents);
  lists.idealDuration[at] = duration;
  lists.idealClass[at] = dwellClass;
}

/// Appends an entry and counts it. A full record only counts, up to the largest count.
void AppendEntry(DwellLists& lists, float duration, float dwellClass) {
  StoreEntry(lists, duration, dwellClass);
  if (lists.numIdealEvents < std::numeric_limits<int>::max()) ++lists.numIdealEvents;
}

void RecordOpening(DwellRecorder& recorder, int state, float t, float d) {
  DwellLists& lists = recorder.lists;
  if (recorder.opened && !recorder.wasOpen) {
    const float closed = t - recorder.lastOpeningEnd;
    Append(lists.closedTimes, lists.numClosedTimes, closed);
    AppendEntry(lists, closed, ClosedClass);
  }
  recorder.lastOpeningEnd = t + d;
  if (recorder.wasOpen) {
    lists.openTimes[Index(lists.numOpenTimes) - 1] += d;
  } else {
    Append(lists.openTimes, lists.numOpenTimes, d);
  }
  AppendEntry(lists, d, static_cast<float>(recorder.openClass[Index(state)]));
  recorder.wasOpen = true;
}

}  // namespace

void ClearDwells(DwellRecorder& recorder) {
  DwellLists& lists = recorder.lists;
  lists.numOpenTimes = lists.numClosedTimes = lists.numLatencies = 0;
  lists.numIdealEvents = 0;
  lists.segmentCounter = 1;
  recorder.wasOpen = recorder.opened = false;
  recorder.lastOpeningEnd = 0.0F;
}

void StartSweepRecord(DwellRecorder& recorder) {
  DwellLists& lists = recorder.lists;
  if (HasRoom(lists.idealDuration, lists.numIdealEvents)) {
    AppendEntry(lists, static_cast<float>(lists.segmentCounter), SegmentMarker);
    ++lists.segmentCounter;
  }
  recorder.opened = false;
  recorder.lastOpeningEnd = 0.0F;
}

void RecordOpenDwell(DwellRecorder& recorder, int state, float t, float d) {
  DwellLists& lists = recorder.lists;
  if (HasRoom(lists.openTimes, lists.numOpenTimes) && HasRoom(lists.closedTimes, lists.numClosedTimes)) {
    RecordOpening(recorder, state, t, d);
  }
  if (recorder.opened) return;
  if (HasRoom(lists.latencies, lists.numLatencies)) Append(lists.latencies, lists.numLatencies, t);
  recorder.opened = true;
}

void EndRecord(DwellRecorder& recorder) {
  StoreEntry(recorder.lists, static_cast<float>(recorder.lists.numIdealEvents), RecordEnd);
}

}  // namespace zelvane
