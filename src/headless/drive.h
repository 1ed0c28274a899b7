// The command language: every control, menu command, popup, file dialog, graph, table and store field of the
// program, one command a line. docs/drive.md tells the language.
#pragma once

#include <iosfwd>

#include "shell/application.h"

namespace zelvane {

/// Starts the application with a headless front end, reads commands from `in` until its end or `quit`, and
/// writes one JSON object a line to `out`.
/// @return exit status: 0, or 2 when a line was no command or named nothing
int RunDrive(std::istream& in, std::ostream& out, const StartOptions& options);

}  // namespace zelvane
