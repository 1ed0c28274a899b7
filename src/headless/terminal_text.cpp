#include "headless/terminal_text.h"

#include "platform/format_text.h"

namespace zelvane {
namespace {

constexpr unsigned char FirstOfPair = 0xC2;

bool IsControl(unsigned char byte) {
  return (byte < 0x20 && byte != '\n' && byte != '\t') || byte == 0x7F;
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

TerminalBuffer::int_type TerminalBuffer::overflow(int_type character) {
  if (traits_type::eq_int_type(character, traits_type::eof())) return traits_type::not_eof(character);
  const auto byte = static_cast<unsigned char>(traits_type::to_char_type(character));
  bool good = true;
  if (afterC2_) {
    afterC2_ = false;
    if (byte >= 0x80 && byte < 0xA0) return escape(byte) ? character : traits_type::eof();
    good = pass(FirstOfPair);
  }
  if (byte == FirstOfPair) {
    afterC2_ = true;
    return good ? character : traits_type::eof();
  }
  good = (IsControl(byte) ? escape(byte) : pass(byte)) && good;
  return good ? character : traits_type::eof();
}

int TerminalBuffer::sync() {
  return inner_.pubsync();
}

}  // namespace zelvane
