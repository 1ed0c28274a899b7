// Batch scripts: the present model runs with one stimulus file after the other, and the peaks become a dose-response
// curve.
//
//   RunBatchScript  StimulusValue; the text of a script is in dose_files.h
#pragma once

#include <functional>
#include <string>

#include "analysis/dose_files.h"
#include "platform/outcome.h"
#include "screen/listeners.h"

namespace zelvane {

/// A script begins or ends; panels show what it uses and what it made.
inline Listeners<> ScriptBegins;
inline Listeners<> DosesToShow;

/// Returns the stimulus of the present run in a profile: it begins with the first sample of drug 1; each later sample
/// of the profile whose magnitude is above the value so far replaces it.
float StimulusValue(int profile);

/// Runs the files of a script, one after the other, and measures each response. The peaks less their baselines and the
/// stimuli become the pairs of the dose-response curve. Then sets seeds and limits for its fit.
///
/// From then on the program reads stimulus files without questions.
/// @param afterRun  called after each run with its row, from 0; may be empty
/// @return Done; Refused, with a message or a note, when the script cannot be used; Stopped, after the pairs so far; or
///         Failed, when a run failed
Outcome RunBatchScript(const std::string& path, const std::function<Outcome(int row)>& afterRun = {});

}  // namespace zelvane
