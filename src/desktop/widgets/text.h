// Texts of the program (UTF-8) as Qt takes them.
#pragma once

#include <QString>
#include <string_view>

namespace zelvane {

inline QString ToQt(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

}  // namespace zelvane
