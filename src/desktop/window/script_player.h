// Scripts of the command language against the live window.
#pragma once

class QString;

namespace zelvane {

class DesktopFrontEnd;

/// Plays the script of a file; its answers stand in for the user's. Refused and unknown commands are told
/// together at its end.
void PlayScript(const QString& path, DesktopFrontEnd& frontEnd);

}  // namespace zelvane
