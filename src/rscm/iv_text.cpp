#include "rscm/iv_text.h"

#include "formats/line_scanner.h"

namespace zelvane {
namespace {

constexpr std::size_t IvLineBytes = 80;

/// Reads two numbers from the begin of a line.
bool ScanPoint(std::string_view line, float& volt, float& current) {
  std::string_view rest = line.substr(0, IvLineBytes);
  if (ScanNumber(rest, volt) != Scan::Taken) return false;
  const std::size_t comma = rest.find_first_not_of(" \t");
  if (comma != std::string_view::npos && rest[comma] == ',') rest.remove_prefix(comma + 1);
  return ScanNumber(rest, current) == Scan::Taken;
}

}  // namespace

IvPoints ParseIv(std::string_view text, std::size_t most) {
  IvPoints points;
  while (points.volt.size() < most) {
    const auto line = NextLine(text);
    float volt = 0.0F;
    float current = 0.0F;
    if (!line || !ScanPoint(line->text, volt, current)) break;
    points.volt.push_back(volt);
    points.current.push_back(current);
  }
  return points;
}

}  // namespace zelvane
