// Menu commands of the set of waveforms.
#include "fit/fit_store.h"
#include "fit/internal/wave_set_panels.h"
#include "fit/wave_set.h"
#include "screen/screen.h"

namespace zelvane {
namespace {

constexpr char LogBox[] = "FitLogBox";

void FxnListFile() {
  WaveSetClear();
  ListFileRead();
  WriteAllControls();
}

void FitSaveList() {
  ListFileWrite();
}

void FxnFitClear() {
  WaveSetClear();
  WriteAllControls();
}

// clang-format off
constexpr MenuDecl WaveSetMenu[] = {
    {"Fit/Load Waveform List...", "FxnListFile", FxnListFile},
    {"Fit/Save Waveform List...", "FitSaveList", FitSaveList},
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

void OpenListNamed(const std::string& path) {
  WaveSetClear();
  ReadListNamed(path);
  WriteAllControls();
}

void AddWaveSetMenu() {
  AddMenu(WaveSetMenu);
}

}  // namespace zelvane
