// The fields of the average of sweeps, by name.
#pragma once

namespace zelvane {

void RegisterAveragesFields();

}  // namespace zelvane
