// Numbers as text, many of them: what printf gives in the C locale, without its cost.
//
// Seven or fewer digits come from one multiplication in double precision. Its error is known; where it could
// decide the last digit, and outside the range of the powers of ten, std::to_chars has the word. Both round
// to nearest, ties to even, as printf does.
#pragma once

#include <string>
#include <string_view>

namespace zelvane {

/// Appends a number as "%.6e" does: 1.234568e-05, -inf, nan.
void AppendExponent(std::string& text, double value);

/// Appends a number as "%.6g" does.
void AppendGeneral(std::string& text, double value);

/// Appends a number as "%.9g" does: enough digits to read a 32-bit float back to the bit.
void AppendNineDigits(std::string& text, double value);

/// Appends a number as "%f" does: six decimals.
void AppendFixed(std::string& text, double value);

}  // namespace zelvane
