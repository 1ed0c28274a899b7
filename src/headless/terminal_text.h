// Text for a terminal. Labels, titles and file names may hold control characters, which would move the cursor,
// change colours or worse.
#pragma once

#include <streambuf>

namespace zelvane {

/// Passes text on to `inner` and writes control characters, except line ends and tabulators, as "\x1b".
///
/// Control characters are the bytes below 0x20, 0x7f, U+0080 to U+009F in UTF-8, and the bytes 0x80 to 0x9f
/// outside a UTF-8 character.
class TerminalBuffer : public std::streambuf {
 public:
  explicit TerminalBuffer(std::streambuf& inner) : inner_(inner) {}

 protected:
  int_type overflow(int_type character) override;
  int sync() override;

 private:
  bool pass(unsigned char byte);
  bool escape(unsigned char byte);
  bool put(unsigned char byte);

  std::streambuf& inner_;
  int followers_ = 0;     // bytes that the present UTF-8 character lacks
  bool afterC2_ = false;  // the first byte of U+0080 to U+00BF waits for the second
};

}  // namespace zelvane
