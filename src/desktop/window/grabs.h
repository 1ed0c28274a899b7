// Pictures of what the window shows.
#pragma once

#include <QString>

namespace zelvane {

class MainWindow;

/// Saves a picture of every visible panel into a folder, by the panel's name: of a task's panel the whole
/// window. A dialog or message that waits for its answer is one of them. The folder is made if need be. False
/// when a picture cannot be written.
bool GrabPanels(MainWindow& window, const QString& folder);

}  // namespace zelvane
