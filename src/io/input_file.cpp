#include "io/input_file.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <filesystem>
#include <utility>

namespace zelvane {
namespace {

constexpr std::size_t BlockBytes = 256 * 1024;
constexpr std::string_view Utf8Mark = "\xEF\xBB\xBF";

/// Bytes from here to the end of an open file.
std::size_t Length(std::ifstream& file) {
  const auto here = file.tellg();
  file.seekg(0, std::ios::end);
  const auto bytes = file.tellg() - here;
  file.seekg(here);
  return bytes > 0 ? static_cast<std::size_t>(bytes) : 0;
}

}  // namespace

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
    bytes.append(block.data(), static_cast<std::size_t>(file->gcount()));
  }
  if (file->bad() || !(*file || file->eof())) return std::nullopt;
  return bytes;
}

LineReader::LineReader(std::ifstream file, std::size_t longest)
    : file_(std::move(file)), longest_(longest), buffer_(longest + 2 + std::min(BlockBytes, Length(file_))) {
  Fill();
  if (Pending().starts_with(Utf8Mark)) begin_ += Utf8Mark.size();
}

void LineReader::Fill() {
  std::memmove(buffer_.data(), buffer_.data() + begin_, end_ - begin_);
  end_ -= begin_;
  begin_ = 0;
  file_.read(buffer_.data() + end_, static_cast<std::streamsize>(buffer_.size() - end_));
  end_ += static_cast<std::size_t>(file_.gcount());
  atEnd_ = !file_;
}

void LineReader::PassLineEnd() {
  std::size_t end = Pending().find_first_of("\r\n");
  while (end == std::string_view::npos && !atEnd_) {
    begin_ = end_;
    Fill();
    end = Pending().find_first_of("\r\n");
  }
  begin_ += std::min(end, Pending().size());
  if (Pending().starts_with('\r')) {
    ++begin_;
    if (begin_ == end_ && !atEnd_) Fill();
  } else if (begin_ < end_) {
    ++begin_;
    return;
  }
  if (Pending().starts_with('\n')) ++begin_;
}

std::optional<std::string_view> LineReader::Next() {
  if (end_ - begin_ < longest_ && !atEnd_) Fill();
  if (begin_ == end_) return std::nullopt;
  const std::string_view line = Pending().substr(0, longest_);
  line_ = line.substr(0, line.find_first_of("\r\n"));
  begin_ += line_.size();
  PassLineEnd();
  return line_;
}

}  // namespace zelvane
