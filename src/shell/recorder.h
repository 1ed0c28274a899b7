// The macro recorder: what the user does, written as a script of the command language.
#pragma once

#include <string>
#include <vector>

namespace zelvane {

/// Starts watching; nothing is kept until StartRecording. Needs the screen's observers to be empty of a
/// former one.
void WatchForRecorder();

/// Adds Record and Stop recording to the Tools menu.
void AddRecorderMenu();

/// From here on every action is kept as lines that repeat it, each with the answers and files chosen before
/// it.
void StartRecording();

/// Ends the recording and gives its lines.
std::vector<std::string> StopRecording();

bool IsRecording();

}  // namespace zelvane
