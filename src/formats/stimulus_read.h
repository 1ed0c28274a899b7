// Reads stimulus files into spans.
//
//   Binary files   StimFileHeadOf  ReadStimProfiles
//   Columns        ReadStimColumn
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <span>
#include <string>

namespace zelvane {

inline constexpr std::size_t StimFileHeadBytes = 8;
inline constexpr std::size_t StimFileProfiles = 7;  // voltage, Drug1 to Drug6
inline constexpr int MaxStimSamples = 5'000'001;    // most samples of a profile in a run

/// What a binary file says of itself, and what it holds.
struct StimFileHead {
  float intervalMs = 0.0F;
  int samples = 0;      // of each profile, at least 1
  int samplesHeld = 0;  // of the last profile, that are truly in the file
};

/// The head of a file; nothing when it cannot be opened or is no stimulus file: shorter than its head, an
/// interval that is no number, or less than one sample.
std::optional<StimFileHead> StimFileHeadOf(const std::string& path);

using StimProfileSpans = std::array<std::span<float>, StimFileProfiles>;

/// Reads the profiles of a file whose head is known, each as far as the file and its span reach. Samples that
/// do not come in stay as they were, and one of 0 is not written where 0 stands, so that untouched memory
/// stays so.
/// @return samples of the last profile that came in
int ReadStimProfiles(const std::string& path, const StimFileHead& head, const StimProfileSpans& profiles);

/// A column of text that was read.
struct StimColumn {
  std::optional<float> intervalMs;  // nothing when line 1 holds no number
  int samples = 0;
};

/// Reads a column of text into `profile`, at most MaxStimColumn samples. A line that holds no number repeats
/// the value before it, 0 at first. Nothing when the file cannot be opened.
inline constexpr int MaxStimColumn = 4'999'999;
std::optional<StimColumn> ReadStimColumn(const std::string& path, std::span<float> profile);

}  // namespace zelvane
