// Records the dwells of simulated channels as lists of open times, closed times and latencies, and as an
// idealised record.
//
//   A simulation    DwellLists  DwellRecorder  ClearDwells
//   A run           EndRecord
//   A channel       StartSweepRecord  RecordDwell
#pragma once

#include <array>
#include <span>

#include "kinetics/scheme_tables.h"
#include "platform/index.h"

namespace zelvane {

inline constexpr float SegmentMarker = -999999.0F;  // class of an entry that begins a sweep
inline constexpr float RecordEnd = -2000000.0F;     // class of the entry after the last one
inline constexpr float ClosedClass = 1.0F;          // class of a closed dwell in the idealised record

/// Lists of dwells with as many entries as their spans hold, and how many are filled. Durations are ms.
struct DwellLists {
  std::span<float> openTimes;
  std::span<float> closedTimes;
  std::span<float> latencies;      // first opening of each sweep
  std::span<float> idealDuration;  // number of a segment marker, count of the end marker
  std::span<float> idealClass;     // same length: 1 closed, 2 and above open; SegmentMarker, RecordEnd
  int numOpenTimes = 0;
  int numClosedTimes = 0;
  int numLatencies = 0;
  int numIdealEvents = 0;  // a full record still counts
  int segmentCounter = 1;  // next segment number
};

/// The lists for dwells, and the state of the present sweep.
struct DwellRecorder {
  DwellLists lists{};
  std::array<int, MaxStates + 1> monitored{};  // not 0 = the state counts as open
  std::array<int, MaxStates + 1> openClass{};  // class of each state in the idealised record
  bool wasOpen = false;         // the last dwell of this or the previous sweep was open, and was stored
  bool opened = false;          // the present sweep has had its first opening
  float lastOpeningEnd = 0.0F;  // ms into the sweep
};

/// Empties lists and record for a new simulation. Sets only the counts to 0 and keeps the entries.
void ClearDwells(DwellRecorder& recorder);

/// Begins the sweep of a channel: writes a segment marker, unless the record is full, and clears `opened`.
/// Keeps `wasOpen`. So if the previous channel ended open and this channel starts open, it continues the last
/// entry of the open times.
void StartSweepRecord(DwellRecorder& recorder);

/// Records a dwell in a monitored state.
void RecordOpenDwell(DwellRecorder& recorder, int state, float t, float d);

/// Records a dwell in `state`. It begins at `t` ms of the sweep and lasts `d` ms.
///
/// A state that is not monitored is closed and adds no entry. Consecutive monitored states are one entry of
/// the open times, but separate entries of the record. Each opening also stores the closed time before it.
/// Before the first opening of a sweep this time is a latency instead. The closed time after the last
/// opening is not stored. When the open or the closed times are full, neither list grows, and the run
/// continues. A full record only counts.
inline void RecordDwell(DwellRecorder& recorder, int state, float t, float d) {
  if (recorder.monitored[Index(state)] != 0) {
    RecordOpenDwell(recorder, state, t, d);
  } else {
    recorder.wasOpen = false;
  }
}

/// Writes the end marker after the last entry of the record, if there is room. The marker is not counted,
/// so the next sweep overwrites it.
void EndRecord(DwellRecorder& recorder);

}  // namespace zelvane
