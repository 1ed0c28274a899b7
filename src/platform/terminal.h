// The kind of the standard streams.
#pragma once

namespace zelvane {

/// Returns whether standard error is a terminal. A line on a terminal can be overwritten.
bool ErrorStreamIsTerminal();

}  // namespace zelvane
