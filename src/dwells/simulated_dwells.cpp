#include "dwells/simulated_dwells.h"

#include <algorithm>
#include <cstddef>

namespace zelvane {

DwellLists ListsOf(const DwellStore& store) {
  DwellLists lists;
  lists.openTimes = store.OpenTimes;
  lists.closedTimes = store.ClosedTimes;
  lists.latencies = store.Latencies;
  lists.idealDuration = store.IdealDuration;
  lists.idealClass = store.IdealClass;
  return lists;
}

void StoreCounts(const DwellLists& lists, DwellStore& store) {
  store.NumOpenTimes = static_cast<float>(lists.numOpenTimes);
  store.NumClosedTimes = static_cast<float>(lists.numClosedTimes);
  store.NumLatencies = static_cast<float>(lists.numLatencies);
  store.NumIdealEvents = lists.numIdealEvents;
  store.SegmentCounter = lists.segmentCounter;
}

void KeepRawOpenTimes(DwellStore& lists) {
  const auto most = static_cast<float>(std::min(lists.OpenTimes.size(), lists.RawOpenTimes.size()));
  const auto count = static_cast<std::size_t>(std::clamp(lists.NumOpenTimes, 0.0F, most));
  std::copy_n(lists.OpenTimes.begin(), count, lists.RawOpenTimes.begin());
  lists.NumRawOpenTimes = static_cast<int>(count);
  lists.OpenListSelector = 0;
}

}  // namespace zelvane
