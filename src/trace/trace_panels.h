// Panels of recordings.
#pragma once

#include "platform/outcome.h"

namespace zelvane {

/// Declares the commands of recordings on MainPanel and in the menu, autosave, and the panels with the
/// questions and the information of reading.
void AddRecordingPanels();

/// Asks for a binary recording and reads it. Refused without a name, or while it is an autosave file in use.
Outcome ReadBinaryRecording();

/// Opens the panel with the information on the last file that was read.
void FxnFileInfo();

/// Shows `Trace.FileInfo` on that panel.
void ShowFileInfo();

}  // namespace zelvane
