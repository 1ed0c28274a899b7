// Walking through the episodes of a recording and analysing them.
#pragma once

namespace zelvane {

/// Analyses every episode of the file, until `Analysis.StopAnalysis` is set, and goes back to the first. User
/// events run between two episodes. Does nothing without a trace or while waveforms are being fitted.
void AnalyzeAllEpisodes();

/// Goes on to the next episode and analyses it. Tells of the end of the file; does not wrap.
void AnalyzeNextEpisode();

}  // namespace zelvane
