// Files of the waveforms of a fit: recordings and stimuli, one by one or paired by name.
//
//   One line      LoadWaveData  LoadWaveStimulus  TakeRecording  EmptyWave  ClearWaveData  ClearWaveStimulus
//                 CountWaves  LoadedWaves  NoWaveLoaded  ForgetNormalizing
//   Many files    AddWaveFiles
#pragma once

#include <span>
#include <string>
#include <vector>

#include "fit/fit_store.h"
#include "platform/outcome.h"
#include "trace/trace_read.h"

namespace zelvane {

/// Empties a waveform: samples, names, switches. Its windows stay.
void EmptyWave(int w);

/// Empty only the recording or only the stimulus.
void ClearWaveData(int w);
void ClearWaveStimulus(int w);

/// Returns whether no line has a recording.
bool NoWaveLoaded();

/// Turns `Fit.FitNormalized` off: the next recordings are not normalised.
void ForgetNormalizing();

/// Reads the first episode of a recording (ABF, OBF, ATF or a column of numbers) into waveform `w`, at most
/// MaxWaveformPoints samples. Asks the open questions about it. Writes the lines of the log box and, as
/// every read of a recording does, `Model.ADInterval` and `Model.NumPoints`. The first waveform of a set turns
/// `Fit.FitNormalized` off. A note tells of samples that are no numbers.
/// @param asksText  asks before it reads a text
/// @return Done; Refused, also by the user, or Failed: the waveform is then empty
Outcome LoadWaveData(int w, const std::string& path, bool asksText = true);

/// Does the same for a chosen sweep, without questions.
Outcome LoadWaveData(int w, const std::string& path, const SweepChoice& choice);

/// Stores the facts of a recording that was read into `wave`, turns its line on and tells of odd samples.
void TakeRecording(FitWaveform& wave, const std::string& path, const SweepRead& read);

/// Reads a stimulus file into waveform `w`.
/// @return Done, or Failed: the stimulus is then empty
Outcome LoadWaveStimulus(int w, const std::string& path);

/// Returns the number of lines with a recording.
int LoadedWaves();

/// Counts the loaded waveforms. `Fit.FitShowCurves` and `Fit.FitTotalCurves` follow, at least 1.
void CountWaves();

/// Loads recordings into the next free lines, and each stimulus file (.stm) into the line of the recording with
/// the same name before the full stop. Notes tell of files without a partner and of files that found no line.
/// @return Done with all files, else Failed
Outcome AddWaveFiles(std::span<const std::string> paths);

}  // namespace zelvane
