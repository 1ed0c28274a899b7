// Any bytes as a column of text: every sample is finite, and their number follows from the lines up to a fault.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <string_view>
#include <vector>

#include "formats/stimulus_read.h"
#include "scratch_file.h"

namespace zelvane {
namespace {

constexpr std::size_t Room = 512;  // samples

/// Counts the lines of a text, which end with LF or, without any LF, with CR.
std::size_t CountLines(std::string_view text) {
  if (text.starts_with("\xEF\xBB\xBF")) text.remove_prefix(3);
  if (text.empty()) return 0;
  const char end = text.find('\n') == std::string_view::npos ? '\r' : '\n';
  return static_cast<std::size_t>(std::count(text.begin(), text.end(), end)) + (text.back() == end ? 0 : 1);
}

bool IsUtf16(std::string_view text) {
  return text.starts_with("\xFF\xFE") || text.starts_with("\xFE\xFF");
}

void CheckOne(const std::uint8_t* data, std::size_t size) {
  const std::string& path = ScratchFile(data, size);
  const auto column = ReadStimColumn(path, Room);
  if (!column) Fault("a file that is there was not opened");
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const std::size_t lines = CountLines(text);
  const std::size_t samples = column->samples.size();
  if (samples > Room) Fault("more samples than there is room");
  const std::size_t expected = std::min(Room, lines > 0 ? lines - 1 : 0);
  if (!IsUtf16(text)) {
    if (column->fault.empty() && samples != expected) Fault("other samples than lines");
    if (!column->fault.empty() && text.find('\0') == std::string_view::npos)
      Fault("a text without a NUL byte is refused");
    if (samples > expected) Fault("more samples than lines");
  }
  for (const float sample : column->samples) {
    if (!std::isfinite(sample)) Fault("a sample is not finite");
  }
  if (column->intervalMs && !std::isfinite(*column->intervalMs)) Fault("an interval that is not finite");
}

}  // namespace
}  // namespace zelvane

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  zelvane::CheckOne(data, size);
  return 0;
}
