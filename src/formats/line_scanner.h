// Reads the lines of a text file, and the numbers on a line as scanf does.
//
// Two things differ from scanf. The decimal mark is a full stop in every locale. A number that does not fit
// its field is distinguished from a missing number.
#pragma once

#include <optional>
#include <string_view>

namespace zelvane {

/// One line without its line end, "\n" or "\r\n".
struct TextLine {
  std::string_view text;
  bool ended = true;  // false: the file ended before a line end, so the line may be incomplete
};

/// Removes the next line from `rest` and returns it. Returns an empty result at the end of the text.
std::optional<TextLine> NextLine(std::string_view& rest);

/// Removes the first word from `rest`, after blanks and line ends, and returns it. Takes at most `longest`
/// bytes.
std::string_view FirstWord(std::string_view& rest, std::size_t longest);

/// The result of a scan at the begin of a line.
enum class Scan {
  Taken,    // a number, stored
  Refused,  // a number that is not finite or too large for its field; skipped and not stored
  Missing,  // no number: scanf would stop here
};

/// Reads one number from the front of `rest` into `value` and removes it, as scanf's %d, %f and %lf do: skips
/// blanks before it, and allows any text directly after it. The int form reads the leading integer of "3.7".
/// The others read a fraction, an exponent and the hexadecimal form; a number too small for the type gives 0.
Scan ScanNumber(std::string_view& rest, int& value);
Scan ScanNumber(std::string_view& rest, float& value);
Scan ScanNumber(std::string_view& rest, double& value);

}  // namespace zelvane
