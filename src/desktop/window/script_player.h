// Scripts of the command language against the live window.
#pragma once

class QString;

namespace zelvane {

class DesktopFrontEnd;

/// Plays the script of a file. The script answers instead of the user. At its end a message lists refused and
/// unknown commands.
void PlayScript(const QString& path, DesktopFrontEnd& frontEnd);

}  // namespace zelvane
