// How the dwells of simulated channels become lists of open and closed times, latencies and an idealised
// record.
//
//   A simulation    DwellRecorder  ClearDwells  KeepRawOpenTimes
//   A run           EndRecord
//   A channel       StartSweepRecord  RecordDwell
#pragma once

#include <array>
#include <cstddef>

#include "kinetics/scheme_tables.h"
#include "singlechannel/dwell_store.h"

namespace zelvane {

/// Where dwells go and what is known of the present sweep. The lists hold as many entries as their spans.
struct DwellRecorder {
  DwellStore& lists;
  std::array<int, MaxStates + 1> monitored{};  // not 0 = the state counts as open
  std::array<int, MaxStates + 1> openClass{};  // class of each state in the idealised record
  bool wasOpen = false;         // the last dwell of this or the former sweep was open, and was stored
  bool opened = false;          // the present sweep has had its first opening
  float lastOpeningEnd = 0.0F;  // ms into the sweep
};

/// Empties lists and record for a new simulation; their entries stay where they are, beyond the counts.
void ClearDwells(DwellRecorder& recorder);

/// Begins the sweep of a channel: a segment marker, unless the record is full, and no opening yet. Whether
/// the former channel ended open is not forgotten, so that a channel that starts open then goes on with the
/// last entry of the open times.
void StartSweepRecord(DwellRecorder& recorder);

/// Records a dwell in a monitored state.
void RecordOpenDwell(DwellRecorder& recorder, int state, float t, float d);

/// Records a dwell in `state` which begins `t` ms into the sweep and lasts `d` ms.
///
/// A state that is not monitored is closed and stores nothing. Monitored states that follow on each other
/// make one entry of the open times, but each its own in the record. The closed time before an opening is
/// stored with that opening; the one before the first opening of a sweep is a latency instead, the one
/// behind the last is never stored. When the open or the closed times are full neither grows further, and
/// the run goes on; a full record only counts.
inline void RecordDwell(DwellRecorder& recorder, int state, float t, float d) {
  if (recorder.monitored[static_cast<std::size_t>(state)] != 0) {
    RecordOpenDwell(recorder, state, t, d);
  } else {
    recorder.wasOpen = false;
  }
}

/// Writes the end marker behind the last entry of the record, where there is room. It is not counted: the
/// next sweep overwrites it.
void EndRecord(const DwellRecorder& recorder);

/// Copies the open times to the raw open times and selects these. Every simulation and every read of dwells
/// ends with it, so that what is worked out from the raw ones describes the latest.
void KeepRawOpenTimes(DwellStore& lists);

}  // namespace zelvane
