#include "formats/abf/byte_source.h"

#include <filesystem>
#include <fstream>

#include "platform/index.h"

namespace zelvane {
namespace {

namespace fs = std::filesystem;

class FileBytes final : public ByteSource {
 public:
  /// Opens the file without a buffer: the blocks are large, and are read directly to their place.
  explicit FileBytes(const std::string& path) {
    file_.rdbuf()->pubsetbuf(nullptr, 0);
    file_.open(path, std::ios::binary);
    if (file_) file_.seekg(0, std::ios::end);
    if (file_) size_ = file_.tellg();
  }

  bool IsOpen() const { return file_.is_open() && size_ >= 0; }

  std::int64_t Size() const override { return size_; }

  std::size_t Read(std::int64_t position, std::span<std::byte> bytes) const override {
    if (position < 0 || position >= size_ || bytes.empty()) return 0;
    file_.clear();
    file_.seekg(position);
    if (!file_) return 0;
    const auto wanted = std::min(static_cast<std::int64_t>(bytes.size()), size_ - position);
    file_.read(reinterpret_cast<char*>(bytes.data()), wanted);
    return Index(file_.gcount());
  }

 private:
  mutable std::ifstream file_;  // reading changes the position, but not the source
  std::int64_t size_ = -1;
};

class MemoryBytes final : public ByteSource {
 public:
  explicit MemoryBytes(std::span<const std::byte> bytes) : bytes_(bytes) {}

  std::int64_t Size() const override { return static_cast<std::int64_t>(bytes_.size()); }

  std::size_t Read(std::int64_t position, std::span<std::byte> bytes) const override {
    if (position < 0 || position >= Size()) return 0;
    const auto rest = bytes_.subspan(Index(position));
    const std::size_t count = std::min(rest.size(), bytes.size());
    std::copy_n(rest.begin(), count, bytes.begin());
    return count;
  }

 private:
  std::span<const std::byte> bytes_;
};

}  // namespace

std::unique_ptr<ByteSource> OpenFileSource(const std::string& path, std::string& why) {
  const auto refuse = [&why](const char* sentence) {
    why = sentence;
    return nullptr;
  };
  if (path.find('\0') != std::string::npos) return refuse("The file does not exist.");
  std::error_code error;
  // Checked before opening: opening a pipe would wait for a writer.
  const fs::file_status status = fs::status(path, error);
  if (status.type() == fs::file_type::not_found) return refuse("The file does not exist.");
  if (fs::is_directory(status)) return refuse("This is a folder, not a file.");
  if (!fs::is_regular_file(status)) return refuse("This is not a regular file.");
  auto file = std::make_unique<FileBytes>(path);
  if (!file->IsOpen()) return refuse("The file cannot be opened for reading.");
  if (file->Size() == 0) return refuse("The file is empty.");
  return file;
}

std::unique_ptr<ByteSource> MemorySource(std::span<const std::byte> bytes) {
  return std::make_unique<MemoryBytes>(bytes);
}

std::string TextOf(std::span<const std::byte> field) {
  std::string text;
  for (const std::byte byte : field) {
    const auto code = std::to_integer<unsigned>(byte);
    if (code == 0) break;
    if (code < 0x20 || (code >= 0x7F && code < 0xA0)) continue;
    if (code < 0x80) {
      text += static_cast<char>(code);
    } else {
      text += static_cast<char>(0xC0U | code >> 6U);
      text += static_cast<char>(0x80U | (code & 0x3FU));
    }
  }
  const std::size_t first = text.find_first_not_of(' ');
  if (first == std::string::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

std::string TextAt(std::span<const std::byte> bytes, std::size_t offset, std::size_t length) {
  if (offset >= bytes.size()) return {};
  return TextOf(bytes.subspan(offset, std::min(length, bytes.size() - offset)));
}

std::string Latin1Of(std::string_view text) {
  std::string latin1;
  for (std::size_t at = 0; at < text.size(); ++at) {
    const auto code = static_cast<unsigned char>(text[at]);
    if (code < 0x80) {
      latin1 += text[at];
    } else if ((code == 0xC2 || code == 0xC3) && at + 1 < text.size()) {
      // Latin-1 is the first 256 code points: in UTF-8, two bytes that begin with C2 or C3.
      latin1 += static_cast<char>((code & 0x03U) << 6U | (static_cast<unsigned char>(text[++at]) & 0x3FU));
    } else if (code >= 0xC0) {  // the next bytes belong to the same character
      latin1 += '?';
    }
  }
  return latin1;
}

}  // namespace zelvane
