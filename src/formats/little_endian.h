// Numbers of binary files: little-endian, unaligned.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <istream>
#include <optional>
#include <span>

#include "platform/index.h"

namespace zelvane {

/// Returns the number whose bytes, lowest first, begin at `bytes`.
inline std::uint32_t LittleEndian32(const unsigned char* bytes) {
  return static_cast<std::uint32_t>(bytes[0]) | (static_cast<std::uint32_t>(bytes[1]) << 8) |
         (static_cast<std::uint32_t>(bytes[2]) << 16) | (static_cast<std::uint32_t>(bytes[3]) << 24);
}

inline std::uint16_t LittleEndian16(const unsigned char* bytes) {
  return static_cast<std::uint16_t>(bytes[0] | (bytes[1] << 8));
}

/// Reads up to `count` bytes at `offset`. Returns the number of bytes read.
inline std::size_t ReadAt(std::istream& file, std::int64_t offset, void* bytes, std::size_t count) {
  file.clear();
  file.seekg(offset);
  if (!file) return 0;
  file.read(static_cast<char*>(bytes), static_cast<std::streamsize>(count));
  return Index(file.gcount());
}

/// Return a field of a header; nullopt when the file ends before it.
inline std::optional<std::int32_t> Int32At(std::istream& file, std::int64_t offset) {
  unsigned char bytes[4];
  if (ReadAt(file, offset, bytes, sizeof bytes) != sizeof bytes) return std::nullopt;
  return static_cast<std::int32_t>(LittleEndian32(bytes));
}

inline std::optional<std::int16_t> Int16At(std::istream& file, std::int64_t offset) {
  unsigned char bytes[2];
  if (ReadAt(file, offset, bytes, sizeof bytes) != sizeof bytes) return std::nullopt;
  return static_cast<std::int16_t>(LittleEndian16(bytes));
}

inline std::optional<float> FloatAt(std::istream& file, std::int64_t offset) {
  const auto bits = Int32At(file, offset);
  if (!bits) return std::nullopt;
  return std::bit_cast<float>(*bits);
}

/// Converts floats that were read as bytes to the order of this machine.
inline void FromLittleEndian(std::span<float> values) {
  if constexpr (std::endian::native == std::endian::little) return;
  for (float& value : values) {
    unsigned char bytes[4];
    std::memcpy(bytes, &value, sizeof bytes);
    value = std::bit_cast<float>(LittleEndian32(bytes));
  }
}

}  // namespace zelvane
