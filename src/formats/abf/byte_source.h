// Bytes of a recording, from a file or from memory, and the numbers and texts of a header in them.
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

  /// Fills `bytes` with what stands from `position` on; fewer at the end of the source.
  /// @return bytes read; 0 for a position outside
  virtual std::size_t Read(std::int64_t position, std::span<std::byte> bytes) const = 0;
};

/// A regular file that can be read. Nothing for anything else; `why` then says in one sentence what is wrong.
std::unique_ptr<ByteSource> OpenFileSource(const std::string& path, std::string& why);

/// Bytes that stay where they are for as long as the source is used.
std::unique_ptr<ByteSource> MemorySource(std::span<const std::byte> bytes);

/// The little-endian number at `bytes`.
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

/// The number `offset` bytes into `bytes`; 0 where it does not lie inside whole.
template <class Number>
Number NumberAt(std::span<const std::byte> bytes, std::size_t offset) {
  if (offset > bytes.size() || bytes.size() - offset < sizeof(Number)) return Number{};
  return LittleEndian<Number>(bytes.data() + offset);
}

/// Puts `number` at `bytes` in little-endian order.
template <class Number>
void PutLittleEndian(std::byte* bytes, Number number) {
  static_assert(std::is_arithmetic_v<Number>);
  std::memcpy(bytes, &number, sizeof number);
  if constexpr (std::endian::native == std::endian::big) std::reverse(bytes, bytes + sizeof number);
}

/// A Latin-1 text field as UTF-8: up to the first NUL, without blanks at its ends and without control
/// characters. A micro sign stays one (U+00B5).
std::string TextOf(std::span<const std::byte> field);

/// The field of `length` bytes at `offset`, or the part of it that lies inside `bytes`.
std::string TextAt(std::span<const std::byte> bytes, std::size_t offset, std::size_t length);

/// The other way round, for writing: UTF-8 as Latin-1, with a question mark for what Latin-1 lacks.
std::string Latin1Of(std::string_view text);

}  // namespace zelvane
