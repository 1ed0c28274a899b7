// The parts of a file's name.
#pragma once

#include <string>

namespace zelvane {

/// Returns a path without its folder: "a.abf" for "/home/a.abf". Empty for a path that ends in a separator.
std::string FileNameOf(const std::string& path);

/// Returns the extension of a file's name in small letters, with its full stop: ".abf". Empty without one.
std::string ExtensionOf(const std::string& path);

}  // namespace zelvane
