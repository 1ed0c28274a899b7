// The text of a model file, to and from the stores, without any screen.
#pragma once

#include <string>
#include <string_view>

namespace zelvane {

/// Reads the text of a model file in any of its four formats into the stores.
///
/// Anything may stand in `text`. Lines are taken by position and of any length; headers are not looked at. A
/// field that its line does not hold keeps its value, as does one whose number is not finite or too large for
/// it, and every field whose line is missing. Values outside their range are then corrected (model_rows.h).
/// Where the text stops within a line, a number or text that touches its end may have lost its tail and is
/// not taken, unless that line is the file's last one.
///
/// @return false, with every store untouched, when the first word does not name a format
///
/// Writes: the fields of `Model`, `Constraints`, `Stimulus`, `Analysis`, `Fit`, `DwellFit`, `RsCm` that
/// WalkModelFile visits, and `Model.TableStateOn`, which follows from `Model.TableRate`.
bool ReadModelText(std::string_view text);

/// The stores as the text of a model file in the newest format.
///
/// No line is longer than MaxLineBytes, whatever the stores hold: where plain decimals would make it so
/// (1e300 takes 308 characters), all fractional numbers of the line are written with an exponent and all
/// their digits instead. A text is cut to its room and at its first line break. Numbers have a full stop in
/// every locale.
std::string ModelText();

}  // namespace zelvane
