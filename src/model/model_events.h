// Events of the model's settings. Operations announce them; the panels of the settings listen.
#pragma once

#include "platform/outcome.h"
#include "screen/listeners.h"

namespace zelvane {

/// The run settings will be used now: panels store what is typed on them.
inline Listeners<> RunSettingsWanted;

/// The run settings in the store have changed: panels show them.
inline Listeners<> RunSettingsChanged;

/// The starting occupancies in the store have changed: panels show them.
inline Listeners<> StartOccupancyChanged;

/// A length or an interval of the run was taken from a panel or a file. It may differ from the one before.
inline Listeners<> RunLengthTaken;

/// The run has got the length or interval of a file: panels show what depends on it.
inline Listeners<> RunSettingsReplaced;

/// A model file will be written now: panels store what is typed on them.
inline Listeners<> ModelFileToSave;

/// A model file was read: the panels show it, first the scheme, then the run settings, then the stimulus,
/// which is built again from its panel. A listener that cannot show its part sets the outcome to Failed.
inline Listeners<Outcome&> ModelFileCameIn;

/// The model has got the name of another file.
inline Listeners<> ModelFileNamed;

}  // namespace zelvane
