// Recordings written as text: ATF, and one number a line. Uses no screen and no stores.
//
// Numbers are read as by scanf's %g, correctly rounded, with a full stop in every locale. A comma between the
// digits of a number without a full stop is its decimal mark. With any other comma the line is not a row of
// numbers.
#pragma once

#include <cstddef>
#include <istream>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "formats/text_lines.h"

namespace zelvane {

/// Limits of the interval between samples in a text, ms.
inline constexpr double MinTextInterval = 1e-6;
inline constexpr double MaxAtfInterval = 1e8;
inline constexpr double MaxColumnInterval = 1e6;

/// The contents of the lines before the samples.
struct TextShape {
  bool atf = false;                  // false: one number a line
  int columns = 1;                   // columns of an ATF, including the time if there is one
  int signals = 1;                   // signals side by side in each episode
  std::string signalList;            // their names as the file lists them, split by commas
  std::vector<std::string> units{};  // unit of each signal, from the titles of an ATF's columns
  int episodes = 1;
};

/// The samples to read.
struct TextRequest {
  int signal = 1;             // modulo the signals: with 2 signals 3 is the first again
  int episode = 1;            // 1..TextShape::episodes
  int episodes = 1;           // number of episodes to read at once
  bool intervalLine = false;  // one number a line: the first is the interval, ms
  float scale = 1.0F;         // factor for every sample
  std::size_t most = 0;       // most samples of an episode
};

struct TextSamples {
  std::vector<float> samples;  // several episodes: the first sample of each, then the second of each ...
  std::optional<double> intervalMs;  // within its limits; empty for a text without an interval
  bool unequalSteps = false;         // the third time is too far from the second; three samples were read
  std::size_t badLine = 0;   // line that is not a row of numbers and ended the read; 0 without such a line
  std::size_t cutLine = 0;   // line of an ATF within which the file ends; 0 for a file with a whole last line
  bool cutLineKept = false;  // that line has all its numbers, but the last of them may lack digits
  bool more = false;         // the text has more samples than were wanted
  std::string fault;         // reason to refuse the text, as of TextFault; there are no samples then
};

/// Returns the reason why a text gave no samples, in one sentence.
std::string WhyNoSamples(const TextShape& shape, const TextSamples& read);

/// A text recording, read from its first line to its last.
class TextRecording {
 public:
  /// Reads the header before the samples.
  explicit TextRecording(std::istream& in, std::size_t blockBytes = TextLines::DefaultBlock);

  const TextShape& Shape() const { return shape_; }

  /// Returns the reason for a text without samples, in one sentence; empty for a text with samples.
  const std::string& Refusal() const { return refusal_; }

  /// Reads the samples, once. Blank lines are skipped, and a row of an ATF may
  /// continue in further lines. Reading ends at the end of the text, at `request.most` samples or at a line
  /// that is not a row of numbers.
  TextSamples Read(const TextRequest& request);

 private:
  void ReadAtfHeader();
  std::optional<std::string_view> FirstOrNext();
  void ReadPlainLines(const TextRequest& request, std::vector<float>& samples);
  std::optional<std::string_view> NextRow(std::size_t column, std::string_view& sample, TextSamples& read);
  std::optional<std::string_view> JoinRow(std::string_view begin, std::size_t words, TextSamples& read);
  void ReadColumn(const TextRequest& request, TextSamples& read);
  void ReadTable(const TextRequest& request, TextSamples& read);
  void CheckEnd(TextSamples& read) const;
  bool HasMore();
  bool AppendRow(std::string_view row, int episodes, float scale, TextSamples& read) const;

  TextLines lines_;
  std::string first_;  // the line that decided the kind; without an ATF's mark it is read again
  bool firstGiven_ = false;
  std::string row_;  // a row put together from several lines
  TextShape shape_;
  std::string refusal_;
};

}  // namespace zelvane
