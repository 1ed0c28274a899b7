// The fields of dose-response curves, by name.
#pragma once

namespace zelvane {

/// Adds the fields to the registry, and the rows of the fit.
void RegisterDoseFields();

}  // namespace zelvane
