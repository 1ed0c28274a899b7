// Numbers that users type.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "screen/fields.h"

namespace zelvane {

// -- Why a number is refused --
inline constexpr char NotANumber[] = "not a number";
inline constexpr char NotFinite[] = "not a finite number";
inline constexpr char NotWhole[] = "not a whole number, or too large for this field";
inline constexpr char TooLarge[] = "too large for this field";

/// Returns the reason why a field of this type cannot hold a number for which NumberSuits is false.
constexpr const char* WhyNotSuitable(FieldType type) {
  return type == FieldType::Int ? NotWhole : TooLarge;
}

/// Converts a typed number to the unit of its field. The decimal mark is a full stop or a comma. If the unit
/// is M, S, A or V, or one of these with a prefix (mV, pA, pS), the text may have an SI prefix from f to G,
/// with or without the unit: "1m" or "1 mM" in a field of M is 0.001, "2 nA" in a field of pA is 2000. u
/// means micro. Returns an empty result for any other text, and for "1,000.5" and "1.000,5", because these
/// have two meanings.
std::optional<double> ParseEntry(std::string_view text, std::string_view unit);

/// Returns the number for the command language: the shortest text that gives the same number when it is read,
/// with at most 17 significant digits.
std::string EntryText(double value);

}  // namespace zelvane
