// Values that a user types into controls, and numbers for narrow places.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "screen/screen.h"

namespace zelvane {

/// Enters a text that a user typed into a control: converts a number with ParseEntry and the unit of the
/// control, then calls TypeInto and Commit. A refused text changes nothing; returns the reason.
Refusal EnterTyped(Control& control, std::string_view text);

/// Returns the reason for which a text would be refused; empty when it would be accepted. Changes nothing.
Refusal CheckTyped(const Control& control, std::string_view text);

/// Returns a number for a narrow place, with at most `digits` significant digits and a short exponent:
/// "880", "4.59e6", "1.5e-3".
std::string CompactNumber(double value, int digits = 4);

/// A block of numbers in the form of spreadsheets: one row per line, tabulators between columns. Blank
/// cells are empty.
using NumberBlock = std::vector<std::vector<std::optional<double>>>;

/// Reads a block of numbers in `unit`. Refuses the whole block when a cell is neither blank nor a finite
/// number, and writes its place to `refusal`: "row 2, column 3: \"abc\" is not a number". Rows may have
/// different lengths.
std::optional<NumberBlock> ParseBlock(std::string_view text, std::string_view unit, Refusal& refusal);

/// Returns the control of a cell in a table of controls; nullptr for a cell without control (outside the
/// table, or on the diagonal of rates).
using CellControl = std::function<Control*(int row, int column)>;

/// Types a block into a table of controls with its first number at (row, column), then commits one of them.
/// A blank cell keeps the old value. First checks all numbers. Refuses the whole block when a number has no
/// cell, or when its control would refuse it.
Refusal EnterBlock(const NumberBlock& block, int row, int column, const CellControl& cell);

}  // namespace zelvane
