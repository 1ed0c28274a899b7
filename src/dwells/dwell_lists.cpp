#include "dwells/dwell_lists.h"

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "dwells/dwell_store.h"
#include "formats/input_file.h"
#include "formats/line_scanner.h"
#include "formats/number_text.h"
#include "platform/index.h"
#include "screen/popups.h"
#include "screen/save_file.h"

namespace zelvane {
namespace {

constexpr char ManyColumns[] = "You cannot import more than 1 column ascii files with this option";
constexpr char NothingToExport[] = "There are no open times, closed times or latencies to export.";

constexpr std::size_t LongestLine = 300;
constexpr std::size_t ValuesPerBlock = 65536;
constexpr std::string_view AtfMark = "ATF";

/// A list that can be exported.
struct ExportedList {
  std::span<const float> values;
  const char* title;
  const char* extension;
};

ExportedList ListOf(DwellListKind kind) {
  const auto entries = [](std::span<const float> list, float count) {
    return list.first(static_cast<std::size_t>(std::clamp(count, 0.0F, static_cast<float>(list.size()))));
  };
  switch (kind) {
    case DwellListKind::Open:
      return {entries(Dwell.OpenTimes, Dwell.NumOpenTimes), "Open Times (ms)", ".ops"};
    case DwellListKind::Closed:
      return {entries(Dwell.ClosedTimes, Dwell.NumClosedTimes), "Closed Times (ms)", ".sht"};
    case DwellListKind::Latencies:
      break;
  }
  return {entries(Dwell.Latencies, Dwell.NumLatencies), "Latencies (ms)", ".lat"};
}

/// Returns the file of one list as blocks: the header, then one value a line.
NextBlock ListBlocks(const ExportedList& list) {
  std::string header = std::string("ATF 1.0\n2 1\n\"Type=\"\n\"Comment=\"\n\"") + list.title + "\"\n";
  return [text = std::move(header), values = list.values, begun = false]() mutable -> std::string_view {
    if (begun) text.clear();
    begun = true;
    const std::size_t count = std::min(values.size(), ValuesPerBlock);
    for (const float value : values.first(count)) {
      AppendExponent(text, static_cast<double>(value));
      text += '\n';
    }
    values = values.subspan(count);
    return text;
  };
}

/// Returns the number at the begin of a line; nullopt when there is no finite number.
std::optional<float> ValueOf(std::string_view line) {
  float value = 0.0F;
  if (ScanNumber(line, value) != Scan::Taken) return std::nullopt;
  return value;
}

/// Skips the rest of an ATF header after its mark. Returns false when it is not an ATF header.
bool PassAtfHeader(LineReader& lines) {
  auto sizes = lines.Next();
  int headerLines = 0;
  int columns = 0;
  if (!sizes || ScanNumber(*sizes, headerLines) != Scan::Taken ||
      ScanNumber(*sizes, columns) != Scan::Taken) {
    return false;
  }
  bool more = true;
  for (int k = 0; k <= headerLines && more; ++k) more = lines.Next().has_value();  // and the line of titles
  if (columns > 1) MessagePopup(WarningTitle, ManyColumns);
  return true;
}

}  // namespace

void UseOpenList() {
  if (Dwell.OpenListSelector < 0 || Dwell.OpenListSelector > MaxAmplitudeClasses) Dwell.OpenListSelector = 0;
  const auto selector = Index(Dwell.OpenListSelector);
  const bool raw = selector == 0;
  const std::span<const float> source = raw ? Dwell.RawOpenTimes : Dwell.ClassOpenTimes[selector];
  const int count = std::clamp(raw ? Dwell.NumRawOpenTimes : Dwell.NumClassOpenTimes[selector], 0, MaxDwells);
  std::copy_n(source.begin(), count, Dwell.OpenTimes.begin());
  Dwell.NumOpenTimes = static_cast<float>(count);
}

std::optional<int> ReadSingleColumnList(std::span<float> list, const std::string& path, bool replace,
                                        int currentCount) {
  auto file = OpenInput(path);
  if (!file) {
    FileErrorPopup(FileOpenFailed);
    return std::nullopt;
  }
  LineReader lines(std::move(*file), LongestLine);
  auto line = lines.Next();
  if (line && line->substr(0, AtfMark.size()) == AtfMark) {
    if (!PassAtfHeader(lines)) {
      if (lines.Fault().empty())
        FileErrorPopup(WrongFileFormat);
      else
        TellNotRead(path, lines.Fault());
      return std::nullopt;
    }
    line = lines.Next();
  }
  const int before = replace ? 0 : std::clamp(currentCount, 0, MaxFileDwells);
  std::vector<float> values;
  for (; line && values.size() < Index(MaxFileDwells - before); line = lines.Next()) {
    if (const auto value = ValueOf(*line)) values.push_back(*value);
  }
  if (!lines.Fault().empty()) {
    TellNotRead(path, lines.Fault());
    return std::nullopt;
  }
  std::copy(values.begin(), values.end(), list.begin() + before);
  const int count = before + static_cast<int>(values.size());
  return count < 2 ? 0 : count;
}

Outcome ExportDwellList(DwellListKind kind, const std::string& path) {
  return SaveFile(path, ListBlocks(ListOf(kind)));
}

Outcome ExportDwellLists(const std::string& path) {
  const std::filesystem::path chosen(path);
  const std::string name = chosen.filename().string();
  const std::filesystem::path base = chosen.parent_path() / name.substr(0, name.find('.'));
  bool any = false;
  for (const DwellListKind kind : {DwellListKind::Open, DwellListKind::Closed, DwellListKind::Latencies}) {
    const ExportedList list = ListOf(kind);
    if (list.values.empty()) continue;
    any = true;
    const Outcome outcome = ExportDwellList(kind, base.string() + list.extension);
    if (outcome != Outcome::Done) return outcome;
  }
  if (!any) MessagePopup(WarningTitle, NothingToExport);
  return Outcome::Done;
}

}  // namespace zelvane
