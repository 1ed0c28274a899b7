#include "analysis/dose_files.h"

#include <algorithm>

#include "formats/line_scanner.h"
#include "kinetics/scheme_tables.h"

namespace zelvane {
namespace {

constexpr char Magic[] = "MULTISTIM";
constexpr std::size_t LongestLine = 260;
constexpr int MaxTemplateRows = 99;
constexpr std::size_t LongestTemplateLine = 300;

std::string NameOfLine(std::string_view line) {
  std::string name(line.substr(0, std::min(line.find('.'), LongestLine)));
  name.resize(name.find_last_not_of(" \t\r") + 1);
  return name + ".stm";
}

}  // namespace

std::optional<BatchScript> ParseBatchScript(std::string_view text) {
  const auto first = NextLine(text);
  if (!first || !first->text.starts_with(Magic)) return std::nullopt;
  BatchScript script;
  if (const auto counts = NextLine(text)) {
    std::string_view rest = counts->text;
    if (ScanNumber(rest, script.count) == Scan::Taken) ScanNumber(rest, script.profile);
  }
  script.count = std::min(script.count, MaxScriptFiles);
  script.profile = std::clamp(script.profile, 0, MaxDrugs);
  while (static_cast<int>(script.names.size()) < script.count) {
    const auto line = NextLine(text);
    if (!line) break;
    script.names.push_back(NameOfLine(line->text));
  }
  return script;
}

std::vector<DoseStretch> ReadDoseTemplate(std::string_view text) {
  std::vector<DoseStretch> stretches;
  while (stretches.size() < MaxTemplateRows) {
    const auto line = NextLine(text);
    if (!line) break;
    std::string_view rest = line->text.substr(0, LongestTemplateLine);
    DoseStretch stretch;
    const auto comma = [&rest] {
      if (!rest.starts_with(',')) return false;
      rest.remove_prefix(1);
      return true;
    };
    const bool whole = ScanNumber(rest, stretch.start) == Scan::Taken && comma() &&
                       ScanNumber(rest, stretch.stop) == Scan::Taken && comma() &&
                       ScanNumber(rest, stretch.concentration) == Scan::Taken;
    if (whole && stretch.concentration > 0.0F) stretches.push_back(stretch);
  }
  return stretches;
}

}  // namespace zelvane
