// Makes text from numbers and words.
#pragma once

#include <string>

namespace zelvane {

/// Formats as printf does and returns a string.
[[gnu::format(printf, 1, 2)]] std::string FormatText(const char* format, ...);

}  // namespace zelvane
