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

/// The header of a binary file, and the number of samples in the file.
struct StimFileHead {
  float intervalMs = 0.0F;
  int samples = 0;      // of each profile, at least 1
  int samplesHeld = 0;  // of the last profile, really in the file
};

/// Reads the header of a file. Returns an empty result when the file cannot be opened or is not a stimulus
/// file: it is shorter than a header, its interval is not a number, or it has less than one sample.
std::optional<StimFileHead> StimFileHeadOf(const std::string& path);

using StimProfileSpans = std::array<std::span<float>, StimFileProfiles>;

/// Reads the profiles of a file with this header, each up to the end of the file or of its span. Keeps the
/// samples after them. Does not write a 0 over a 0, so untouched memory stays untouched.
/// @return number of samples of the last profile that were read
int ReadStimProfiles(const std::string& path, const StimFileHead& head, const StimProfileSpans& profiles);

/// The result of reading a column of text.
struct StimColumn {
  std::optional<float> intervalMs;  // empty when line 1 has no number
  int samples = 0;
};

/// Reads a column of text into `profile`, at most MaxStimColumn samples. A line without a number repeats
/// the value before it, at first 0. Returns an empty result when the file cannot be opened.
inline constexpr int MaxStimColumn = 4'999'999;
std::optional<StimColumn> ReadStimColumn(const std::string& path, std::span<float> profile);

}  // namespace zelvane
