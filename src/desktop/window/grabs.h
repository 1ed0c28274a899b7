// Pictures of what the window shows.
#pragma once

#include <QString>

namespace zelvane {

class MainWindow;

/// Saves a picture of every visible panel, also of a dialog or message that waits for its answer. Each goes
/// to `folder` by the panel's name; for a task's panel it shows the whole window. Makes the folder if need
/// be. Returns false when a picture cannot be written.
bool GrabPanels(MainWindow& window, const QString& folder);

}  // namespace zelvane
