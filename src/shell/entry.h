// Values as a user types them into controls, and as they are best read in a small place.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "screen/screen.h"

namespace zelvane {

/// Takes a text that a user typed into a control and left with Enter: a number through ParseEntry with the
/// control's unit, then TypeInto and Commit. A refused text changes nothing, and the reason is given.
Refusal EnterTyped(Control& control, std::string_view text);

/// The reason why a text would be refused, without changing anything; empty when it would be taken.
Refusal CheckTyped(const Control& control, std::string_view text);

/// A number for a narrow place: at most `digits` significant digits and no padding of the exponent, "880",
/// "4.59e6", "1.5e-3".
std::string CompactNumber(double value, int digits = 4);

/// A block of numbers as spreadsheets exchange it: rows by line, columns by tabulator. Blank cells are empty.
using NumberBlock = std::vector<std::vector<std::optional<double>>>;

/// Reads a block of numbers in `unit`. At the first cell that is neither blank nor a finite number the whole
/// block is refused and `refusal` tells where: "row 2, column 3: \"abc\" is not a number". Rows may differ in
/// length.
std::optional<NumberBlock> ParseBlock(std::string_view text, std::string_view unit, Refusal& refusal);

/// Control of a cell of a table of controls, nullptr where there is none (outside, the diagonal of rates).
using CellControl = std::function<Control*(int row, int column)>;

/// Types a block into a table of controls with its first number at (row, column), then commits one of them.
/// Blank cells leave what stands there. Every number is checked first: a number where no cell is, or one that
/// its control would refuse, refuses the whole block.
Refusal EnterBlock(const NumberBlock& block, int row, int column, const CellControl& cell);

}  // namespace zelvane
