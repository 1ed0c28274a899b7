// Dwells of idealised recordings on their way into the lists.
//
//   With an imposed resolution   ReadDwellsWithResolution
//   Next to certain closings     ReadConditionalOpens
//
// Both take the segments of a recording one after the other from whatever reads it, and hold none of them.
// Settings and lists are in dwell_store.h.
#pragma once

#include <functional>
#include <optional>
#include <span>

namespace zelvane {

/// Codes of DwellStore::LastDwellKind.
inline constexpr int NoDwell = -1;
inline constexpr int ClosedDwell = 0;
inline constexpr int OpenDwell = 1;

/// A dwell as an idealised recording has it.
struct RecordedDwell {
  int amplitudeClass = 0;  // 0 or less closed, 1 and above open
  float duration = 0.0F;   // ms
};

/// Gives the dwells of the next segment, which last until the next call; nothing at the end of the recording.
using SegmentSource = std::function<std::optional<std::span<const RecordedDwell>>()>;

/// Reads a recording into `Dwell.OpenTimes` and `Dwell.ClosedTimes` with the resolution imposed: a dwell
/// shorter than the resolution of its kind belongs to the dwell that it interrupts, or is dropped at the
/// begin of a segment or before the first accepted dwell. Dwells of the same kind that follow on each other
/// are one, also across segments and, without `clearFirst`, across recordings: that pools them. Open dwells
/// of classes 1 to 5 also go to their class list as they are.
///
/// @param clearFirst  empties both lists first; otherwise the recording is added to them
///
/// Reads:   `Dwell.ResolutionOpen`, `Dwell.ResolutionClosed`.
/// Writes:  the lists and their counts, `Dwell.LastDwellKind`, the raw open times (a copy of the open times),
///          `Dwell.OpenListSelector` (0).
/// Tells:   "! Warning" when a list is full; what was read stays, the rest of the recording is left.
void ReadDwellsWithResolution(const SegmentSource& nextSegment, bool clearFirst);

/// Reads the openings next to a closed time from `Dwell.CondClosedMin` up to but not including
/// `Dwell.CondClosedMax` into `Dwell.OpenTimes`, which is emptied first: those that follow it, or with
/// `CondUsePreceding` 0 those that precede it, also from one segment to the next. They must be longer than
/// `Dwell.CondOpenResolution`; nothing is merged.
///
/// Writes and tells as above, but for the closed times and the class lists, which stay.
void ReadConditionalOpens(const SegmentSource& nextSegment);

}  // namespace zelvane
