// Text made of numbers and words.
#pragma once

#include <string>

namespace zelvane {

/// printf into a string.
[[gnu::format(printf, 1, 2)]] std::string FormatText(const char* format, ...);

}  // namespace zelvane
