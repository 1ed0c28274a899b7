// Writes many numbers as text, with the same result as printf in the C locale, but faster.
//
// One multiplication in double precision gives seven or fewer digits. If its error could change the last
// digit, and outside the range of the powers of ten, std::to_chars is used. Both round to nearest, ties to
// even, as printf does.
#pragma once

#include <string>

namespace zelvane {

/// Appends a number as "%.6e" does: 1.234568e-05, -inf, nan.
void AppendExponent(std::string& text, double value);

/// Appends a number as "%.6g" does.
void AppendGeneral(std::string& text, double value);

/// Appends a number as "%.9g" does. These digits give the same 32-bit float when they are read.
void AppendNineDigits(std::string& text, double value);

/// Appends a number as "%f" does: six decimals.
void AppendFixed(std::string& text, double value);

/// Returns a 32-bit float as the shortest decimal that gives the same float when it is read: 0.001F gives
/// 0.001. Use it for times and settings in output for people.
double AsTyped(float value);

}  // namespace zelvane
