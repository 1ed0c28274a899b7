#include "analysis/averages_files.h"

#include <cmath>
#include <filesystem>
#include <optional>
#include <utility>
#include <vector>

#include "analysis/averages.h"
#include "analysis/averages_store.h"
#include "formats/number_text.h"
#include "model/model_store.h"
#include "screen/popups.h"
#include "screen/save_file.h"
#include "trace/trace_export.h"
#include "trace/trace_write.h"

namespace zelvane {
namespace {

constexpr char AverageTitle[] =
    "Export average waveform into 1-column ascii file (time interval in ms is first value).";
constexpr char NormalizedTitle[] =
    "Export normalized average waveform into 1-column ascii file (time interval in ms is first value).";
constexpr char VarianceTitle[] = "Export mean and variance of the sweeps";
constexpr MessageTitle OverwriteTitle{MessageKind::Warning, "Confirm Overwrite Data"};
constexpr char OverwriteQuestion[] = "A file named %s already exists.  Do you want to overwrite it?";

void AppendLine(std::string& text, float value) {
  AppendExponent(text, static_cast<double>(value));
  text += '\n';
}

std::optional<std::string> AskFor(const char* title, const char* filter) {
  return FileSelectPopup({.title = title, .defaultName = filter, .filter = filter, .save = true});
}

/// Asks for a name until there is no such file or the user agrees to replace it.
std::optional<std::string> AskForNew(const char* title, const char* filter) {
  while (auto path = AskFor(title, filter)) {
    std::error_code error;
    if (!std::filesystem::exists(*path, error)) return path;
    if (ConfirmPopup(OverwriteTitle, FormatText(OverwriteQuestion, path->c_str()))) return path;
  }
  return std::nullopt;
}

}  // namespace

std::string AverageColumn(std::span<const float> wave, float intervalMs) {
  std::string text;
  AppendLine(text, intervalMs);
  for (const float value : wave) {
    if (!std::isnan(value)) AppendLine(text, value);
  }
  return text;
}

std::string VarianceCsv() {
  std::string text = "Time (ms),Mean,Variance,Sweeps\n";
  const std::vector<float> mean = MeanWave();
  const std::vector<float> variance = VarianceWave();
  for (std::size_t k = 0; k < mean.size(); ++k) {
    if (std::isnan(mean[k])) continue;
    AppendNineDigits(text, static_cast<double>(static_cast<float>(k) * Model.ADInterval));
    text += ',';
    AppendNineDigits(text, static_cast<double>(mean[k]));
    text += ',';
    if (!std::isnan(variance[k])) AppendNineDigits(text, static_cast<double>(variance[k]));
    text += FormatText(",%d\n", static_cast<int>(Averages.WaveCount[k]));
  }
  return text;
}

Outcome ExportWaveAverage() {
  const auto path = AskForNew(AverageTitle, "*.ave");
  if (!path || RefuseSourceOfTrace(*path)) return Outcome::Refused;
  return SaveText(*path, AverageColumn(MeanWave(), Model.ADInterval));
}

Outcome ExportWaveNormalized() {
  const auto path = AskFor(NormalizedTitle, "*.nrm");
  if (!path || RefuseSourceOfTrace(*path)) return Outcome::Refused;
  const std::string text = AverageColumn(NormalizedWave(), Model.ADInterval);
  std::string_view rest = text;
  return ExtendFile(*path, BehindLastLine(*path, [&rest] { return std::exchange(rest, {}); }));
}

Outcome ExportWaveVariance() {
  const auto path = AskForNew(VarianceTitle, "*.csv");
  if (!path || RefuseSourceOfTrace(*path)) return Outcome::Refused;
  return SaveText(*path, VarianceCsv());
}

}  // namespace zelvane
