// Reads stimulus files.
//
//   Binary files   ReadStimHead  ReadStimSamples; recording_file.h opens them
//   Columns        ReadStimColumn
#pragma once

#include <cstddef>
#include <cstdint>
#include <istream>
#include <optional>
#include <span>
#include <string>
#include <vector>

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

/// Reads the header of a file. Returns an empty result when the file is not a stimulus file: it is shorter
/// than a header, its interval is not a number, or it has less than one sample.
std::optional<StimFileHead> ReadStimHead(std::istream& file);

/// Reads samples of profile 0..6 from `first` on, up to the end of the profile, of the file or of `samples`.
/// @return number of samples that were read
std::size_t ReadStimSamples(std::istream& file, const StimFileHead& head, int profile, std::int64_t first,
                            std::span<float> samples);

/// A column of text: its interval on line 1, then one sample per line.
struct StimColumn {
  std::optional<float> intervalMs;  // empty when line 1 has no number
  std::vector<float> samples{};
  bool more = false;    // the file has more samples
  std::string fault{};  // reason to refuse the text, as of TextFault
};

/// Reads at most `most` samples. A line without a number repeats the value before it, at first 0. Returns an
/// empty result when the file cannot be opened.
inline constexpr std::size_t MaxStimColumn = 4'999'999;
std::optional<StimColumn> ReadStimColumn(const std::string& path, std::size_t most = MaxStimColumn);

}  // namespace zelvane
