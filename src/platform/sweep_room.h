// The room of a sweep in samples. Readers, stimulus, run and trace all hold a sweep to it, and their arrays
// are made for it at start-up, so that it has to lie below all of them.
#pragma once

namespace zelvane {

inline constexpr int MaxPoints = 5'000'000;      // points in a run that was cut to the limit
inline constexpr int MaxStimPoints = 5'000'001;  // samples of a stimulus profile, and the largest NumPoints

}  // namespace zelvane
