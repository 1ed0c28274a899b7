// The fit of rates and its waveforms, by name.
#pragma once

namespace zelvane {

/// Adds the fields to the registry.
void RegisterFitFields();

}  // namespace zelvane
