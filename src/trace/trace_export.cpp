#include "trace/trace_export.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "formats/input_file.h"
#include "formats/number_text.h"
#include "formats/row_blocks.h"
#include "platform/file_names.h"

namespace zelvane {
namespace {

constexpr double MsPerSecond = 1000.0;

/// Returns a name for use between double quotes: without double quotes, tabs and line breaks.
std::string WithoutQuotes(std::string_view name) {
  std::string plain(name);
  std::replace(plain.begin(), plain.end(), '"', '\'');
  std::replace_if(
      plain.begin(), plain.end(), [](char c) { return c == '\t' || c == '\r' || c == '\n'; }, ' ');
  return plain;
}

/// Returns a CSV field, in quotes if necessary (RFC 4180).
std::string CsvField(std::string_view name) {
  if (name.find_first_of(",\"\r\n") == std::string_view::npos) return std::string(name);
  std::string quoted = "\"";
  for (const char c : name) {
    if (c == '"') quoted += '"';
    quoted += c;
  }
  return quoted += '"';
}

/// Sweeps in neighbouring columns or, in a single column, one after the other.
using SweepSpans = std::vector<std::span<const float>>;

NextBlock SingleColumnBlocks(const SweepSpans& sweeps, double intervalMs) {
  std::string head;
  AppendExponent(head, intervalMs);
  head += '\n';
  std::size_t samples = 0;
  for (const auto& sweep : sweeps) samples += sweep.size();
  return MakeRowBlocks(
      std::move(head), samples,
      [sweeps, at = std::size_t{0}, begin = std::size_t{0}](std::string& text, std::size_t i) mutable {
        while (i - begin >= sweeps[at].size()) begin += sweeps[at++].size();
        AppendExponent(text, static_cast<double>(sweeps[at][i - begin]));
        text += '\n';
      });
}

/// The name of a signal, and the title of the columns of its samples.
struct SignalTexts {
  std::string name;
  std::string title;
};

/// Returns the rows of an ATF. All sweeps have the length of the first one.
NextBlock AtfBlocks(const SweepSpans& sweeps, double intervalMs, const SignalTexts& signal) {
  const std::string title = WithoutQuotes(signal.title);
  std::string head = "ATF\t1.0\n3\t" + std::to_string(sweeps.size() + 1) +
                     "\n\"Type=\"\n\"Comment=\"\n\"SignalsExported=" + WithoutQuotes(signal.name) +
                     "\"\n\"Time (s)\"";
  for (std::size_t k = 0; k < sweeps.size(); ++k) head.append("\t\"").append(title).append("\"");
  head += '\n';
  return MakeRowBlocks(std::move(head), sweeps.front().size(),
                       [sweeps, intervalMs](std::string& text, std::size_t i) {
                         AppendExponent(text, static_cast<double>(i) * intervalMs / MsPerSecond);
                         for (const auto& sweep : sweeps) {
                           text += '\t';
                           AppendExponent(text, static_cast<double>(sweep[i]));
                         }
                         text += '\n';
                       });
}

NextBlock CsvSweepBlocks(const SweepSpans& sweeps, double intervalMs, std::string_view name) {
  std::vector<CsvColumn> columns;
  std::size_t rows = 0;
  for (const auto& sweep : sweeps) {
    std::string title(name);
    if (sweeps.size() > 1) title.append(name.empty() ? "#" : " #").append(std::to_string(columns.size() + 1));
    columns.push_back({title, sweep});
    rows = std::max(rows, sweep.size());
  }
  return CsvBlocks(rows, columns,
                   [intervalMs](std::size_t i) { return static_cast<double>(i) * intervalMs; });
}

NextBlock SweepBlocks(TraceFormat format, const SweepSpans& sweeps, float intervalMs,
                      const SignalTexts& signal) {
  const double interval = AsTyped(intervalMs);
  switch (format) {
    case TraceFormat::SingleColumn:
      return SingleColumnBlocks(sweeps, interval);
    case TraceFormat::Atf:
      return AtfBlocks(sweeps, interval, signal);
    case TraceFormat::Csv:
      break;
  }
  return CsvSweepBlocks(sweeps, interval, signal.title);
}

}  // namespace

std::optional<TraceFormat> TraceFormatOf(const std::string& path) {
  const std::string extension = ExtensionOf(path);
  if (extension == ".txt" || extension == ".asc") return TraceFormat::SingleColumn;
  if (extension == ".atf") return TraceFormat::Atf;
  if (extension == ".csv") return TraceFormat::Csv;
  return std::nullopt;
}

NextBlock TraceTextBlocks(TraceFormat format, std::span<const float> samples, float intervalMs,
                          std::string_view signalName) {
  return SweepBlocks(format, {samples}, intervalMs, {std::string(signalName), std::string(signalName)});
}

NextBlock CsvBlocks(std::size_t rows, const std::vector<CsvColumn>& columns,
                    const std::function<double(std::size_t row)>& timeOf) {
  std::string head = "time_ms";
  for (const CsvColumn& column : columns) head += ',' + CsvField(column.title);
  head += '\n';
  return MakeRowBlocks(std::move(head), rows, [columns, timeOf](std::string& text, std::size_t row) {
    AppendNineDigits(text, timeOf(row));
    for (const CsvColumn& column : columns) {
      text += ',';
      if (row < column.values.size()) AppendNineDigits(text, static_cast<double>(column.values[row]));
    }
    text += '\n';
  });
}

NextBlock BehindLastLine(const std::string& path, NextBlock blocks) {
  char last = '\n';
  auto file = OpenInput(path);
  if (file && file->seekg(-1, std::ios::end)) file->get(last);
  if (last == '\n') return blocks;
  return [blocks = std::move(blocks), ended = false]() mutable -> std::string_view {
    return std::exchange(ended, true) ? blocks() : "\n";
  };
}

bool WriteTraceFile(const std::string& path, std::span<const float> samples, float intervalMs,
                    std::string_view signalName) {
  const auto format = TraceFormatOf(path);
  return format && ReplaceFileInBlocks(path, TraceTextBlocks(*format, samples, intervalMs, signalName));
}

bool WriteSweepsFile(const std::string& path, const Sweeps& sweeps, float intervalMs,
                     std::string_view signalName, std::string_view units) {
  const auto format = TraceFormatOf(path);
  if (!format || sweeps.empty()) return false;
  const SweepSpans spans(sweeps.begin(), sweeps.end());
  const auto unequal = [&](std::span<const float> sweep) { return sweep.size() != spans.front().size(); };
  if (*format == TraceFormat::Atf && std::any_of(spans.begin(), spans.end(), unequal)) return false;
  SignalTexts signal{std::string(signalName), std::string(signalName)};
  std::replace(signal.name.begin(), signal.name.end(), ',', ';');  // commas separate the names of a list
  if (!units.empty()) signal.title.append(signal.title.empty() ? "(" : " (").append(units).append(")");
  return ReplaceFileInBlocks(path, SweepBlocks(*format, spans, intervalMs, signal));
}

}  // namespace zelvane
