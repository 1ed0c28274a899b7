// Limits, seeds and settings of every fit, and its waveforms, by name.
#pragma once

namespace zelvane {

/// Adds the fields to the registry. Needs the memory of the large arrays.
void RegisterFitFields();

}  // namespace zelvane
