// Stimulus profiles: how they are built and shown.
//
//   Panel          AddStimulusPanel  StimReadControls  StimPanelRefresh  StimPlot
//   Building       StimRebuild  CreateStim  CreateExpStim  CreateExp  CreateTrain  EraseStim  FilterStim
//   Holding level  FillVoltage
//   At a point     StimulusAt
//   Files          stimulus_file.h
//
// Every creator first reads the panel (StimReadControls). Indices follow from times by truncation.
#pragma once

#include "kinetics/rate_factor.h"
namespace zelvane {

void AddStimulusPanel();

/// Copies the stimulus parameters from the panel into the store and holds NumPoints to its limit.
void StimReadControls();

/// Writes the whole store to the panel. A TrainInterval at or below 0 becomes 1.
void StimPanelRefresh();

/// Reads the panel, dims all fields but those of the mode in force, and in AUTOMATIC mode, while no fit runs,
/// builds the step of voltage or Drug1 over all MaxStimPoints samples. Shows the sweep's length.
void StimRebuild();

/// Rebuilds and plots the stimulus when `Model.ADInterval` has changed since, as by a recording that was
/// read: the automatic step keeps its times. USER mode without a file waits for its panel.
void StimFollowInterval();

/// Plots NumPoints samples of the StimTarget profile in place of the old plot.
void StimPlot();

// -- Creators add to what the target profile holds, over samples 0..NumPoints - 1 --
void CreateStim();     // square step or ramp
void CreateExpStim();  // exponentially edged step
void CreateExp();      // exponential waveform
void CreateTrain();    // train of steps or waveforms

/// Sets the target's NumPoints samples to 0, rebuilds and plots.
void EraseStim();

/// Low-pass filters the target's NumPoints samples with the corner FilterFc, then plots.
void FilterStim();

/// Sets samples first..last - 1 of the voltage profile to VHold / 1000 (volts). Bounds are held to the
/// profile.
void FillVoltage(int first, int last);

/// Returns the seven profiles at point `point`, which must lie inside them.
StimulusValues StimulusAt(int point);

}  // namespace zelvane
