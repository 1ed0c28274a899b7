#include "fit/wave_list.h"

#include <algorithm>
#include <utility>

#include "fit/fit_store.h"
#include "formats/input_file.h"
#include "formats/line_scanner.h"

namespace zelvane {
namespace {

constexpr std::size_t LongestLine = 260;  // bytes; the rest of a longer line is lost
constexpr std::size_t ExtensionLength = 3;

/// Returns the next line; an empty one at the end of the file. A carriage return always ends a name: a list
/// written with it could not be read again.
std::string LineOf(LineReader& lines) {
  const std::string_view line = lines.Next().value_or(std::string_view{});
  return std::string(line.substr(0, line.find('\r')));
}

}  // namespace

std::size_t FileNameStart(std::string_view path) {
  const std::size_t separator = path.find_last_of("/\\");
  return separator == std::string_view::npos ? 0 : separator + 1;
}

std::string BareFileName(std::string_view path) {
  return std::string(path.substr(FileNameStart(path)));
}

std::string CleanedName(std::string_view line, std::string_view extension) {
  const std::size_t stop = line.find('.', FileNameStart(line));
  std::string name(line.substr(0, stop));
  if (!extension.empty()) return name += extension;
  if (stop != std::string_view::npos) name += line.substr(stop, 1 + ExtensionLength);
  return name;
}

std::optional<WaveList> ReadWaveList(std::ifstream file) {
  LineReader lines(std::move(file), LongestLine);
  const bool isList = LineOf(lines).starts_with(WaveListMagic);
  if (!isList && lines.Fault().empty()) return std::nullopt;
  WaveList list;
  list.model = CleanedName(LineOf(lines), ".mod");
  const std::string count = LineOf(lines);
  std::string_view rest = count;
  int pairs = 0;
  static_cast<void>(ScanNumber(rest, pairs));
  for (int p = 0; p < std::min(pairs, MaxFitWaveforms); ++p) {
    std::string data = CleanedName(LineOf(lines), "");
    list.pairs.push_back({std::move(data), CleanedName(LineOf(lines), ".stm")});
  }
  list.fault = lines.Fault();
  return list;
}

}  // namespace zelvane
