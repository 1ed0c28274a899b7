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

/// Returns the fault of a line; empty for a sound one.
/// @param part       bytes of the line that were not checked before
/// @param lineBytes  length of the line so far
std::string LineFault(std::size_t number, std::string_view part, std::size_t lineBytes) {
  const char* fault = nullptr;
  if (part.find('\0') != std::string_view::npos) fault = " holds a NUL byte.";
  if (lineBytes > LongestTextLine) fault = " is longer than 16 MB.";
  return fault != nullptr ? "line " + std::to_string(number) + fault : std::string{};
}

}  // namespace

std::string TextFault(std::string_view text) {
  for (std::size_t number = 1; !text.empty(); ++number) {
    const std::string_view line = text.substr(0, text.find('\n'));
    std::string fault = LineFault(number, line, line.size());
    if (!fault.empty()) return fault;
    text.remove_prefix(std::min(line.size() + 1, text.size()));
  }
  return {};
}

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

/// Checks the bytes of the next line that were not checked before.
bool TextLines::IsSound(std::string_view part, std::size_t lineBytes) {
  fault_ = LineFault(number_ + 1, part, lineBytes);
  return fault_.empty();
}

std::optional<std::string_view> TextLines::Next() {
  std::size_t searched = 0;
  while (fault_.empty()) {
    const std::size_t rest = filled_ - at_;
    const char* begin = buffer_.data() + at_;
    const void* found = rest > searched ? std::memchr(begin + searched, lineEnd_, rest - searched) : nullptr;
    if (found != nullptr) {
      std::string_view line(begin, Index(static_cast<const char*>(found) - begin));
      if (!IsSound(line.substr(searched), line.size())) break;
      at_ += line.size() + 1;
      ++number_;
      if (line.ends_with('\r')) line.remove_suffix(1);
      return line;
    }
    if (!IsSound({begin + searched, rest - searched}, rest)) break;
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
  return std::nullopt;
}

}  // namespace zelvane
