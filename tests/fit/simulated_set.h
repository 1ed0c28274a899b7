// Waveforms for fits whose true rates are known: simulations of the present model with noise.
#pragma once

#include <functional>

namespace zelvane {

/// The scheme of the tests: closed 1, bound 2, open 3, in a row on the grid. Binding depends on Drug1.
///
/// Writes: `Model`, the windows and settings of `Fit`. The interval is 0.02 ms; a pulse of drug begins at 2 ms.
void MakeThreeStateModel();

/// The same scheme in the table, with a desensitised state 4 after 2: rates 1-2, 2-1, 2-3, 3-2, 2-4, 4-2.
void MakeTableModel();

/// Simulates `points` points under a pulse of Drug1 from 2 ms to `endMs` and loads the result as waveform `w`.
/// @param noise  standard deviation of the noise, as a fraction of the peak
void LoadSimulatedWave(int w, int points, float molar, float endMs, double noise);

/// Loads a simulation under the profiles that `fill` writes.
void LoadSimulatedWave(int w, int points, double noise, const std::function<void()>& fill);

}  // namespace zelvane
