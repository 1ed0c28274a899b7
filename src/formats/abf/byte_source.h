// Bytes of a recording from a file or from memory, and the numbers and texts in a header.
#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>

namespace zelvane {

class ByteSource {
 public:
  ByteSource() = default;
  ByteSource(const ByteSource&) = delete;
  ByteSource& operator=(const ByteSource&) = delete;
  virtual ~ByteSource() = default;

  virtual std::int64_t Size() const = 0;

  /// Reads bytes from `position` on. Reads fewer at the end of the source.
  /// @return number of bytes read; 0 for a position outside
  virtual std::size_t Read(std::int64_t position, std::span<std::byte> bytes) const = 0;
};

/// Opens a regular file. On failure returns nullptr and writes the reason in one sentence to `why`.
std::unique_ptr<ByteSource> OpenFileSource(const std::string& path, std::string& why);

/// Returns a source over bytes in memory. They must stay valid while the source is used.
std::unique_ptr<ByteSource> MemorySource(std::span<const std::byte> bytes);

/// Returns the little-endian number at `bytes`.
template <class Number>
Number LittleEndian(const std::byte* bytes) {
  static_assert(std::is_arithmetic_v<Number>);
  Number number;
  if constexpr (std::endian::native == std::endian::little || sizeof(Number) == 1) {
    std::memcpy(&number, bytes, sizeof number);
  } else {
    std::byte turned[sizeof number];
    std::reverse_copy(bytes, bytes + sizeof number, turned);
    std::memcpy(&number, turned, sizeof number);
  }
  return number;
}

/// Returns the number at `offset`; 0 when it is not completely inside `bytes`.
template <class Number>
Number NumberAt(std::span<const std::byte> bytes, std::size_t offset) {
  if (offset > bytes.size() || bytes.size() - offset < sizeof(Number)) return Number{};
  return LittleEndian<Number>(bytes.data() + offset);
}

/// Writes `number` to `bytes` in little-endian order.
template <class Number>
void WriteLittleEndian(std::byte* bytes, Number number) {
  static_assert(std::is_arithmetic_v<Number>);
  std::memcpy(bytes, &number, sizeof number);
  if constexpr (std::endian::native == std::endian::big) std::reverse(bytes, bytes + sizeof number);
}

/// Converts a Latin-1 text field to UTF-8, up to the first NUL. Removes blanks at the ends and control
/// characters. Keeps the micro sign (U+00B5).
std::string TextOf(std::span<const std::byte> field);

/// Returns the text of the field of `length` bytes at `offset`, or of its part inside `bytes`.
std::string TextAt(std::span<const std::byte> bytes, std::size_t offset, std::size_t length);

/// Converts UTF-8 to Latin-1 for writing. Replaces other characters by a question mark.
std::string Latin1Of(std::string_view text);

}  // namespace zelvane
