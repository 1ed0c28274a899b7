// Events around the settings of the model. Operations announce, and the panels that show the settings listen.
#pragma once

#include "screen/listeners.h"

namespace zelvane {

/// The run settings are about to be used: what is typed on a panel goes into the store.
inline Listeners<> RunSettingsWanted;

/// The run settings in the store have changed: panels show them.
inline Listeners<> RunSettingsChanged;

/// Length or interval of the run came with a file: what is derived from them on the panels follows.
inline Listeners<> RunSettingsReplaced;

/// A model file is about to be written: what is typed on the panels goes into the stores.
inline Listeners<> ModelFileToSave;

/// A model file was read: the panels show it, first the scheme, then the run settings, then the stimulus, which is
/// rebuilt from what its panel shows.
inline Listeners<> ModelFileCameIn;

/// The model has the name of another file.
inline Listeners<> ModelFileNamed;

}  // namespace zelvane
