// Reads the lines of a text file one at a time. Only one block of the file is in memory.
#pragma once

#include <cstddef>
#include <istream>
#include <optional>
#include <string>
#include <string_view>

namespace zelvane {

/// Lines of a text in plain bytes, UTF-8 or, with its mark, UTF-16. Removes the marks and returns lines in
/// UTF-8. Lines end in "\n" or "\r\n", or in "\r" when the first block has no "\n". The last line may lack
/// its end. NUL bytes are bytes like any other. Memory grows only with the longest line.
class TextLines {
 public:
  static constexpr std::size_t DefaultBlock = std::size_t{256} * 1024;

  /// @param blockBytes  bytes read at a time, an even number
  explicit TextLines(std::istream& in, std::size_t blockBytes = DefaultBlock);

  /// Returns the next line without its end; it stays valid until the next call. Returns an empty result at
  /// the end of the text.
  std::optional<std::string_view> Next();

  /// Returns the text that was read after the last line, and the character that ends its lines. A caller may
  /// use whole lines from it, with their ends, and must then call Skip.
  std::string_view Ahead() const { return std::string_view(buffer_).substr(at_, filled_ - at_); }
  char LineEnd() const { return lineEnd_; }
  void Skip(std::size_t bytes, std::size_t lines) {
    at_ += bytes;
    number_ += lines;
  }

  /// Returns whether the last line had a line end. Only the last line of the text may lack it.
  bool LastLineEnded() const { return ended_; }

  /// Returns the number of lines so far, which is the number of the last line, from 1.
  std::size_t Number() const { return number_; }

 private:
  enum class Encoding { Bytes, Utf16Little, Utf16Big };

  void Begin();
  bool Refill();
  void AppendUtf16(std::string_view raw);

  std::istream& in_;
  std::size_t blockBytes_;
  Encoding encoding_ = Encoding::Bytes;
  std::string buffer_;  // bytes [at_, filled_) are not yet returned
  std::size_t at_ = 0;
  std::size_t filled_ = 0;
  std::string raw_;  // a block as in the file, when it is not UTF-8
  char lineEnd_ = '\n';
  std::size_t number_ = 0;
  bool ended_ = true;
};

}  // namespace zelvane
