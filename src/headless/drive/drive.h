// The command language: every control, menu command, popup, file dialog, graph, table and store field of the
// program, one command a line. docs/drive.md tells the language.
#pragma once

#include <functional>
#include <iosfwd>

#include "screen/front_end.h"
#include "shell/application.h"

namespace zelvane {

/// What shows the program while a script runs: nothing, or a window. Popups, dialogs and the end of the
/// program stay with the script; every other function of `frontEnd` is called as well, and `modal` once the
/// script has filled a dialog, whatever it returns.
struct DriveHost {
  FrontEnd frontEnd{};
  std::function<void()> afterLine{};  // a command has ended
};

/// Starts the application with a headless front end, reads commands from `in` until its end or `quit`, and
/// writes one JSON object a line to `out`.
/// @return exit status: 0, or 2 when a line was no command or named nothing
int RunDrive(std::istream& in, std::ostream& out, const StartOptions& options, const DriveHost& host = {});

/// The same within the application that runs already, which goes on with its own front end afterwards.
int PlayDrive(std::istream& in, std::ostream& out, const DriveHost& host);

}  // namespace zelvane
