// The macro recorder: writes the actions of the user as a script of the command language.
#pragma once

#include <string>
#include <vector>

namespace zelvane {

/// Starts to observe the user. Keeps no actions before StartRecording. Remove the observer of an earlier
/// recorder first.
void WatchForRecorder();

/// Adds Record and Stop recording to the Tools menu.
void AddRecorderMenu();

/// Starts to record. Keeps every action as lines of the command language; the answers and files of the
/// action are written before it.
void StartRecording();

/// Ends the recording and returns its lines.
std::vector<std::string> StopRecording();

bool IsRecording();

}  // namespace zelvane
