// What a session of a waveform fit announces.
#pragma once

#include "screen/listeners.h"

namespace zelvane {

/// The session begins: settings are read, and the controls that could start another work are dimmed.
inline Listeners<> FitBegan;

/// New results stand in the stores: the best vertex so far, its rates in the model, `FitSim`. At most about 20 times
/// a second, and at the end of each run of the simplex.
inline Listeners<> FitProgressed;

/// One step begins (true) or has compared all waveforms (false).
inline Listeners<bool> FitComparing;

/// The session is over.
inline Listeners<> FitEnded;

}  // namespace zelvane
