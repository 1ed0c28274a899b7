#include "model/model_text.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <type_traits>

#include "formats/line_scanner.h"
#include "model/model.h"
#include "model/model_file_lines.h"
#include "platform/format_text.h"
#include "platform/index.h"

namespace zelvane {
namespace {

/// First words of the formats, oldest first. The first three characters decide.
constexpr std::array<std::string_view, NewestFileVersion> Magics{"MOD", "2ZV", "3ZV", "4ZV"};
constexpr std::size_t MagicBytes = 3;
constexpr std::size_t MagicWordBytes = 4;
constexpr std::size_t LongestFaultWord = 30;  // bytes of a word in a message

/// Returns the part of a text that a line can hold: up to its first line break or NUL, at most `bytes` - 1
/// bytes.
std::string_view OneLine(std::string_view text, int bytes) {
  constexpr std::string_view Breaks("\r\n\0", 3);
  return CutToRoom(text.substr(0, text.find_first_of(Breaks)), bytes);
}

std::string& TextOf(FieldRef ref) {
  return *reinterpret_cast<std::string*>(ref.address);
}

// -- Reading --

double Checked(const CellRule& rule, double value) {
  if (rule.absolute && value < 0.0) value = -value;
  if (value < rule.least || (rule.leastIsBelow && value == rule.least)) return rule.belowBecomes;
  if (value > rule.most) return rule.aboveBecomes;
  return value;
}

/// Counts the lines of a complete file after the magic.
struct LineCounter final : ModelFileVisitor {
  int lines = 0;

  void Header(std::string_view) override { ++lines; }
  void NumberedHeader(int, std::string_view) override { ++lines; }
  void Text(FieldRef, FieldRef) override { ++lines; }
  void Numbers(std::span<const Cell>, bool) override { ++lines; }
  void Reserved(int count, std::string_view) override { lines += count; }
  void LastLine() override {}
};

/// Collects what a file does not hold.
struct FaultList {
  ModelFaults lines;  // the first MaxModelFaults
  int moreLines = 0;  // after them
  std::string cutAt;  // name of the first field after the end of the file; empty for a complete file

  void AddLine(std::string sentence) {
    if (lines.size() < MaxModelFaults)
      lines.push_back(std::move(sentence));
    else
      ++moreLines;
  }
  void Cut(FieldRef field) {
    if (cutAt.empty() && field) cutAt = NameOfElement(field);
  }
};

struct Reader final : ModelFileVisitor {
  std::string_view rest;
  bool onLastLine = false;
  int lineNumber = 0;  // of the last line
  FaultList faults;

  void Header(std::string_view) override { Next(); }

  void NumberedHeader(int number, std::string_view) override {
    while (const auto line = Next()) {
      std::string_view at = line->text;
      int scanned = 0;
      if (ScanNumber(at, scanned) == Scan::Taken && scanned == number) return;
    }
  }

  void Text(FieldRef field, FieldRef follower) override {
    const auto line = Next();
    if (!line || !(line->ended || onLastLine)) {
      faults.Cut(field);
      return;
    }
    if (line->text.find('\0') != std::string_view::npos) {
      faults.AddLine(FormatText("line %d holds a NUL byte; only the text before it was read", lineNumber));
    }
    TextOf(field) = OneLine(line->text, field.field->textBytes);
    if (follower) TextOf(follower) = TextOf(field);
  }

  void Numbers(std::span<const Cell> cells, bool) override {
    auto line = Next();
    if (!line) {
      faults.Cut(cells.front().field);
      return;
    }
    line->ended = line->ended || onLastLine;
    bool holdsMore = true;
    bool sound = true;
    for (const Cell& cell : cells) {
      const std::string_view before = line->text;
      const Scan scan =
          std::visit([&](auto field) { return ReadCell(*line, holdsMore, cell, field); }, cell.number);
      if (sound) sound = CheckCell(cell, scan, before, *line);
      holdsMore = scan != Scan::Missing;
    }
  }

  void Reserved(int lines, std::string_view) override {
    for (int i = 0; i < lines; ++i) Next();
  }

  void LastLine() override { onLastLine = true; }

 private:
  std::optional<TextLine> Next() {
    const auto line = NextLine(rest);
    if (line) ++lineNumber;
    return line;
  }

  /// Notes the first fault of a line. Returns whether the cell was read as it is written.
  /// @param before  the line from this cell on
  bool CheckCell(const Cell& cell, Scan scan, std::string_view before, const TextLine& line) {
    if (scan == Scan::Missing && !line.ended) {
      faults.Cut(cell.field);
      return false;
    }
    const std::string word(FirstWord(before, LongestFaultWord));
    const bool whole = line.text.empty() || std::isspace(static_cast<unsigned char>(line.text.front())) != 0;
    const bool ofOlderFile = scan == Scan::Missing && word.empty() && cell.rule->missing;
    if ((scan == Scan::Taken && whole) || ofOlderFile) return true;
    faults.AddLine(FormatText("line %d: ", lineNumber) + FaultOf(cell, scan, word));
    return false;
  }

  /// Returns what is wrong with the word of a cell, and which value the setting has now.
  static std::string FaultOf(const Cell& cell, Scan scan, const std::string& word) {
    const std::string value = cell.field ? FieldText(cell.field) : std::string{};
    if (scan == Scan::Taken) return "'" + word + "' was read as " + value;
    std::string sentence = word.empty() ? "a number is missing" : "'" + word + "' is not a number";
    if (word.empty() && cell.field) sentence = "no number for " + NameOfElement(cell.field);
    if (scan == Scan::Refused) sentence = "'" + word + "' is out of range";
    if (!cell.field) return sentence + ", the settings of this line kept";
    return sentence + ", " + value + (scan == Scan::Missing && cell.rule->missing ? " taken" : " kept");
  }

  /// Reads one number from the line.
  template <typename T>
  static Scan ReadCell(TextLine& line, bool holdsMore, const Cell& cell, T field) {
    using Number = std::remove_pointer_t<T>;
    Number value{};
    Scan scan = holdsMore ? ScanNumber(line.text, value) : Scan::Missing;
    // A file that was cut off may lack digits.
    if (line.text.empty() && !line.ended) scan = Scan::Missing;
    if (scan == Scan::Taken && cell.rule->isNarrowed &&
        !NumberSuits(FieldType::Float, static_cast<double>(value)))
      scan = Scan::Refused;
    if constexpr (std::is_pointer_v<T>) {
      if (scan == Scan::Taken) {
        *field = static_cast<Number>(Checked(*cell.rule, static_cast<double>(value)));
        if (cell.rule->insteadOfZero != nullptr && *field == 0)
          *field = static_cast<Number>(FieldNumber(FindField(cell.rule->insteadOfZero)));
      }
      if (scan == Scan::Missing && cell.rule->missing && line.ended)
        *field = static_cast<Number>(*cell.rule->missing);
    }
    return scan;
  }
};

/// Returns the sentences about a file of format `version` that was read up to line `lastLine`.
ModelFaults Sentences(FaultList faults, int version, int lastLine) {
  ModelFaults sentences = std::move(faults.lines);
  if (faults.moreLines > 0) {
    sentences.push_back(FormatText("%d more lines do not hold their numbers", faults.moreLines));
  }
  if (!faults.cutAt.empty()) {
    LineCounter counter;
    WalkModelFile(version, counter);
    sentences.push_back(
        FormatText("the file ends at line %d of %d: the settings from %s on are those of before", lastLine,
                   counter.lines + 1, faults.cutAt.c_str()));
  }
  return sentences;
}

/// Returns the format in the first word of a text, or 0. Removes the line with this word.
int ReadMagic(std::string_view& rest) {
  const std::string_view word = FirstWord(rest, MagicWordBytes);
  const auto found = std::find(Magics.begin(), Magics.end(), word.substr(0, MagicBytes));
  if (found == Magics.end()) return 0;
  NextLine(rest);
  return static_cast<int>(found - Magics.begin()) + 1;
}

// -- Writing --

/// The form of a line's fractional numbers: that of each cell, or all digits if the line would otherwise be
/// too long.
enum class Digits { ByForm, All };

struct Writer final : ModelFileVisitor {
  std::string text;

  void Header(std::string_view header) override {
    text += header;
    text += '\n';
  }

  void NumberedHeader(int number, std::string_view header) override {
    AppendInt(number);
    text += ' ';
    Header(header);
  }

  void Text(FieldRef field, FieldRef) override { Header(OneLine(TextOf(field), field.field->textBytes)); }

  void Numbers(std::span<const Cell> cells, bool blankAtEnd) override {
    const std::size_t start = text.size();
    AppendCells(cells, blankAtEnd, Digits::ByForm);
    if (text.size() - start > MaxLineBytes) {
      text.resize(start);
      AppendCells(cells, blankAtEnd, Digits::All);
    }
    text += '\n';
  }

  void Reserved(int lines, std::string_view line) override {
    for (int i = 0; i < lines; ++i) Header(line);
  }

  void LastLine() override {}

 private:
  void AppendCells(std::span<const Cell> cells, bool blankAtEnd, Digits digits) {
    for (const Cell& cell : cells) {
      std::visit([&](auto field) { AppendCell(cell.rule->form, field, digits); }, cell.number);
      text += ' ';
    }
    if (!blankAtEnd) text.pop_back();
  }

  template <typename T>
  void AppendCell(NumberForm form, T field, Digits digits) {
    if constexpr (std::is_same_v<T, int>) {
      AppendInt(field);
    } else if constexpr (std::is_same_v<T, int*>) {
      AppendInt(*field);
    } else {
      AppendReal(form, *field, digits);
    }
  }

  void AppendInt(int value) {
    std::array<char, 16> buffer;
    const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value);
    text.append(buffer.data(), result.ptr);
  }

  /// Appends a number as printf's %f, %e and %.4e do in the C locale.
  template <typename Real>
  void AppendReal(NumberForm form, Real value, Digits digits) {
    // The largest double in plain decimals is the longest: 309 digits, sign, point and six decimals.
    std::array<char, 320> buffer;
    constexpr int AllDigits = std::is_same_v<Real, float> ? 8 : 16;  // after the first one
    const bool plain = form == NumberForm::Plain && digits == Digits::ByForm;
    const int decimals = digits == Digits::All ? AllDigits : form == NumberForm::ShortExponent ? 4 : 6;
    const auto result =
        std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                      plain ? std::chars_format::fixed : std::chars_format::scientific, decimals);
    text.append(buffer.data(), result.ptr);
  }
};

}  // namespace

bool ReadModelText(std::string_view text, ModelFaults* faults) {
  Reader reader;
  reader.rest = text;
  const int version = ReadMagic(reader.rest);
  if (version == 0) return false;
  const std::string_view magic = text.substr(0, text.size() - reader.rest.size());
  reader.lineNumber = static_cast<int>(std::count(magic.begin(), magic.end(), '\n'));
  RestoreGridDependences();
  WalkModelFile(version, reader);
  UpdateTableStates();
  if (faults != nullptr) *faults = Sentences(std::move(reader.faults), version, reader.lineNumber);
  return true;
}

std::string ModelText() {
  RestoreGridDependences();
  Writer writer;
  constexpr std::size_t UsualBytes = std::size_t{64} * 1024;
  writer.text.reserve(UsualBytes);
  writer.Header(Magics.back());
  WalkModelFile(NewestFileVersion, writer);
  return std::move(writer.text);
}

}  // namespace zelvane
