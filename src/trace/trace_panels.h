// Panels of recordings.
#pragma once

namespace zelvane {

/// Declares the commands of recordings on MainPanel and in the menu, autosave, and the panels with the
/// questions and the information of reading.
void AddRecordingPanels();

/// Opens the panel with the information on the last file that was read.
void FxnFileInfo();

/// Shows `Trace.FileInfo` on that panel.
void ShowFileInfo();

}  // namespace zelvane
