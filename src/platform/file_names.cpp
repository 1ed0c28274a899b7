#include "platform/file_names.h"

#include <filesystem>

namespace zelvane {

std::string FileNameOf(const std::string& path) {
  return std::filesystem::path(path).filename().string();
}

std::string ExtensionOf(const std::string& path) {
  std::string extension = std::filesystem::path(path).extension().string();
  for (char& c : extension) c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  return extension;
}

}  // namespace zelvane
