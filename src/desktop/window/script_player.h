// Scripts of the command language against the live window.
#pragma once

class QString;

namespace zelvane {

class DesktopFrontEnd;

/// Plays the script of a file. The script answers questions instead of the user. At the end a message lists
/// refused and unknown commands.
void PlayScript(const QString& path, DesktopFrontEnd& frontEnd);

}  // namespace zelvane
