#include "fit/fit_export.h"

#include <algorithm>
#include <cstddef>
#include <string>

#include "fit/fit_store.h"
#include "formats/number_text.h"
#include "formats/row_blocks.h"
#include "model/model_store.h"
#include "platform/index.h"
#include "screen/popups.h"
#include "screen/save_file.h"

namespace zelvane {
namespace {

constexpr char WriteTitle[] = "Write Fitting Results to ASCII File (existing file will be overwritten)";
constexpr char FitFilter[] = "*.fit";

std::string HeadLine() {
  std::string head = "(ms)";
  for (int w = 1; w <= MaxFitWaveforms; ++w) head += FormatText(",Data%d,Fit%d", w, w);
  return head + '\n';
}

void AppendRow(std::string& text, std::size_t row) {
  AppendFixed(text, static_cast<double>(Model.ADInterval * Fit.Wave[1].FitX[row]));
  for (std::size_t w = 1; w <= MaxFitWaveforms; ++w) {
    for (const float value : {Fit.Wave[w].FitData[row], Fit.Wave[w].FitSim[row]}) {
      text += ", ";
      AppendFixed(text, static_cast<double>(value));
    }
  }
  text += '\n';
}

}  // namespace

Outcome ExportFitNamed(const std::string& path, int count) {
  return SaveFile(path, MakeRowBlocks(HeadLine(), Index(std::clamp(count, 0, MaxWaveformPoints)), AppendRow));
}

Outcome ExportFit(int count) {
  const auto path =
      FileSelectPopup({.title = WriteTitle, .defaultName = FitFilter, .filter = FitFilter, .save = true});
  return path ? ExportFitNamed(*path, count) : Outcome::Refused;
}

}  // namespace zelvane
