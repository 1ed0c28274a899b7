// The average of sweeps: each sweep is measured, laid on the first one, and added.
//
//   One sweep     WaveMeasure  SteepestRise
//   Alignment     AlignmentPoint  valign
//   The average   WaveAddAverage  AverageAllSweeps  ClearAverage  MeanWave  NormalizedWave  VarianceWave
//
// Engines take spans; the operations read the trace and `Averages` (averages_store.h). The panel is in wave_panel.h, the
// exports are in averages_files.h.
#pragma once

#include <optional>
#include <span>
#include <vector>

#include "platform/outcome.h"
#include "screen/listeners.h"

namespace zelvane {

/// What is typed on the panel will be used.
inline Listeners<> WaveSettingsWanted;

/// The average has changed.
inline Listeners<> AverageChanged;

/// Returns the position of the steepest rise between the samples a and b: the sample with the largest change over w
/// samples before it, moved on by half of w. Of equal ones the first.
int SteepestRise(std::span<const float> trace, int a, int b, int w);

/// Measures baseline, peak, rise and steepest rise of the sweep in the trace, with the settings of `Averages`. Values of
/// earlier sweeps stay where a measure is not possible. Does nothing without a trace.
void WaveMeasure();

/// Where a sweep is compared with the average: `range` candidates around sample `point`, over `width` places around
/// `anchor`.
struct AlignSearch {
  int point = 0;
  int range = 0;
  int anchor = 0;
  int width = 0;
};

/// The normalised average so far.
struct NormalizedAverage {
  std::span<const float> sum;
  std::span<const float> count;
};

/// Returns the sample of a sweep that lies on the anchor when its rise, in percent of `peak`, fits the normalised average
/// best (least squares; of equal ones the first). The baseline is not taken off the sweep.
/// @param points  samples of the sweep
/// @return empty when the search goes beyond the sweep
std::optional<int> AlignToAverage(std::span<const float> trace, int points, float peak,
                                  const NormalizedAverage& average, const AlignSearch& search);

/// Does the same for the trace and the average of the stores. When the search goes beyond the record, shows a message and
/// returns 0.
int valign(int p, int r, int anchor, int w);

/// Adds the sweep in the trace to the average, laid on it by `Averages.AlignMode`.
void WaveAddAverage();

/// Adds all episodes of the recording, with progress; shows the episode of before again.
/// @return Done; Refused without a recording; Stopped by the user; or Failed when an episode cannot be read
Outcome AverageAllSweeps();

/// Empties the average.
void ClearAverage();

/// Return the mean, the mean of the normalised sweeps (percent) and the variance at each place, up to the last of the
/// present trace; NaN at a place that no sweep reached, the variance also where only one did.
std::vector<float> MeanWave();
std::vector<float> NormalizedWave();
std::vector<float> VarianceWave();

}  // namespace zelvane
