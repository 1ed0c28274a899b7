// The text of a measured current-voltage relation.
#pragma once

#include <string_view>
#include <vector>

namespace zelvane {

/// Points of a relation, in the order of the file.
struct IvPoints {
  std::vector<float> volt;     // V
  std::vector<float> current;  // relative
};

/// Reads lines of two numbers, V and relative current, with a comma or blanks between them. Stops at the first
/// line without two numbers, and after `most` lines. Reads 80 bytes of a line.
IvPoints ParseIv(std::string_view text, std::size_t most);

}  // namespace zelvane
