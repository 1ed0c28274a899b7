// How the dwells of simulated channels become lists of open and closed times, latencies and an idealised
// record.
//
//   A simulation    DwellLists  DwellRecorder  ClearDwells
//   A run           EndRecord
//   A channel       StartSweepRecord  RecordDwell
#pragma once

#include <array>
#include <cstddef>
#include <span>

#include "kinetics/scheme_tables.h"

namespace zelvane {

inline constexpr float SegmentMarker = -999999.0F;  // class of an entry that begins a sweep
inline constexpr float RecordEnd = -2000000.0F;     // class of the entry behind the last
inline constexpr float ClosedClass = 1.0F;          // class of a closed dwell in the idealised record

/// Lists of dwells with as many entries as their spans hold, and how many are filled. Durations are ms.
struct DwellLists {
  std::span<float> openTimes;
  std::span<float> closedTimes;
  std::span<float> latencies;      // first opening of each sweep
  std::span<float> idealDuration;  // of a segment marker its number, of the end the count
  std::span<float> idealClass;     // as long: 1 closed, 2 and above open; SegmentMarker, RecordEnd
  int numOpenTimes = 0;
  int numClosedTimes = 0;
  int numLatencies = 0;
  int numIdealEvents = 0;  // goes on counting when the record is full
  int segmentCounter = 1;  // next segment number
};

/// Where dwells go and what is known of the present sweep.
struct DwellRecorder {
  DwellLists lists{};
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
void EndRecord(DwellRecorder& recorder);

}  // namespace zelvane
