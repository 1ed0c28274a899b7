// The fields that all fits share, by name.
#pragma once

#include <string>

#include "parameters/parameters_store.h"
#include "screen/fields.h"

namespace zelvane {

/// Adds the fields to the registry.
void RegisterParametersFields();

/// Adds a table of limits under the names `table`[].lo and `table`[].hi.
void RegisterLimits(FieldKind kind, const std::string& table, FitLimitTable& limits);

}  // namespace zelvane
