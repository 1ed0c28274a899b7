// The loop over runs, intervals and channels of a Monte Carlo simulation.
//
//   The loop    RunMonteCarlo
//   Its rules   ChannelsOfRun  ReseedPoint  RunProgressText
//
// Each sweep goes through Simulate (kinetics/simulate.h).
#pragma once

#include <string>

#include "platform/outcome.h"
#include "platform/run_reporter.h"

namespace zelvane {

/// Makes `Model.NumRuns` runs. `Model.NumIntervals` sweeps without drug-dependent rates follow each run,
/// except the last. With `Model.MultiSubunit`, each of `Model.NumChannels` subunits replaces a run, and the
/// trace is their sum.
///
/// Dwell lists and idealised record cover all runs and sweeps; exits and channels that reached a monitored
/// state are counted for each run. Announces the first sweep of each run, so that listeners can save and
/// analyse it. Announces the sum of subunits once, when it is complete.
///
/// Reads:   the run settings of `Model`, `Model.RateMatrix` and `Model.StartOccupancy` as prepared, the
///          profiles up to the last point.
/// Writes:  `Result.Occupancy`, `Result.EffectiveChannels`, `Result.ChannelUnit`, `Result.RunText`, the
///          trace, the working lists, record and statistics of `Dwell`, `Model.StartOccupancy` with
///          `ReseedSimulation`; `Trace.TraceValid` 1 once a channel has reached a monitored state.
/// Tells:   "Error with model." under "!" when a channel comes to a state without connections,
///          RunInterrupted under "!" when stopped, "! Error" when a rate is too fast for
///          the time of the sweep or a run has more than MaxChannelsOfRun channels. The run is then over. The
///          arrays keep the channels simulated so far, and the starting occupancies are as before the run,
///          unless `ReseedSimulation` is on.
/// @return Done, also when no channel was simulated; Stopped; Refused for too many channels or, with a note, for
///         no runs; or Failed when a channel could not go on or a trace was not appended to the autosave file
Outcome RunMonteCarlo(const RunReporter& reporter);

/// Returns the channels of a run: |numChannels + deviation|, converted through a text with two decimals.
int ChannelsOfRun(int numChannels, float deviation);

/// Returns the point whose occupancies start the next sweep: 100 points before the end. In a shorter run it
/// is numPoints - 1, the last point that a resting channel fills.
int ReseedPoint(int numPoints);

/// Returns "Run 1 of 3 with 0.20s interval (sec 0)".
std::string RunProgressText(int run, int numRuns, float lengthSeconds, int sweep);

}  // namespace zelvane
