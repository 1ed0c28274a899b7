// The lines of a model file, described once for the reader and the writer.
//
// WalkModelFile visits the lines of the file in order and passes their contents to a visitor: a header, a
// text, numbers. The reader visits the text of a file with it, the writer an empty text.
#pragma once

#include <limits>
#include <optional>
#include <span>
#include <string_view>
#include <variant>

#include "screen/fields.h"

namespace zelvane {

/// Formats of a model file. Older formats are only read.
inline constexpr int NewestFileVersion = 4;

/// Most characters of a line without its line end.
inline constexpr int MaxLineBytes = 299;

/// The form of a written number, in the words of printf: %d for an int, else %f, %e or %.4e.
enum class NumberForm { Plain, Exponent, ShortExponent };

/// How a number of a file is corrected and written.
struct CellRule {
  // -- Replaces a value outside its range --
  double least = -std::numeric_limits<double>::infinity();
  double most = std::numeric_limits<double>::infinity();
  double belowBecomes = 0.0;
  double aboveBecomes = 0.0;
  bool leastIsBelow = false;            // `least` is outside the range
  bool absolute = false;                // first drops the sign
  bool isNarrowed = false;              // a number outside the range of a float is refused
  const char* insteadOfZero = nullptr;  // a 0 becomes the value of this field
  std::optional<double> missing{};      // value when a complete line has no number here

  NumberForm form = NumberForm::Plain;
};
inline constexpr CellRule AsItStands{};

/// A number on a line. It belongs to a field, or it is an int for people (the states of a rate), which
/// readers skip.
struct Cell {
  explicit Cell(int shown) : number(shown) {}
  Cell(FieldRef itsField, const CellRule& itsRule = AsItStands);
  /// Uses the field with this full name, which must be registered.
  Cell(const char* name, const CellRule& itsRule = AsItStands) : Cell(FindField(name), itsRule) {}

  std::variant<int*, float*, double*, int> number;
  FieldRef field{};  // empty for an int for people
  const CellRule* rule = &AsItStands;
};

struct ModelFileVisitor {
  virtual ~ModelFileVisitor() = default;

  /// A line that readers skip.
  virtual void Header(std::string_view text) = 0;
  /// A line that begins with a whole number. Readers skip all lines before it.
  virtual void NumberedHeader(int number, std::string_view text) = 0;
  /// A text. In a file with labels for the grid only, `follower` is the table's label and gets the same text;
  /// else it is empty.
  virtual void Text(FieldRef field, FieldRef follower) = 0;
  /// A line of numbers. Some lines end in a blank in all formats.
  virtual void Numbers(std::span<const Cell> cells, bool blankAtEnd) = 0;
  /// Lines without a meaning.
  virtual void Reserved(int lines, std::string_view text) = 0;
  /// Announces the last line.
  virtual void LastLine() = 0;
};

/// Visits the lines after the magic, from "ModelTitle" on, in the format `version` (1 to 4). Finds the fields
/// in the registry by name, so they must be registered.
void WalkModelFile(int version, ModelFileVisitor& visitor);

}  // namespace zelvane
