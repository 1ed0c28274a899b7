// The command language. Its commands, one per line, reach every control, menu command, popup, file dialog,
// graph, table and store field of the program. docs/drive.md describes it.
#pragma once

#include <atomic>
#include <functional>
#include <iosfwd>

#include "app/application.h"
#include "screen/front_end.h"

namespace zelvane {

/// An optional window that shows the program during a script. The script handles popups, dialogs and the
/// end of the program. All other functions of `frontEnd` are called too. `modal` is called after the script
/// has filled a dialog; its result is not used.
struct DriveHost {
  FrontEnd frontEnd{};
  std::function<void()> afterLine{};  // called after each command
  const std::atomic<bool>* stop =
      nullptr;  // true = the present work stops as with its stop button, and the script ends
};

/// Starts the application with a headless front end, reads commands from `in` until its end or `quit`, and
/// writes one JSON object per line to `out`. At the end offers rows of measures that could not be written.
/// @return exit status: 0; 1 when the script was stopped; 2 when a line was not a command or named an item that
///         does not exist
int RunDrive(std::istream& in, std::ostream& out, const StartOptions& options, const DriveHost& host = {});

/// Does the same in the running application. Afterwards the application uses its own front end again.
int PlayDrive(std::istream& in, std::ostream& out, const DriveHost& host);

}  // namespace zelvane
