// What the model file's commands need of the panels. Without panels on the screen these do nothing.
#pragma once

namespace zelvane {

/// Reads every panel whose fields a model file holds into the stores, as typed, committed or not.
void ReadPanelsOfModelFile();

/// Shows the stores on every panel and rebuilds the stimulus.
void ShowModelOfFile();

/// Shows `Model.ModelFileName` on the main panel.
void ShowModelFileName();

}  // namespace zelvane
