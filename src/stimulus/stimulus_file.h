// Stimulus files: all seven profiles in a binary file (.stm), one of them in a column of text (.asc).
//
//   Commands       OpenStimulusNamed  StimFileRead  StimFileWrite  StimAsciiImport  StimAsciiExport  StimFileReadInto
//   Bare files     WriteStimProfiles  WriteStimColumn; readers in recording_file.h and stimulus_read.h
//   Panel          AddStimulusFileControls
//
// A binary file is little-endian and has no magic: the interval in ms (32-bit float), N (32-bit integer),
// then N floats of the voltage (V) and of Drug1 to Drug6 (M). N is one more than the points of the run that
// it proposes. A text file has the interval in ms on line 1, then one sample a line.
#pragma once

#include <array>
#include <optional>
#include <span>
#include <string>

#include "formats/stimulus_read.h"
#include "platform/outcome.h"

namespace zelvane {

/// One span for each profile of a file, all of one length.
using StimProfileSpans = std::array<std::span<float>, StimFileProfiles>;

/// Limits of the interval in a file (ms).
inline constexpr float LeastFileInterval = 1e-6F;
inline constexpr float MostFileInterval = 1e6F;

/// Writes the profiles, all of one length. On failure shows a message and keeps the existing file.
/// @return Done; Stopped, without a message, when the user stopped the write; or Failed
Outcome WriteStimProfiles(const std::string& path, float intervalMs, const StimProfileSpans& profiles);

/// Writes a column of text in the same way.
Outcome WriteStimColumn(const std::string& path, float intervalMs, std::span<const float> profile);

/// Reads the seven profiles of a file.
///
/// If the file has another interval or another number of points, asks before it uses them. After a script
/// has run, asks nothing and keeps the present ones. Shows a message and changes nothing when the file
/// cannot be opened, is not a stimulus file, or has more than MaxStimPoints samples per profile. If the
/// file is shorter than its header says, sets the missing samples to 0 without a message.
///
/// Writes:  `Stimulus.Profile`, `Stimulus.StimFileName`, `Model.ADInterval`, `Model.NumPoints`, and their
///          panels.
/// @return Done when samples of the last profile were read, else Failed
Outcome StimFileRead(const std::string& path);

/// The result of StimFileReadInto.
struct StimulusRead {
  int samples = 0;  // of a profile; 0 when no sample of the last profile was read
  float intervalMs = 0.0F;
};

/// Reads the seven profiles of a file into other arrays of equal length and does not clear them first. Asks
/// before it uses an interval that differs by more than 0.0001 ms from `Model.ADInterval`. Refuses the same
/// files as StimFileRead, with the length of the arrays as the limit; the result is then empty.
///
/// Writes:  `profiles`, `Model.ADInterval`.
std::optional<StimulusRead> StimFileReadInto(const std::string& path, const StimProfileSpans& profiles);

/// Reads the stimulus panel and writes `count` samples (1 to MaxStimPoints) of each profile, even after
/// NumPoints. Messages and outcome are those of WriteStimProfiles.
Outcome StimFileWrite(const std::string& path, int count);

/// Reads a column of text into the profile `Stimulus.StimTarget`. Asks before it uses another interval or
/// another number of points. Keeps the samples after those of the file.
/// @return 1 when more than 100 samples were read, else 0; an empty result, with a message, when the file
///         cannot be opened
std::optional<int> StimAsciiImport(const std::string& path);

/// Writes `count` samples (1 to MaxStimPoints) of the profile `Stimulus.StimTarget` as a column of text in
/// the same way.
Outcome StimAsciiExport(const std::string& path, int count);

/// Reads a binary stimulus file as the stimulus of the next runs. On success selects USER mode.
/// @return as StimFileRead
Outcome OpenStimulusNamed(const std::string& path);

/// Adds the commands and fields of stimulus files to the stimulus panel and the menu.
void AddStimulusFileControls();

}  // namespace zelvane
