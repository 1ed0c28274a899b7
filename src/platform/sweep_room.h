// The limits of a sweep in samples. Readers, stimulus, run and trace use them, and their arrays get this
// size at start-up. So this header is in the lowest folder.
#pragma once

namespace zelvane {

inline constexpr int MaxPoints = 5'000'000;      // points in a run that was limited
inline constexpr int MaxStimPoints = 5'000'001;  // samples of a stimulus profile, and the largest NumPoints

}  // namespace zelvane
