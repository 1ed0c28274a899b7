#include "formats/input_file.h"

#include <algorithm>
#include <array>
#include <filesystem>

#include "platform/index.h"

namespace zelvane {

std::optional<std::ifstream> OpenInput(const std::string& path) {
  std::error_code error;
  if (!std::filesystem::is_regular_file(path, error)) return std::nullopt;
  std::ifstream file(path, std::ios::binary);
  if (!file.is_open()) return std::nullopt;
  return file;
}

std::optional<std::string> ReadBytes(const std::string& path, std::size_t most) {
  auto file = OpenInput(path);
  if (!file) return std::nullopt;
  std::string bytes;
  std::array<char, 64 * 1024> block;
  while (*file && bytes.size() < most) {
    file->read(block.data(), static_cast<std::streamsize>(std::min(block.size(), most - bytes.size())));
    bytes.append(block.data(), Index(file->gcount()));
  }
  if (file->bad() || !(*file || file->eof())) return std::nullopt;
  return bytes;
}

}  // namespace zelvane
