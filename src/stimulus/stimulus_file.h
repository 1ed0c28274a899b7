// Stimulus files: all seven profiles in a binary file (.stm), one of them in a column of text (.asc).
//
//   Commands       StimFileRead  StimFileWrite  StimAsciiImport  StimAsciiExport  StimFileReadInto
//   Bare files     WriteStimProfiles  WriteStimColumn; readers in stimulus_read.h
//   Panel          AddStimulusFileControls
//
// A binary file is little-endian and has no magic: the interval in ms (32-bit float), N (32-bit integer),
// then N floats of the voltage (V) and of Drug1 to Drug6 (M). N is one more than the points of the run that
// it proposes. A text file has the interval in ms on line 1, then one sample a line.
#pragma once

#include <optional>
#include <span>
#include <string>

#include "fit/fit_store.h"
#include "formats/stimulus_read.h"
#include "platform/outcome.h"

namespace zelvane {

/// Limits of an interval that a file brings (ms).
inline constexpr float LeastFileInterval = 1e-6F;
inline constexpr float MostFileInterval = 1e6F;

/// Writes the profiles, all of one length. On failure shows a message and keeps the existing file.
/// @return Done, Stopped (the writing was, without a message) or Failed
Outcome WriteStimProfiles(const std::string& path, float intervalMs, const StimProfileSpans& profiles);

/// Writes a column of text, likewise.
Outcome WriteStimColumn(const std::string& path, float intervalMs, std::span<const float> profile);

/// Reads the seven profiles of a file.
///
/// Asks whether to take over another interval and another number of points; after a script has run neither is
/// asked, and the present ones stay. A file that cannot be opened, is no stimulus file or holds more than
/// MaxStimPoints samples a profile is told and changes nothing. A file shorter than its head says is not
/// told: what is missing is 0. Writes:  `Stimulus.Profile`, `Stimulus.StimFileName`, `Model.ADInterval`,
/// `Model.NumPoints`; the panels
///          follow.
/// @return Done when samples of the last profile were read, else Failed
Outcome StimFileRead(const std::string& path);

/// Reads the seven profiles of a file into other arrays, all of one length, which are not cleared first. Asks
/// whether to take over an interval that differs by more than 0.0001 ms from `Model.ADInterval`. Refusals as
/// above, with the arrays' length as the limit. Writes:  `profiles`, `intervalMs` (that of the file),
/// `Model.ADInterval`.
/// @return N, or 0 when no sample of the last profile was read
int StimFileReadInto(const std::string& path, const StimProfileSpans& profiles, float& intervalMs);

/// Reads the stimulus panel and writes `count` samples (1 to MaxStimPoints) of each profile, also those that
/// lie beyond NumPoints. Messages and outcome as in WriteStimProfiles.
Outcome StimFileWrite(const std::string& path, int count);

/// Reads a column of text into the profile `Stimulus.StimTarget`. Asks whether to take over another interval
/// and another number of points. Samples beyond those read stay as they were.
/// @return 1 when more than 100 samples were read, else 0; nothing when the file could not be opened, which
///         has been told
std::optional<int> StimAsciiImport(const std::string& path);

/// Writes `count` samples (1 to MaxStimPoints) of the profile `Stimulus.StimTarget` as a column of text,
/// likewise.
Outcome StimAsciiExport(const std::string& path, int count);

/// Reads a binary stimulus file as the stimulus of the next runs: on success USER mode begins.
/// @return as StimFileRead
Outcome OpenStimulusNamed(const std::string& path);

/// Adds the commands and fields of stimulus files to the stimulus panel and the menu.
void AddStimulusFileControls();

}  // namespace zelvane
