// Reads the lines of a text file one at a time. Only one block of the file is in memory.
#pragma once

#include <cstddef>
#include <istream>
#include <optional>
#include <string>
#include <string_view>

namespace zelvane {

/// Lines of a text in plain bytes, UTF-8 or, by its mark, UTF-16; marks are taken off and lines come as
/// UTF-8. Lines end in "\n" or "\r\n" or, where the first block holds no "\n", in "\r". The last one need not
/// end. NUL bytes are bytes like any other. Memory grows with the longest line only.
class TextLines {
 public:
  static constexpr std::size_t DefaultBlock = std::size_t{256} * 1024;

  /// @param blockBytes  bytes read at a time, an even number
  explicit TextLines(std::istream& in, std::size_t blockBytes = DefaultBlock);

  /// Returns the next line without its end; it stays valid until the next call. Returns an empty result at
  /// the end of the text.
  std::optional<std::string_view> Next();

  /// What has been read behind the line given last, and the character that ends its lines. A caller may take
  /// whole lines off it, ends included, and say so with Skip.
  std::string_view Ahead() const { return std::string_view(buffer_).substr(at_, filled_ - at_); }
  char LineEnd() const { return lineEnd_; }
  void Skip(std::size_t bytes, std::size_t lines) {
    at_ += bytes;
    number_ += lines;
  }

  /// Lines given so far: the number of the one given last, from 1.
  std::size_t Number() const { return number_; }

 private:
  enum class Encoding { Bytes, Utf16Little, Utf16Big };

  void Begin();
  bool Refill();
  void AppendUtf16(std::string_view raw);

  std::istream& in_;
  std::size_t blockBytes_;
  Encoding encoding_ = Encoding::Bytes;
  std::string buffer_;  // the bytes [at_, filled_) are still to be given
  std::size_t at_ = 0;
  std::size_t filled_ = 0;
  std::string raw_;  // a block as the file has it, where it is not UTF-8
  char lineEnd_ = '\n';
  std::size_t number_ = 0;
};

}  // namespace zelvane
