// Fields for state numbers on the panels of rate and loop constraints.
#pragma once

#include <string_view>

#include "screen/screen.h"

namespace zelvane {

inline constexpr char IndexCommand[] = "FxnKConstraint";
inline constexpr char IndexHelp[] =
    "Index for the rate constant to be constrained or state number within loop";

/// Action of a field for a state number. Another number gives way to the one before, with a note.
void KeepStateNumber(const ControlEvent& event);

/// Puts back the fields of a panel with a typed number that is no state, with a note. Commands call it before
/// they read the panel.
void KeepStateNumbers(std::string_view panel);

}  // namespace zelvane
