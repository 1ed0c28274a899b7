// Functions of the stimulus panel for the operations on profiles.
#pragma once

namespace zelvane {

/// Shows the length of the sweep on this panel and on the main panel, the target and the name of the model
/// file, and dims the fields that cannot be edited.
void ShowStimulusFacts();

// -- The table of multi-sweep waveforms on the stimulus panel --
void AddMultiStimTable();
void ShowMultiStimTable();

}  // namespace zelvane
