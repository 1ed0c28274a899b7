#include "formats/text_lines.h"

#include <algorithm>
#include <cstring>

#include "platform/index.h"

namespace zelvane {
namespace {

constexpr std::string_view Utf8Mark = "\xEF\xBB\xBF";
constexpr std::string_view Utf16LittleMark = "\xFF\xFE";
constexpr std::string_view Utf16BigMark = "\xFE\xFF";

/// Appends a code unit of UTF-16 as UTF-8. Halves of a pair, which numbers and names of signals do not need,
/// become question marks.
void AppendUnit(std::string& text, unsigned unit) {
  if (unit < 0x80) {
    text += static_cast<char>(unit);
  } else if (unit < 0x800) {
    text += static_cast<char>(0xC0 | (unit >> 6));
    text += static_cast<char>(0x80 | (unit & 0x3F));
  } else if (unit >= 0xD800 && unit < 0xE000) {
    text += '?';
  } else {
    text += static_cast<char>(0xE0 | (unit >> 12));
    text += static_cast<char>(0x80 | ((unit >> 6) & 0x3F));
    text += static_cast<char>(0x80 | (unit & 0x3F));
  }
}

}  // namespace

TextLines::TextLines(std::istream& in, std::size_t blockBytes) : in_(in), blockBytes_(blockBytes) {
  Begin();
}

void TextLines::Begin() {
  Refill();
  const std::string_view head(buffer_.data(), filled_);
  if (head.starts_with(Utf8Mark)) at_ = Utf8Mark.size();
  if (head.starts_with(Utf16LittleMark)) encoding_ = Encoding::Utf16Little;
  if (head.starts_with(Utf16BigMark)) encoding_ = Encoding::Utf16Big;
  if (encoding_ != Encoding::Bytes) {
    const std::string first(head.substr(Utf16LittleMark.size()));
    filled_ = 0;
    AppendUtf16(first);
  }
  const std::string_view text(buffer_.data(), filled_);
  if (text.find('\n') == std::string_view::npos && text.find('\r') != std::string_view::npos) lineEnd_ = '\r';
}

/// Appends the next block to the bytes not yet returned. Returns false at the end of the file.
bool TextLines::Refill() {
  if (at_ > 0) {
    std::memmove(buffer_.data(), buffer_.data() + at_, filled_ - at_);
    filled_ -= at_;
    at_ = 0;
  }
  if (encoding_ == Encoding::Bytes) {
    if (buffer_.size() < filled_ + blockBytes_) buffer_.resize(std::max(filled_ + blockBytes_, 2 * filled_));
    in_.read(buffer_.data() + filled_, static_cast<std::streamsize>(blockBytes_));
    filled_ += Index(in_.gcount());
    return in_.gcount() > 0;
  }
  raw_.resize(blockBytes_);
  in_.read(raw_.data(), static_cast<std::streamsize>(blockBytes_));
  const auto read = Index(in_.gcount());
  AppendUtf16(std::string_view(raw_).substr(0, read));
  return read > 0;
}

/// Appends an even number of bytes. Ignores an odd byte at the end of the file.
void TextLines::AppendUtf16(std::string_view raw) {
  buffer_.resize(filled_);
  const std::size_t low = encoding_ == Encoding::Utf16Little ? 0 : 1;
  for (std::size_t i = 0; i + 1 < raw.size(); i += 2) {
    const auto byte = [&](std::size_t k) {
      return static_cast<unsigned>(static_cast<unsigned char>(raw[k]));
    };
    AppendUnit(buffer_, byte(i + low) | (byte(i + 1 - low) << 8));
  }
  filled_ = buffer_.size();
}

std::optional<std::string_view> TextLines::Next() {
  std::size_t searched = 0;
  for (;;) {
    const std::size_t rest = filled_ - at_;
    const char* begin = buffer_.data() + at_;
    const void* found = rest > searched ? std::memchr(begin + searched, lineEnd_, rest - searched) : nullptr;
    if (found != nullptr) {
      std::string_view line(begin, Index(static_cast<const char*>(found) - begin));
      at_ += line.size() + 1;
      ++number_;
      if (line.ends_with('\r')) line.remove_suffix(1);
      return line;
    }
    searched = rest;
    if (Refill()) continue;
    if (rest == 0) return std::nullopt;
    std::string_view line(buffer_.data() + at_, rest);
    at_ = filled_;
    ++number_;
    ended_ = false;
    if (line.ends_with('\r')) line.remove_suffix(1);
    return line;
  }
}

}  // namespace zelvane
