// Analyses the episodes of a recording, one after the other.
#pragma once

#include "platform/outcome.h"

namespace zelvane {

/// Reads an episode and makes it the present one. Returns false when it cannot be read; the present one then stays.
bool ReadEpisode(int episode);

/// Analyses every episode of the file until `Analysis.StopAnalysis` is set or a stop is asked for, then reads
/// the first episode again. Handles user events between two episodes. Stops at an episode that cannot be read, with a message;
/// the episode before it then stays in view.
/// @return Done, Stopped, Failed at an episode that cannot be read, or Refused without a trace or during a
///         fit of waveforms
Outcome AnalyzeAllEpisodes();

/// Reads the next episode and analyses it. At the end of the file shows a message and does not return to
/// the first.
/// @return Done, Failed at an episode that cannot be read, or Refused without a next episode, without a trace,
///         or during a fit of waveforms
Outcome AnalyzeNextEpisode();

}  // namespace zelvane
