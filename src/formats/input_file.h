// Opens files of other programs and reads them in pieces of limited size.
//
//   OpenInput  ReadBytes  LineReader
#pragma once

#include <cstddef>
#include <fstream>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "formats/text_lines.h"

namespace zelvane {

/// Opens a regular file for reading bytes. Fails for a folder, pipe or device, because opening a pipe might
/// never return.
std::optional<std::ifstream> OpenInput(const std::string& path);

/// Returns the bytes of a file, at most `most`; a longer file is cut there. Returns nullopt when the file
/// cannot be opened and read.
std::optional<std::string> ReadBytes(const std::string& path, std::size_t most);

/// Reads the lines of a text file of any length, one after the other, in the same way as TextLines.
class LineReader {
 public:
  /// @param longest  bytes of a line that Next returns; it skips the rest of a longer line
  LineReader(std::ifstream file, std::size_t longest) : file_(std::move(file)), longest_(longest) {}

  /// Returns the next line without its end, valid until the next call. Returns nullopt at the end of the
  /// file.
  std::optional<std::string_view> Next() {
    const auto line = lines_.Next();
    return line ? std::optional(line->substr(0, longest_)) : std::nullopt;
  }

  /// Returns why the lines ended before the end of the file, as TextFault does.
  const std::string& Fault() const { return lines_.Fault(); }

 private:
  static constexpr std::size_t BlockBytes = std::size_t{16} * 1024;  // lists and profiles are short

  std::ifstream file_;
  std::size_t longest_;
  TextLines lines_{file_, BlockBytes};
};

}  // namespace zelvane
