// The kind of the standard streams.
#pragma once

namespace zelvane {

/// Return whether standard output or standard error is a terminal. A line on a terminal can be overwritten.
bool OutputStreamIsTerminal();
bool ErrorStreamIsTerminal();

}  // namespace zelvane
