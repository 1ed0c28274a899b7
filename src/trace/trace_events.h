// Events of the trace. Whoever keeps or shows something that depends on it listens.
#pragma once

#include "screen/listeners.h"

namespace zelvane {

/// The samples of the trace are being made anew, or cleared: nothing that was measured on them holds any
/// more. A fit, which makes thousands of traces, does not announce it.
inline Listeners<> TraceChanges;

/// A recording has taken the place of what the trace held; nothing has been corrected or shown yet.
inline Listeners<> RecordingCameIn;

}  // namespace zelvane
