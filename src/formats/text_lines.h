// Reads the lines of a text file one at a time. Only one block of the file is in memory.
#pragma once

#include <cstddef>
#include <istream>
#include <optional>
#include <string>
#include <string_view>

namespace zelvane {

inline constexpr std::size_t LongestTextLine = std::size_t{16} << 20;  // bytes

/// Returns why a text is faulty, such as "line 12 holds a NUL byte."; empty for a sound text.
std::string TextFault(std::string_view text);

/// Lines of a text in plain bytes, UTF-8 or, with its mark, UTF-16. Removes the marks and returns lines in
/// UTF-8. Lines end in "\n" or "\r\n", or in "\r" when the first block has no "\n". The last line may lack
/// its end. A NUL byte or a line above LongestTextLine ends the text, and Fault gives the reason. So a large file
/// of zeros needs little memory and time.
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

  /// Returns why the text ended before its end, as TextFault does.
  const std::string& Fault() const { return fault_; }

  /// Returns the number of lines so far, which is the number of the last line, from 1.
  std::size_t Number() const { return number_; }

 private:
  enum class Encoding { Bytes, Utf16Little, Utf16Big };

  void Begin();
  bool Refill();
  void AppendUtf16(std::string_view raw);
  bool IsSound(std::string_view part, std::size_t lineBytes);

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
  std::string fault_;
};

}  // namespace zelvane
