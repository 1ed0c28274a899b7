// Builds and shows the stimulus profiles.
//
//   Panel          AddStimulusPanel  StimReadControls  StimPanelRefresh  StimPlot
//   Building       StimRebuild  StimFollowInterval  CreateStim  CreateExpStim  CreateExp  CreateTrain  EraseStim  FilterStim
//   Holding level  FillVoltage
//   At a point     StimulusAt
//   Files          stimulus_file.h
//
// Every creator first reads the panel (StimReadControls). A time is truncated to an index.
#pragma once

#include "kinetics/rate_factor.h"
#include "platform/outcome.h"
namespace zelvane {

void AddStimulusPanel();

/// Copies the stimulus parameters from the panel into the store and limits NumPoints.
void StimReadControls();

/// Writes the whole store to the panel. A TrainInterval at or below 0 becomes 1.
void StimPanelRefresh();

/// Reads the panel, dims the fields of the other modes, plots the stimulus and shows the length of the sweep. In
/// AUTOMATIC mode, when no fit runs, it also builds the step of voltage or Drug1 over all MaxStimPoints samples.
/// @return Done, also when USER mode got no file and went back to AUTOMATIC; Refused, with a message, when the
///         mode is unavailable
Outcome StimRebuild();

/// Builds the stimulus again when `Model.ADInterval` has changed since the last time, for example
/// by a recording. The automatic step keeps its times. Does nothing in USER mode without a file.
void StimFollowInterval();

/// Plots NumPoints samples of the StimTarget profile and removes the old plot.
void StimPlot();

// -- Creators. They add to samples 0..NumPoints - 1 of the target profile --
void CreateStim();        // square step or ramp
Outcome CreateExpStim();  // exponentially edged step; Refused when it ends after the run
void CreateExp();         // exponential waveform
void CreateTrain();       // train of steps or waveforms

/// Sets the target's NumPoints samples to 0 and rebuilds.
void EraseStim();

/// Low-pass filters the target's NumPoints samples with the corner FilterFc, then plots.
void FilterStim();

/// Sets samples first..last - 1 of the voltage profile to VHold / 1000 (volts). Limits the indices to the
/// profile.
void FillVoltage(int first, int last);

/// Returns the seven profiles at point `point`, which must lie inside them.
StimulusValues StimulusAt(int point);

}  // namespace zelvane
