// Reads dwells of idealised recordings into the lists.
//
//   With an imposed resolution   ReadDwellsWithResolution
//   Next to certain closings     ReadConditionalOpens
//
// Both get the segments of a recording one after the other from a reader and do not keep them. Settings and
// lists are in dwell_store.h.
#pragma once

#include <functional>
#include <optional>
#include <span>

namespace zelvane {

/// Codes of DwellStore::LastDwellKind.
inline constexpr int NoDwell = -1;
inline constexpr int ClosedDwell = 0;
inline constexpr int OpenDwell = 1;

/// A dwell of an idealised recording.
struct RecordedDwell {
  int amplitudeClass = 0;  // 0 or less closed, 1 and above open
  float duration = 0.0F;   // ms
};

/// Returns the dwells of the next segment; an empty result at the end of the recording. The dwells stay
/// valid until the next call.
using SegmentSource = std::function<std::optional<std::span<const RecordedDwell>>()>;

/// Reads a recording into `Dwell.OpenTimes` and `Dwell.ClosedTimes` and imposes the resolution. A dwell
/// that is shorter than the resolution of its kind becomes part of the dwell that it interrupts. At the
/// begin of a segment, or before the first accepted dwell, it is dropped. Joins consecutive dwells of the
/// same kind, also across segments and, without `clearFirst`, across recordings. Copies open dwells of
/// classes 1 to 5 unchanged to their class list.
///
/// @param clearFirst  true: empties both lists first; false: adds the recording to them
///
/// Reads:   `Dwell.ResolutionOpen`, `Dwell.ResolutionClosed`.
/// Writes:  the lists and their counts, `Dwell.LastDwellKind`, the raw open times (a copy of the open times),
///          `Dwell.OpenListSelector` (0).
/// Tells:   "! Warning" when a list is full. The dwells that were read stay; the rest of the recording is
///          not read.
void ReadDwellsWithResolution(const SegmentSource& nextSegment, bool clearFirst);

/// Empties `Dwell.OpenTimes` and fills it with the openings next to certain closed times: those from
/// `Dwell.CondClosedMin` up to, but not including, `Dwell.CondClosedMax`. Takes the openings after them or,
/// with `CondUsePreceding` 0, the openings before them, also from one segment to the next. An opening must
/// be longer than `Dwell.CondOpenResolution`. Does not join dwells.
///
/// Writes the same fields and shows the same messages as above, but keeps the closed times and the class
/// lists.
void ReadConditionalOpens(const SegmentSource& nextSegment);

}  // namespace zelvane
