// Menu commands of the set of waveforms.
#include "fit/fit_store.h"
#include "fit/wave_set.h"
#include "fit/wave_set_panels.h"
#include "screen/screen.h"

namespace zelvane {
namespace {

constexpr char LogBox[] = "FitLogBox";

void FxnListFile() {
  WaveSetClear();
  ListFileRead();
  WriteAllControls();
}

void FxnFitClear() {
  WaveSetClear();
  WriteAllControls();
}

// clang-format off
constexpr MenuDecl WaveSetMenu[] = {
    {"Fit/Load Waveform List...", "FxnListFile", FxnListFile},
    {"Fit/Save Waveform List...", "FitSaveList", Run<ListFileWrite>},
    {"Fit/Clear Waveforms",       "FxnFitClear", FxnFitClear},
};
// clang-format on

}  // namespace

void AddFitLogLine(const std::string& line) {
  Fit.LogLines.push_back(line);
  if (TextBox* box = FindTextBox(LogBox)) {
    InsertLine(*box, line);
  } else {
    ConsoleLine(line);
  }
}

Outcome OpenListNamed(const std::string& path) {
  WaveSetClear();
  const Outcome outcome = ReadListNamed(path);
  WriteAllControls();
  return outcome;
}

void AddWaveSetMenu() {
  AddMenu(WaveSetMenu);
}

}  // namespace zelvane
