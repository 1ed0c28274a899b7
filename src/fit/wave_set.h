// The recordings of a waveform fit, each with its stimulus, and the list files with their names.
//
//   The set       WaveSetClear  WaveStimFileRead
//   List files    ListFileRead  ListFileWrite  ReadListNamed  OpenListNamed
//   Panel         AddWaveSetMenu
//
// wave_list.h describes the form of a list file.
#pragma once

#include <string>

#include "fit/fit_store.h"
#include "platform/outcome.h"

namespace zelvane {

/// Empties the set: switches and names, `Fit.FitNormalized`, the samples of all waveforms and stimuli, and
/// `Fit.FitWaveCount`.
void WaveSetClear();

/// Reads the stimulus of a waveform, as StimFileReadInto does, and stores the name of its file.
/// @return number of samples of a profile; 0 when no sample of the last profile was read
int WaveStimFileRead(const std::string& path, FitWaveform& wave);

/// Asks for a list file and loads its model and its pairs. Without a file sets `Fit.FitListOn` to 0.
/// @return Refused without a file, otherwise as ReadListNamed
Outcome ListFileRead();

/// Loads a list file: first the model from the folder of the list, then each pair. Looks for a file at the
/// given place, then in the folder of the list, and then asks the user for a name. When the user gives no
/// name, keeps the pairs so far. A pair that cannot be read leaves its waveform empty, and notes tell of it.
/// Reads and writes:  `Fit.Wave` (1 to the number of pairs, at most MaxFitWaveforms), `Fit.FitWaveCount`,
///         `Fit.FitListOn`, `Fit.FitListName`, what reading a model, a recording and a stimulus writes.
/// @param model  not empty: the caller has read this model instead of that of the list
/// Tells:  a file that is not a list or cannot be opened.
/// @return Done with all pairs; Refused when the user gave no file; otherwise Failed
Outcome ReadListNamed(const std::string& path, const std::string& model = {});

/// Empties the set and loads a list file, as the menu does after the choice of a name.
Outcome OpenListNamed(const std::string& path);

/// Asks for a name and writes a list with the model file and the names of the loaded pairs. On failure
/// shows a message and keeps the existing file.
/// @return Done, Refused without a name, or Failed
Outcome ListFileWrite();

/// Adds the commands of the set to the menu.
void AddWaveSetMenu();

}  // namespace zelvane
