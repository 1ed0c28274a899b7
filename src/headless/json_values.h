// Values of the program as JSON.
#pragma once

#include <nlohmann/json.hpp>
#include <string>

#include "screen/screen.h"

namespace zelvane {

/// Keys stay in the order in which they are written. Begin an object with Json::object(), not with null: without
/// memory the library's conversion of a null ends the program.
using Json = nlohmann::ordered_json;

/// Returns a double with the fewest digits that give the same number when they are read, at most 17. A whole
/// number has no point. JSON has no numbers for NaN and infinities, so they become the strings "nan", "inf"
/// and "-inf".
Json NumberJson(double value);

/// Returns a 32-bit float with 9 significant digits.
Json FloatJson(float value);
Json TypedJson(float value);

/// Returns the element of a store field: a number or a string.
Json FieldJson(FieldRef ref);

/// Returns the value of a control: a number, the text of a text or readout, or null for a button.
Json ControlValueJson(const Control& control);

Json ControlJson(const Control& control);
Json GraphJson(const Graph& graph);

/// Returns one line of output. Replaces bytes that are not UTF-8 by replacement characters, and writes all
/// control characters as "\u009b", so that a terminal does not obey them.
std::string JsonLine(const Json& object);

}  // namespace zelvane
