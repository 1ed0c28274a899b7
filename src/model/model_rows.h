// The lines of a model file, described once for the reader and the writer.
//
// WalkModelFile visits the lines of the file in order and passes their contents to a visitor: a header, a
// text, numbers. The reader visits the text of a file with it, the writer an empty text.
#pragma once

#include <limits>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>

#include "screen/fields.h"

namespace zelvane {

/// Formats of a model file. Older ones are read only.
inline constexpr int NewestFileVersion = 4;

/// Characters of a line at most, its line end not counted.
inline constexpr int MaxLineBytes = 299;

/// How a number is written, in the words of printf: %d for an int, else %f, %e or %.4e.
enum class NumberForm { Plain, Exponent, ShortExponent };

/// What a number of a file goes through beside being scanned and printed.
struct CellRule {
  // -- A value read that lies outside its range is replaced --
  double least = -std::numeric_limits<double>::infinity();
  double most = std::numeric_limits<double>::infinity();
  double belowBecomes = 0.0;
  double aboveBecomes = 0.0;
  bool leastIsBelow = false;            // `least` itself is outside
  bool absolute = false;                // the sign is dropped first
  const char* insteadOfZero = nullptr;  // a 0 takes the value of this field
  std::optional<double> missing{};      // taken when a whole line holds no such number

  NumberForm form = NumberForm::Plain;
};
inline constexpr CellRule AsItStands{};

/// A number on a line: the field that it belongs to, or an int that is written for the human eye (the states
/// of a rate) and passed over on reading.
struct Cell {
  explicit Cell(int shown) : number(shown) {}
  Cell(FieldRef field, const CellRule& itsRule = AsItStands);
  /// Of the field with this full name, which must be registered.
  Cell(const char* name, const CellRule& itsRule = AsItStands) : Cell(FindField(name), itsRule) {}

  std::variant<int*, float*, double*, int> number;
  const CellRule* rule = &AsItStands;
};

struct ModelFileVisitor {
  virtual ~ModelFileVisitor() = default;

  /// A line that readers pass over.
  virtual void Header(std::string_view text) = 0;
  /// A line that begins with a whole number; a reader passes over all lines before it.
  virtual void NumberedHeader(int number, std::string_view text) = 0;
  /// A text. The table's label follows the grid's where a file has the latter alone: `follower` is empty
  /// otherwise.
  virtual void Text(FieldRef field, FieldRef follower) = 0;
  /// A line of numbers. Some lines have ended in a blank since the first format.
  virtual void Numbers(std::span<const Cell> cells, bool blankAtEnd) = 0;
  /// Lines that carry nothing.
  virtual void Reserved(int lines, std::string_view text) = 0;
  /// The next line is the last one.
  virtual void LastLine() = 0;
};

/// Walks through the lines that follow the magic, from "ModelTitle" on, in the format `version` (1 to 4). The
/// fields are found in the registry by name, so they must be registered.
void WalkModelFile(int version, ModelFileVisitor& visitor);

}  // namespace zelvane
