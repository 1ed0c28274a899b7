// Any bytes as a file of measures that gets further rows: the old bytes stay, and a new row begins a line.
#include <cstdint>
#include <fstream>
#include <sstream>
#include <string>
#include <utility>

#include "platform/safe_file.h"
#include "scratch_file.h"
#include "trace/trace_export.h"

namespace zelvane {
namespace {

std::string BytesOf(const std::string& path) {
  std::ostringstream bytes;
  bytes << std::ifstream(path, std::ios::binary).rdbuf();
  return bytes.str();
}

void CheckOne(const std::uint8_t* data, std::size_t size) {
  const std::string former(reinterpret_cast<const char*>(data), size);
  const std::string& path = ScratchFile(data, size);
  std::string_view row = "\"cell.abf\", 1, 0, 5.0000, \n";
  const std::string added(row);
  if (AppendToFile(path, BehindLastLine(path, [&row] { return std::exchange(row, {}); })) != Appended::Done)
    Fault("the row was not written");
  const std::string now = BytesOf(path);
  const std::string between = former.empty() || former.back() == '\n' ? "" : "\n";
  if (now != former + between + added) Fault("the file is not the old one with a further row");
}

}  // namespace
}  // namespace zelvane

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  zelvane::CheckOne(data, size);
  return 0;
}
