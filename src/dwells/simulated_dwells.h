// Between the dwell store and the recorder of simulated channels.
//
//   ListsOf  StoreCounts  KeepRawOpenTimes
#pragma once

#include "dwells/dwell_store.h"
#include "kinetics/dwell_recorder.h"

namespace zelvane {

/// Returns the working lists and the record of a store as a recorder takes them, all empty.
DwellLists ListsOf(const DwellStore& store);

/// Writes the counts of lists that ListsOf has given to their store.
void StoreCounts(const DwellLists& lists, DwellStore& store);

/// Copies the open times to the raw open times and selects these. Every simulation and every read of dwells
/// ends with it, so that what is worked out from the raw ones describes the latest.
void KeepRawOpenTimes(DwellStore& lists);

}  // namespace zelvane
