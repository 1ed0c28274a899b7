// Opening files that others wrote, and reading them a bounded piece at a time.
//
//   OpenInput  ReadBytes  LineReader
#pragma once

#include <cstddef>
#include <fstream>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zelvane {

/// Opens a regular file for reading bytes. A folder, pipe or device counts as one that cannot be opened:
/// opening a pipe might never return.
std::optional<std::ifstream> OpenInput(const std::string& path);

/// The bytes of a file, at most `most` of them; a longer file is taken as if it had been cut off there.
/// Nothing when it cannot be opened and read.
std::optional<std::string> ReadBytes(const std::string& path, std::size_t most);

/// The lines of a text file of any length, one after the other. Lines end with LF, CR LF or CR; a mark of
/// UTF-8 at the start is passed over.
class LineReader {
 public:
  /// @param longest  bytes of a line that are given; what a longer line has beyond them is passed over
  LineReader(std::ifstream file, std::size_t longest);

  /// The next line without its end, or nothing at the end of the file. It lasts until the next call.
  std::optional<std::string_view> Next();

 private:
  void Fill();
  void PassLineEnd();
  std::string_view Pending() const { return {buffer_.data() + begin_, end_ - begin_}; }

  std::ifstream file_;
  std::size_t longest_;
  std::vector<char> buffer_;
  std::size_t begin_ = 0;  // bytes begin_..end_ - 1 of the buffer have not been given yet
  std::size_t end_ = 0;
  bool atEnd_ = false;
  std::string line_;
};

}  // namespace zelvane
