// Connects the dwell store with the recorder of simulated channels.
//
//   ListsOf  StoreCounts  KeepRawOpenTimes
#pragma once

#include "dwells/dwell_store.h"
#include "kinetics/dwell_recorder.h"

namespace zelvane {

/// Returns the working lists and the record of a store in the form of a recorder, all empty.
DwellLists ListsOf(const DwellStore& store);

/// Writes the counts of lists from ListsOf to their store.
void StoreCounts(const DwellLists& lists, DwellStore& store);

/// Copies the open times to the raw open times and selects these. Every simulation and every read of dwells
/// calls it at the end, so the results of the raw list belong to the latest dwells.
void KeepRawOpenTimes(DwellStore& lists);

}  // namespace zelvane
