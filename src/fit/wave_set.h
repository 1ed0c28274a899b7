// The set of recordings that a waveform fit compares a model with, each with the stimulus that it was made
// with, and the list files that name such a set.
//
//   The set       WaveSetClear  WaveStimFileRead
//   List files    ListFileRead  ListFileWrite  ReadListNamed  OpenListNamed
//   Panel         AddWaveSetMenu
//
// The form of a list file is told in wave_list.h.
#pragma once

#include <string>

#include "fit/fit_store.h"
#include "platform/outcome.h"

namespace zelvane {

/// Empties the set: switches and names, `Fit.FitNormalized`, the samples of all waveforms and stimuli, and
/// `Fit.FitWaveCount`.
void WaveSetClear();

/// Reads the stimulus that belongs to a waveform, as StimFileReadInto does, and takes its file's name.
/// @return samples of a profile, or 0 when no sample of the last one was read
int WaveStimFileRead(const std::string& path, FitWaveform& wave);

/// Asks for a list file and loads the model and the pairs that it names. Without a file `Fit.FitListOn` goes
/// to 0.
/// @return Refused without a file, else as ReadListNamed
Outcome ListFileRead();

/// Loads a list file: the model from the list's own folder, then each pair from where the list says or, where
/// it is not there, from the list's folder or from a name that the user is asked for. When the user does not
/// give one, or a file cannot be read, the pairs so far stay.
/// Reads and writes:  `Fit.Wave` (1 to the number of pairs, at most MaxFitWaveforms), `Fit.FitWaveCount`,
///         `Fit.FitListOn`, `Fit.FitListName`, what reading a model, a recording and a stimulus writes.
/// Tells:  a file that is no list or cannot be opened.
/// @return Done when all pairs were loaded; Refused when a file that was asked for was not given; else Failed
Outcome ReadListNamed(const std::string& path);

/// Empties the set and loads a list file, as the menu does once its name is chosen.
Outcome OpenListNamed(const std::string& path);

/// Asks for a name and writes the model's file and the names of the pairs that are loaded to it. On failure
/// shows a message and keeps the existing file.
/// @return Done, Refused without a name, or Failed
Outcome ListFileWrite();

/// Adds the commands of the set to the menu.
void AddWaveSetMenu();

}  // namespace zelvane
