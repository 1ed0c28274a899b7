// Lines of a text file, and the numbers on a line, taken the way scanf takes them.
//
// Only the scanning is like scanf: the decimal mark is a full stop in every locale, nothing depends on
// setlocale, and a number that its field cannot hold is told apart from one that is missing.
#pragma once

#include <optional>
#include <string_view>

namespace zelvane {

/// One line without its line end, "\n" or "\r\n".
struct TextLine {
  std::string_view text;
  bool ended = true;  // false: the file stopped before a line end, so that the line may have lost its tail
};

/// Takes the next line off `rest`. Nothing at the end of the text: the last line is never given twice.
std::optional<TextLine> NextLine(std::string_view& rest);

/// The word that begins the text, after blanks and line ends, at most `longest` bytes of it; it is taken off
/// `rest`.
std::string_view FirstWord(std::string_view& rest, std::size_t longest);

/// What a scan found at the head of a line.
enum class Scan {
  Taken,    // a number, stored
  Refused,  // a number that is not finite or too large for its field: passed over, nothing stored
  Missing,  // no number: scanf would stop here
};

/// Scans one number off the head of `rest` into `value`, as scanf's %d, %f and %lf do: blanks before it are
/// skipped and a number may be followed directly by anything else. The int form takes the leading integer of
/// "3.7". The others take a fraction, an exponent and the hexadecimal form; one too small for the type gives
/// 0.
Scan ScanNumber(std::string_view& rest, int& value);
Scan ScanNumber(std::string_view& rest, float& value);
Scan ScanNumber(std::string_view& rest, double& value);

}  // namespace zelvane
