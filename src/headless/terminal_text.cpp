#include "headless/terminal_text.h"

#include <utility>

#include "platform/format_text.h"

namespace zelvane {
namespace {

constexpr unsigned char FirstOfPair = 0xC2;  // of U+0080 to U+00BF

bool IsControl(unsigned char byte) {
  return (byte < 0x20 && byte != '\n' && byte != '\t') || byte == 0x7F;
}

/// Returns whether a byte alone, outside a UTF-8 character, is a control character of an 8-bit terminal.
bool IsHighControl(unsigned char byte) {
  return byte >= 0x80 && byte < 0xA0;
}

/// Returns the number of bytes that follow the first byte of a UTF-8 character.
int FollowersOf(unsigned char first) {
  if (first < 0xC2 || first > 0xF4) return 0;
  return first < 0xE0 ? 1 : first < 0xF0 ? 2 : 3;
}

}  // namespace

bool TerminalBuffer::pass(unsigned char byte) {
  return inner_.sputc(static_cast<char>(byte)) != traits_type::eof();
}

bool TerminalBuffer::escape(unsigned char byte) {
  const std::string text = FormatText("\\x%02x", byte);
  return inner_.sputn(text.data(), static_cast<std::streamsize>(text.size())) ==
         static_cast<std::streamsize>(text.size());
}

bool TerminalBuffer::put(unsigned char byte) {
  const bool afterC2 = std::exchange(afterC2_, false);
  if (followers_ > 0 && (byte & 0xC0U) == 0x80U) {
    --followers_;
    if (!afterC2) return pass(byte);
    if (IsHighControl(byte)) return escape(byte);
    return pass(FirstOfPair) && pass(byte);
  }
  if (afterC2 && !pass(FirstOfPair)) return false;
  followers_ = FollowersOf(byte);
  afterC2_ = byte == FirstOfPair;
  if (afterC2_) return true;
  return IsControl(byte) || IsHighControl(byte) ? escape(byte) : pass(byte);
}

TerminalBuffer::int_type TerminalBuffer::overflow(int_type character) {
  if (traits_type::eq_int_type(character, traits_type::eof())) return traits_type::not_eof(character);
  return put(static_cast<unsigned char>(traits_type::to_char_type(character))) ? character
                                                                               : traits_type::eof();
}

int TerminalBuffer::sync() {
  return inner_.pubsync();
}

}  // namespace zelvane
