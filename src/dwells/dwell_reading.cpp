#include "dwells/dwell_reading.h"

#include <algorithm>
#include <cstddef>

#include "dwells/dwell_store.h"
#include "dwells/simulated_dwells.h"
#include "platform/index.h"
#include "screen/popups.h"

namespace zelvane {
namespace {

constexpr char TooManyDwells[] =
    "You have tried to read more than the allowed number of openings; please contact Orvenhall to have this "
    "limit increased.";

constexpr auto FullList = static_cast<float>(MaxFileDwells);

/// A working list with its kind of dwells and their resolution.
struct Side {
  std::span<float> list;
  float& count;
  int kind;
  float resolution;
};

/// Appends a dwell. Returns false when the list is full.
bool Append(std::span<float> list, float& count, float d) {
  if (!(count < FullList)) return false;
  list[static_cast<std::size_t>(count)] = d;
  count += 1.0F;
  return true;
}

/// Adds to the last dwell of a list.
void Extend(const Side& side, float d) {
  side.list[static_cast<std::size_t>(side.count) - 1] += d;
}

/// Returns whether the last accepted dwell is in this list. Returns false for an empty list.
bool WasLast(const Side& side) {
  return Dwell.LastDwellKind == side.kind && side.count >= 1.0F;
}

/// Adds a dwell to its side. Returns false when the list is full.
bool KeepDwell(const Side& same, const Side& other, float d, bool beginsSegment) {
  if (WasLast(same)) {
    Extend(same, d);
  } else if (d < same.resolution) {
    if (WasLast(other) && !beginsSegment) Extend(other, d);
  } else {
    if (!Append(same.list, same.count, d)) return false;
    Dwell.LastDwellKind = same.kind;
  }
  return true;
}

void KeepInClass(const RecordedDwell& dwell) {
  if (dwell.amplitudeClass > MaxAmplitudeClasses) return;
  const auto c = Index(dwell.amplitudeClass);
  int& count = Dwell.NumClassOpenTimes[c];
  if (count < MaxFileDwells) Dwell.ClassOpenTimes[c][Index(count++)] = dwell.duration;
}

bool KeepSegment(std::span<const RecordedDwell> dwells) {
  const Side open{Dwell.OpenTimes, Dwell.NumOpenTimes, OpenDwell, Dwell.ResolutionOpen};
  const Side closed{Dwell.ClosedTimes, Dwell.NumClosedTimes, ClosedDwell, Dwell.ResolutionClosed};
  for (std::size_t i = 0; i < dwells.size(); ++i) {
    const bool isOpen = dwells[i].amplitudeClass >= 1;
    if (isOpen) KeepInClass(dwells[i]);
    const Side& same = isOpen ? open : closed;
    if (!KeepDwell(same, isOpen ? closed : open, dwells[i].duration, i == 0)) return false;
  }
  return true;
}

/// Passes every segment to `keep`. When it returns false, or a list is full before a segment, shows a message
/// and does not read the rest of the recording.
template <typename KeepFunction>
void ForEachSegment(const SegmentSource& nextSegment, KeepFunction keep) {
  while (const auto segment = nextSegment()) {
    const bool full = Dwell.NumOpenTimes >= FullList || Dwell.NumClosedTimes >= FullList;
    if (!full && keep(*segment)) continue;
    MessagePopup(WarningTitle, TooManyDwells);
    return;
  }
}

bool InCondition(float closed) {
  return closed >= Dwell.CondClosedMin && closed < Dwell.CondClosedMax;
}

/// Keeps the openings after a closed time of the condition.
bool KeepFollowing(std::span<const RecordedDwell> dwells) {
  float closed = 0.0F;
  for (const RecordedDwell& dwell : dwells) {
    if (dwell.amplitudeClass < 1) {
      closed = dwell.duration;
    } else if (dwell.duration > Dwell.CondOpenResolution && InCondition(closed) &&
               !Append(Dwell.OpenTimes, Dwell.NumOpenTimes, dwell.duration)) {
      return false;
    }
  }
  return true;
}

/// Keeps the openings before a closed time of the condition. `opening` is the last opening, of this segment
/// or an earlier one.
bool KeepPreceding(std::span<const RecordedDwell> dwells, float& opening) {
  for (const RecordedDwell& dwell : dwells) {
    if (dwell.amplitudeClass >= 1) {
      opening = dwell.duration;
    } else if (InCondition(dwell.duration) && opening > Dwell.CondOpenResolution &&
               !Append(Dwell.OpenTimes, Dwell.NumOpenTimes, opening)) {
      return false;
    }
  }
  return true;
}

}  // namespace

void ReadDwellsWithResolution(const SegmentSource& nextSegment, bool clearFirst) {
  if (clearFirst) {
    Dwell.NumOpenTimes = 0.0F;
    Dwell.NumClosedTimes = 0.0F;
    Dwell.LastDwellKind = NoDwell;
    std::fill(Dwell.OpenTimes.begin(), Dwell.OpenTimes.end(), 0.0F);
    std::fill(Dwell.ClosedTimes.begin(), Dwell.ClosedTimes.end(), 0.0F);
  }
  Dwell.NumRawOpenTimes = 0;
  Dwell.NumClassOpenTimes = {};
  ForEachSegment(nextSegment, KeepSegment);
  KeepRawOpenTimes(Dwell);
}

void ReadConditionalOpens(const SegmentSource& nextSegment) {
  Dwell.NumOpenTimes = 0.0F;
  float opening = 0.0F;
  ForEachSegment(nextSegment, [&opening](std::span<const RecordedDwell> dwells) {
    return Dwell.CondUsePreceding != 0 ? KeepFollowing(dwells) : KeepPreceding(dwells, opening);
  });
  KeepRawOpenTimes(Dwell);
}

}  // namespace zelvane
