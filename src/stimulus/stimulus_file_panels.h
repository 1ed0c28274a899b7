// Functions of the panels for reading and writing stimulus files.
#pragma once

namespace zelvane {

/// Reads the stimulus panel, and with it the number of points, into the stores as typed.
void ReadStimulusPanel();

/// Shows interval, points and the stimulus file's name on every panel and plots the stimulus.
void ShowStimulusOfFile();

}  // namespace zelvane
