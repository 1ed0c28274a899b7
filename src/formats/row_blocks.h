// A text of many rows as blocks for a writer.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

#include "platform/safe_file.h"

namespace zelvane {

/// Returns `head` and then `rows` rows in blocks of about a megabyte. `appendRow(text, row)` appends each
/// row.
template <typename AppendRow>
NextBlock MakeRowBlocks(std::string head, std::size_t rows, AppendRow appendRow) {
  constexpr std::size_t BlockBytes = 1 << 20;
  return [block = std::move(head), rows, appendRow, row = std::size_t{0},
          headGiven = false]() mutable -> std::string_view {
    if (headGiven) block.clear();
    headGiven = true;
    for (; row < rows && block.size() < BlockBytes; ++row) appendRow(block, row);
    return block;
  };
}

}  // namespace zelvane
