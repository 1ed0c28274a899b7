// What stands behind the standard streams.
#pragma once

namespace zelvane {

/// Whether standard error is shown on a terminal, so that a line on it can be drawn over.
bool ErrorStreamIsTerminal();

}  // namespace zelvane
