// Converts between the text of a model file and the stores, without a screen.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace zelvane {

/// Reads the text of a model file in any of its four formats into the stores.
///
/// `text` may be any bytes. The position of a line decides its meaning; a line may have any length; headers
/// are ignored. A field keeps its value when its line or its number is missing, and when the number is not
/// finite or too large. Then values outside their range are corrected (model_file_lines.h). If the text ends
/// within a line, the last number or text may be incomplete and is ignored, unless this line is the last
/// line of the file.
///
/// @param faults  gets a sentence for each line without its values, after MaxModelFaults lines only their number,
///                and a sentence when the text ends early
/// @return false when the first word is not a format; no store is changed then
///
/// Writes: the fields of `Model`, `Constraints`, `Stimulus`, `Analysis`, `Fit`, `DwellFit`, `RsCm` that
/// WalkModelFile visits, and `Model.TableStateOn`, which depends on `Model.TableRate`.
using ModelFaults = std::vector<std::string>;
inline constexpr std::size_t MaxModelFaults = 5;
bool ReadModelText(std::string_view text, ModelFaults* faults = nullptr);

/// Returns the stores as the text of a model file in the newest format. Brings back the dependences of the grid.
///
/// No line is longer than MaxLineBytes. If plain decimals need more (1e300 takes 308 characters), all
/// fractional numbers of the line get an exponent and all their digits. A text is cut at its first line
/// break and to the room of its field. Numbers have a full stop in every locale.
std::string ModelText();

}  // namespace zelvane
