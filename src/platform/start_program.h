// Other programs, which run on their own.
#pragma once

#include <string>

namespace zelvane {

/// Starts the program at `path`, without arguments and standard streams, and does not wait for it. False when
/// there is none or the system cannot run it.
bool StartProgram(const std::string& path);

}  // namespace zelvane
