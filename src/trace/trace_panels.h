// Panels of recordings.
#pragma once

namespace zelvane {

/// Declares the commands of recordings on MainPanel and in the menu, autosave, and the panels that reading asks
/// or informs with.
void AddRecordingPanels();

/// Opens the panel with the information on the file read last.
void FxnFileInfo();

/// Shows `Trace.FileInfo` on that panel.
void ShowFileInfo();

}  // namespace zelvane
