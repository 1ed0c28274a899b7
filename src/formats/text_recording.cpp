#include "formats/text_recording.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

#include "formats/fast_decimal.h"
#include "formats/line_scanner.h"
#include "platform/index.h"

namespace zelvane {
namespace {

constexpr std::string_view AtfMark = "ATF";
constexpr std::string_view SignalsMark = "\"SignalsExported=";

constexpr char NoText[] = "the file is empty.";
constexpr char NoCounts[] = "line 2 does not hold the numbers of header lines and columns.";
constexpr char TooFewColumns[] = "there are more signals than columns of data.";
constexpr char NoSamples[] = "it holds no samples.";

constexpr double StepTolerance = 1e-7;  // ms
constexpr std::size_t TimesTested = 3;

// -- Words of a line --

/// Returns whether a character separates words: blanks, control bytes and NUL.
bool IsBlank(char c) {
  return static_cast<unsigned char>(c) <= ' ';
}

std::size_t CountWords(std::string_view line) {
  std::size_t words = line.empty() || IsBlank(line.front()) ? 0 : 1;
  for (std::size_t i = 1; i < line.size(); ++i) {
    words += static_cast<std::size_t>(IsBlank(line[i - 1])) & static_cast<std::size_t>(!IsBlank(line[i]));
  }
  return words;
}

/// Removes the next word from `rest` and returns it; empty at the end.
std::string_view NextWord(std::string_view& rest) {
  std::size_t begin = 0;
  while (begin < rest.size() && IsBlank(rest[begin])) ++begin;
  std::size_t end = begin;
  while (end < rest.size() && !IsBlank(rest[end])) ++end;
  const std::string_view word = rest.substr(begin, end - begin);
  rest.remove_prefix(end);
  return word;
}

/// Returns a line from its word `index` on, counted from 0; empty without that word.
std::string_view FromWord(std::string_view line, std::size_t index) {
  for (std::size_t k = 0; k < index; ++k) NextWord(line);
  std::size_t begin = 0;
  while (begin < line.size() && IsBlank(line[begin])) ++begin;
  return line.substr(begin);
}

// -- Numbers --

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

/// Returns a word with a full stop instead of its comma, if the comma is between digits of a number.
std::optional<std::string> WithFullStop(std::string_view word) {
  const std::size_t comma = word.find_first_not_of("0123456789", word.front() == '-' || word.front() == '+');
  if (comma == std::string_view::npos || word[comma] != ',') return std::nullopt;
  const bool decimal = comma > 0 && IsDigit(word[comma - 1]) && comma + 1 < word.size() &&
                       IsDigit(word[comma + 1]) &&
                       word.find_first_of(".,", comma + 1) == std::string_view::npos;
  if (!decimal) return std::nullopt;
  std::string changed(word);
  changed[comma] = '.';
  return changed;
}

/// Returns what %g gives for a number that is not finite or too large: the word says which.
template <typename Real>
Real BeyondFinite(std::string_view word) {
  const bool minus = word.front() == '-';
  const std::size_t sign = minus || word.front() == '+' ? 1 : 0;
  const bool nan = sign < word.size() && (word[sign] == 'n' || word[sign] == 'N');
  const Real size = nan ? std::numeric_limits<Real>::quiet_NaN() : std::numeric_limits<Real>::infinity();
  return minus ? -size : size;
}

/// Reads every form that %g takes, with any text after it in its word, and a comma as decimal mark.
template <typename Real>
std::optional<Real> UnusualValue(std::string_view word) {
  std::optional<std::string> changed;
  if (word.find(',') != std::string_view::npos) {
    changed = WithFullStop(word);
    if (!changed) return std::nullopt;
    word = *changed;
  }
  std::string_view rest = word;
  Real value = 0;
  switch (ScanNumber(rest, value)) {
    case Scan::Taken:
      return value;
    case Scan::Refused:
      return BeyondFinite<Real>(word);
    case Scan::Missing:
      break;
  }
  return std::nullopt;
}

/// Returns the number in the first word of a text. Usually the text is only that word, so its end need not be
/// searched.
template <typename Real>
std::optional<Real> FirstValue(std::string_view text) {
  Real value = 0;
  if (FastDecimal(text, value)) return value;
  const std::string_view word = NextWord(text);
  if (word.empty()) return std::nullopt;
  if (FastDecimal(word, value)) return value;
  const char* end = word.data() + word.size();
  const auto [stop, error] = std::from_chars(word.data(), end, value);
  if (error == std::errc{} && stop == end) return value;
  return UnusualValue<Real>(word);
}

/// Reads the list after the mark up to its closing quote, and the names in it.
void ReadSignalList(std::string_view line, TextShape& shape) {
  line.remove_prefix(SignalsMark.size());
  shape.signalList = line.substr(0, line.find('"'));
  shape.signals = 1 + static_cast<int>(std::count(shape.signalList.begin(), shape.signalList.end(), ','));
}

/// Returns the unit at the end of a title: "pA" of "Trace #1 (pA)".
std::string UnitOf(std::string_view title) {
  const std::size_t open = title.rfind('(');
  if (open == std::string_view::npos) return {};
  const std::size_t close = title.find(')', open);
  return close == std::string_view::npos ? std::string{}
                                         : std::string(title.substr(open + 1, close - open - 1));
}

/// Reads the units of the signals from the titles of the columns, which are in quotes or between tabs.
void ReadUnits(std::string_view titles, TextShape& shape) {
  const char mark = titles.find('"') == std::string_view::npos ? '\t' : '"';
  const std::size_t step = mark == '"' ? 2 : 1;  // text between two quoted titles is not a title
  const std::size_t first = (shape.columns > 1 ? 2 * step : step) - 1;  // after the time, if there is one
  const std::size_t signals = std::min(Index(shape.signals), titles.size());
  for (std::size_t part = 0; shape.units.size() < signals && !titles.empty(); ++part) {
    const std::size_t end = titles.find(mark);
    const bool time = part < first;
    if (!time && part % step == step - 1) shape.units.push_back(UnitOf(titles.substr(0, end)));
    titles.remove_prefix(end == std::string_view::npos ? titles.size() : end + 1);
  }
  shape.units.resize(signals);
}

/// Returns the column of the signal and episode of the request; column 0 is the time.
std::size_t WantedColumn(const TextShape& shape, const TextRequest& request) {
  if (shape.columns == 2) return 1;
  const int place = (request.signal - 1) % shape.signals;
  const int signal = place < 0 ? place + shape.signals : place;
  const int episode = std::clamp(request.episode, 1, shape.episodes);
  return 1 + Index(episode - 1) * Index(shape.signals) + Index(signal);
}

/// Reads the interval from the first times of an ATF, in s, and tests it. Only a step that is too long fails.
void ReadInterval(const std::array<double, TimesTested>& times, std::size_t count, TextSamples& read) {
  if (count < 2) return;
  const double interval = std::clamp((times[1] - times[0]) * 1000.0, MinTextInterval, MaxAtfInterval);
  if (count == TimesTested) {
    read.unequalSteps = !(1000.0 * (times[2] - times[1]) - interval <= StepTolerance);  // NaN fails too
  }
  if (!std::isnan(interval)) read.intervalMs = interval;
}

}  // namespace

TextRecording::TextRecording(std::istream& in, std::size_t blockBytes) : lines_(in, blockBytes) {
  const auto line = lines_.Next();
  if (!line) {
    refusal_ = lines_.Fault().empty() ? NoText : lines_.Fault();
    return;
  }
  first_ = *line;
  shape_.atf = first_.starts_with(AtfMark);
  if (!shape_.atf) return;
  ReadAtfHeader();
  if (!lines_.Fault().empty()) refusal_ = lines_.Fault();
}

void TextRecording::ReadAtfHeader() {
  std::string_view counts = lines_.Next().value_or(std::string_view{});
  int headerLines = 0;
  int columns = 0;
  const bool told = ScanNumber(counts, headerLines) == Scan::Taken &&
                    ScanNumber(counts, columns) == Scan::Taken && headerLines >= 0 && columns >= 1;
  if (!told) {
    refusal_ = NoCounts;
    return;
  }
  shape_.columns = columns;
  for (int k = 0; k < headerLines; ++k) {
    const auto line = lines_.Next();
    if (!line) break;
    if (line->starts_with(SignalsMark)) ReadSignalList(*line, shape_);
  }
  ReadUnits(lines_.Next().value_or(std::string_view{}), shape_);
  if (columns > 2) shape_.episodes = (columns - 1) / shape_.signals;
  if (shape_.episodes < 1) refusal_ = TooFewColumns;
}

std::string WhyNoSamples(const TextShape& shape, const TextSamples& read) {
  if (!read.fault.empty()) return read.fault;
  if (read.badLine == 0) return NoSamples;
  std::string line = "line ";
  line += std::to_string(read.badLine);
  if (shape.columns == 1) return line + " holds no number, or a number with a comma.";
  return line.append(" is not a row of ").append(std::to_string(shape.columns)).append(" numbers.");
}

TextSamples TextRecording::Read(const TextRequest& request) {
  TextSamples read;
  if (shape_.columns == 1) {
    ReadColumn(request, read);
  } else {
    ReadTable(request, read);
  }
  read.fault = lines_.Fault();
  if (!read.fault.empty()) read.samples.clear();
  read.more = read.badLine == 0 && !read.unequalSteps && read.fault.empty() && HasMore();
  return read;
}

/// Returns whether a line with words follows.
bool TextRecording::HasMore() {
  for (auto line = FirstOrNext(); line; line = FirstOrNext()) {
    if (CountWords(*line) > 0) return true;
  }
  return false;
}

/// Returns the next line with one number. Without an ATF header this includes the first line of the file.
std::optional<std::string_view> TextRecording::FirstOrNext() {
  if (shape_.atf || firstGiven_) return lines_.Next();
  firstGiven_ = true;
  return first_;
}

void TextRecording::ReadColumn(const TextRequest& request, TextSamples& read) {
  if (request.intervalLine) {
    const auto interval = FirstValue<double>(FirstOrNext().value_or(std::string_view{}));
    if (!interval || std::isnan(*interval)) {
      read.badLine = lines_.Number();
      return;
    }
    read.intervalMs = std::clamp(*interval, MinTextInterval, MaxColumnInterval);
  }
  while (read.samples.size() < request.most) {
    if (shape_.atf || firstGiven_) ReadPlainLines(request, read.samples);
    if (read.samples.size() == request.most) return;
    const auto line = FirstOrNext();
    if (!line) {
      CheckEnd(read);
      return;
    }
    const auto value = FirstValue<float>(*line);
    if (value) {
      read.samples.push_back(*value * request.scale);
    } else if (CountWords(*line) > 0) {
      read.badLine = lines_.Number();
      return;
    }
  }
}

/// Reads the next lines that hold only a number, up to the first that needs more care.
void TextRecording::ReadPlainLines(const TextRequest& request, std::vector<float>& samples) {
  const std::string_view ahead = lines_.Ahead();
  const char* const end = ahead.data() + ahead.size();
  const char lineEnd = lines_.LineEnd();
  const char* at = ahead.data();
  std::size_t lines = 0;
  while (samples.size() < request.most) {
    float value = 0.0F;
    const char* stop = FastDecimalAt(at, end, value);
    if (stop == nullptr || stop == end) break;
    if (*stop == '\r' && lineEnd == '\n' && stop + 1 != end) ++stop;
    if (*stop != lineEnd) break;
    samples.push_back(value * request.scale);
    at = stop + 1;
    ++lines;
  }
  lines_.Skip(Index(at - ahead.data()), lines);
}

void TextRecording::ReadTable(const TextRequest& request, TextSamples& read) {
  const std::size_t column = WantedColumn(shape_, request);
  const int after = shape_.episodes - std::clamp(request.episode, 1, shape_.episodes);
  const int episodes = std::clamp(request.episodes, 1, after + 1);
  std::array<double, TimesTested> times{};
  for (std::size_t k = 0; k < request.most && !read.unequalSteps; ++k) {
    std::string_view sample;
    const auto row = NextRow(column, sample, read);
    if (!row) {
      CheckEnd(read);
      return;
    }
    const auto time = k < TimesTested ? FirstValue<double>(*row) : 0.0;
    if (!time || !AppendRow(sample, episodes, request.scale, read)) {
      read.badLine = lines_.Number();
      return;
    }
    if (k >= TimesTested) continue;
    times[k] = *time;
    ReadInterval(times, k + 1, read);
  }
}

/// At the end of the text, notes a last line without its end: other programs end every line of an ATF.
void TextRecording::CheckEnd(TextSamples& read) const {
  if (!shape_.atf || lines_.LastLineEnded() || read.badLine != 0) return;
  read.cutLineKept = read.cutLine == 0;
  read.cutLine = lines_.Number();
}

/// Reads the sample at the begin of a row, and those of the next episodes. If one is not a number, appends no
/// sample and returns false.
bool TextRecording::AppendRow(std::string_view row, int episodes, float scale, TextSamples& read) const {
  const std::size_t taken = read.samples.size();
  for (int e = 0; e < episodes; ++e) {
    if (e > 0) row = FromWord(row, Index(shape_.signals));
    const auto value = FirstValue<float>(row);
    if (!value) {
      read.samples.resize(taken);
      return false;
    }
    read.samples.push_back(*value * scale);
  }
  return true;
}

/// Returns the next row; `sample` begins with its word in the column of the request.
std::optional<std::string_view> TextRecording::NextRow(std::size_t column, std::string_view& sample,
                                                       TextSamples& read) {
  const auto wanted = Index(shape_.columns) - column;  // words from the wanted one on
  for (;;) {
    const auto line = lines_.Next();
    if (!line) return std::nullopt;
    sample = FromWord(*line, column);
    if (!sample.empty() && (wanted == 1 || CountWords(sample) >= wanted)) return line;
    const std::size_t words = CountWords(*line);
    if (words == 0) continue;
    const auto joined = JoinRow(*line, words, read);
    if (joined) sample = FromWord(*joined, column);
    return joined;
  }
}

/// Joins a row that continues in the next lines. If they do not end where the row must end, its first line is
/// bad. Leaves out a row that is cut off by the end of the text.
std::optional<std::string_view> TextRecording::JoinRow(std::string_view begin, std::size_t words,
                                                       TextSamples& read) {
  const std::size_t number = lines_.Number();
  const auto columns = Index(shape_.columns);
  row_ = begin;
  while (words < columns) {
    const auto line = lines_.Next();
    if (!line) {
      read.cutLine = number;
      return std::nullopt;
    }
    words += CountWords(*line);
    if (words > columns || row_.size() + line->size() > LongestTextLine) {
      read.badLine = number;
      return std::nullopt;
    }
    row_ += ' ';
    row_ += *line;
  }
  return row_;
}

}  // namespace zelvane
