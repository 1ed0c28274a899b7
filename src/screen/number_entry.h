// Numbers as people type them.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace zelvane {

/// A typed number in the unit of its field: full stop or comma as decimal mark, and, where the field's unit
/// is M, S, A or V (or one of these with a prefix of its own, such as mV, pA, pS), an SI prefix from f to G,
/// with or without the unit: "1m" or "1 mM" in a field of M is 0.001, "2 nA" in a field of pA is 2000. u
/// stands for micro. Nothing when it cannot be read so; "1,000.5" and "1.000,5" are refused, since they can
/// mean two things.
std::optional<double> ParseEntry(std::string_view text, std::string_view unit);

/// The number as the command language takes it: 17 significant digits at most, shortest that reads back.
std::string EntryText(double value);

}  // namespace zelvane
