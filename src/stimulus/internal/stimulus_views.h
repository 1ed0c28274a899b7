// What the operations on profiles ask of the stimulus panel beyond stimulus.h.
#pragma once

namespace zelvane {

/// Shows what follows from the stores beside the parameters: the sweep's length here and on the main panel,
/// the target, the model file's name and which fields may be edited.
void ShowStimulusFacts();

// -- The table of multi-sweep waveforms on the stimulus panel --
void AddMultiStimTable();
void ShowMultiStimTable();

}  // namespace zelvane
