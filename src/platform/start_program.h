// Starts other programs.
#pragma once

#include <string>

namespace zelvane {

/// Starts the program at `path`, without arguments and standard streams, and does not wait for it. Returns
/// false when the path is not a full one, the file is missing, or the system cannot run it.
bool StartProgram(const std::string& path);

}  // namespace zelvane
