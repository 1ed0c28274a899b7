// The profiles and their settings, by name.
#pragma once

namespace zelvane {

/// Adds the fields to the registry. Needs the memory of the large arrays.
void RegisterStimulusFields();

}  // namespace zelvane
