// Walking through the episodes of a recording and analysing them.
#pragma once

#include "platform/outcome.h"

namespace zelvane {

/// Analyses every episode of the file, until `Analysis.StopAnalysis` is set, and goes back to the first. User
/// events run between two episodes.
/// @return Done, Stopped, or Refused without a trace or while waveforms are being fitted
Outcome AnalyzeAllEpisodes();

/// Goes on to the next episode and analyses it. Does not wrap: at the end of the file shows a message.
/// @return Done, or Refused when there is no next episode, no trace, or waveforms are being fitted
Outcome AnalyzeNextEpisode();

}  // namespace zelvane
