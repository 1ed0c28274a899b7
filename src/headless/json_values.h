// Values of the program as JSON.
#pragma once

#include <nlohmann/json.hpp>
#include <string>

#include "screen/screen.h"

namespace zelvane {

using Json = nlohmann::ordered_json;  // keys stay in the order in which they are written

/// A double in the fewest digits that read back to it, at most 17; a whole number without a point. NaN and
/// infinities are the texts "nan", "inf" and "-inf", since JSON has no numbers for them.
Json NumberJson(double value);

/// A 32-bit float in 9 significant digits.
Json FloatJson(float value);

/// A 32-bit float as the decimal that a user would type for it: the shortest that reads back to it. 0.001F
/// gives 0.001. For times and settings in accounts that people read.
double AsTyped(float value);
Json TypedJson(float value);

/// The element of a store field: number or text.
Json FieldJson(FieldRef ref);

/// What a control shows: a number, the text of a text or readout, null for a button.
Json ControlValueJson(const Control& control);

Json ControlJson(const Control& control);
Json GraphJson(const Graph& graph);

/// One line of output. Bytes that are no UTF-8 become replacement characters.
std::string JsonLine(const Json& object);

}  // namespace zelvane
