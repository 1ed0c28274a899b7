// Panels of recordings.
#pragma once

namespace zelvane {

void AddRecordingControls();  // onto MainPanel, behind the run controls
void AddRecordingMenu();
void AddFileInfoPanel();
void AddChannelChoicePanel();  // with the dialog for the interval of a text
void AddParseReadPanel();

/// Opens the panel with the information on the file read last.
void FxnFileInfo();

/// Shows `Trace.FileInfo` on that panel.
void ShowFileInfo();

}  // namespace zelvane
