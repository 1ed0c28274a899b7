// A run that takes seconds, apart from the headers of the integrators: they use a word that Qt takes for its
// own.
#pragma once

namespace zelvane {

/// Sets the stores to the full table under a voltage that never stands still, 600,000 points.
void SetUpLongRun();

}  // namespace zelvane
