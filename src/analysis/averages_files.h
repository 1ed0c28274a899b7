// Files of the average of sweeps: columns of text, and the variance.
#pragma once

#include <span>
#include <string>

#include "platform/outcome.h"

namespace zelvane {

/// Returns an average as one column of text: the interval (ms), then a line for each place that a sweep reached.
std::string AverageColumn(std::span<const float> wave, float intervalMs);

/// Returns time (ms), mean, variance and number of sweeps as comma-separated text, a line for each place that a sweep
/// reached. The variance of one sweep is an empty cell.
std::string VarianceCsv();

/// Ask for a name and write. Refused without a name; failures show a message.
Outcome ExportWaveAverage();     // replaces a file, after a question
Outcome ExportWaveNormalized();  // appends
Outcome ExportWaveVariance();    // replaces a file

}  // namespace zelvane
