// Limits of the fits of noise, by name.
#pragma once

namespace zelvane {

/// Adds the fields to the registry.
void RegisterNoiseFields();

}  // namespace zelvane
