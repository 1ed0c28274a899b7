// The 15 lines of FitPanel, each with a recording and a stimulus, and the commands of the whole set.
#include <algorithm>
#include <array>
#include <string>

#include "fit/fit_panel.h"
#include "fit/fit_panels.h"
#include "fit/wave_load.h"
#include "fit/wave_set.h"
#include "fit/wave_set_panels.h"
#include "model/model_events.h"
#include "model/model_store.h"
#include "platform/index.h"
#include "screen/screen.h"

namespace zelvane {
namespace {

constexpr char DataTitle[] = "Read ASCII or Binary Data File to Fit";
constexpr char DataFilter[] = "*.abf;*.dat;*.atf;*.asc;*.txt";
constexpr char StimTitle[] = "Read Binary Stimulus Profile for Fitting";
constexpr char StimFilter[] = "*.stm";
constexpr char NormalizedQuestion[] =
    "Do you want to load a new waveform after normalization of previously loaded waveforms?";
constexpr char QuestionTitle[] = "! Warning";
constexpr char FirstLineFirst[] = "Load data waveform-1 first.";

constexpr std::size_t MostLogLines = 10'000;

FitWaveform& Wave(int w) {
  return Fit.Wave[Index(w)];
}

void ShowSet() {
  WriteFitPanel();
  FitPanelPlot();
}

std::optional<std::string> AskFor(const char* title, const char* pattern, const char* filter) {
  return FileSelectPopup({.title = title, .defaultName = pattern, .filter = filter});
}

/// Asks for the stimulus of a line. A file that cannot be read drops the whole pair; without a file the recording
/// waits for a later one.
void AskForStimulus(int w) {
  const auto path = AskFor(StimTitle, StimFilter, StimFilter);
  Wave(w).StimOn = 0;
  if (!path || LoadWaveStimulus(w, *path) == Outcome::Done) return;
  EmptyWave(w);
  CountWaves();
}

/// Empties the recording of a line. Its stimulus stays.
void UnloadData(int w) {
  ClearWaveData(w);
  if (NoWaveLoaded()) ForgetNormalizing();
  CountWaves();
}

void ReadDataOfLine(int w) {
  const auto path = AskFor(DataTitle, "*.abf", DataFilter);
  if (path && LoadWaveData(w, *path) == Outcome::Done) {
    if (w == 1) AskForStimulus(w);
  } else {
    UnloadData(w);
  }
}

/// Returns whether a line may get a recording now; otherwise tells why not.
bool MayLoad(int w) {
  if (w > 1 && Wave(1).WaveLoaded == 0) {
    MessagePopup(WarningTitle, FirstLineFirst);
    return false;
  }
  if (Fit.FitNormalized == 0 || Wave(w).WaveLoaded != 0) return true;
  return ConfirmPopup(QuestionTitle, NormalizedQuestion);
}

void FxnFitDataTrace(const ControlEvent& event) {
  const int w = event.index;
  if (NoWaveLoaded()) ForgetNormalizing();
  const bool on = Wave(w).DataOn != 0;
  if (!on) {
    UnloadData(w);
  } else if (MayLoad(w)) {
    ReadDataOfLine(w);
  } else {
    Wave(w).DataOn = 0;
  }
  ShowLoadedWaves();
}

void FxnFitStimulus(const ControlEvent& event) {
  const int w = event.index;
  const bool on = Wave(w).StimOn != 0;
  if (on)
    AskForStimulus(w);
  else
    ClearWaveStimulus(w);
  ShowSet();
}

void LoadList() {
  WaveSetClear();
  ListFileRead();
  WriteAllControls();
  ShowLoadedWaves();
}

void ClearSet() {
  WaveSetClear();
  WriteAllControls();
  ShowSet();
}

void FxnListFile(const ControlEvent&) {
  LoadList();
}

void FxnFitClear(const ControlEvent&) {
  ClearSet();
}

void FitSaveList(const ControlEvent&) {
  ListFileWrite();
  ShowField("FitListOn");
}

void SaveListOfMenu() {
  ListFileWrite();
  ShowField("FitListOn");
}

constexpr auto Switch = ControlKind::Switch;
constexpr auto Button = ControlKind::Button;
constexpr auto Readout = ControlKind::Readout;

// clang-format off
constexpr ControlDecl SetControls[] = {
    {.name = "FitStimOn[%d]", .kind = Switch, .label = "Stimulus %d", .format = "%d", .command = "FxnFitStimulus%d",
     .action = FxnFitStimulus, .help = "Load custom stimulus protocol from binary STM file.", .first = 1,
     .last = MaxFitWaveforms, .choices = "off|on"},
    {.name = "WaveStimName[%d]", .kind = Readout, .label = "Stimulus file %d", .format = "",
     .help = "Name of the stimulus file of waveform %d.", .first = 1, .last = MaxFitWaveforms},
    {.name = "FitDataOn[%d]", .kind = Switch, .label = "Data %d", .format = "%d", .command = "FxnFitDataTrace%d",
     .action = FxnFitDataTrace,
     .help = "Load ASCII or Binary data file. Binary is ABF format;\nASCII is single column with or without "
     "adinterval as first value.", .first = 1, .last = MaxFitWaveforms, .choices = "off|on"},
    {.name = "WaveDataName[%d]", .kind = Readout, .label = "Data file %d", .format = "",
     .help = "Name of the recording of waveform %d.", .first = 1, .last = MaxFitWaveforms},
    {.name = "FitWaveCount", .kind = Readout, .label = "Waveforms", .format = "%d",
     .help = "Number of recordings that are loaded."},
    {.name = "FitListOn", .kind = Switch, .label = "List file", .format = "%d", .command = "FxnListFile",
     .action = FxnListFile,
     .help = "Clear all waveforms and load a model with its pairs of recording and stimulus from a list file.",
     .choices = "off|on"},
    {.name = "FitListSave", .kind = Button, .label = "Save list...", .format = "", .command = "FitSaveList",
     .action = FitSaveList, .help = "Write the names of the model and of the loaded pairs to a list file."},
    {.name = "FitClear", .kind = Button, .label = "Clear", .format = "", .command = "FxnFitClear",
     .action = FxnFitClear, .help = "Clear all loaded waveforms ad stimulus profiles."},
};

constexpr MenuDecl WaveSetMenu[] = {
    {"Fit/Load Waveform List...", "FxnListFile", LoadList},
    {"Fit/Save Waveform List...", "FitSaveList", SaveListOfMenu},
    {"Fit/Clear Waveforms",       "FxnFitClear", ClearSet},
};
// clang-format on

}  // namespace

void ShowLoadedWaves() {
  RunSettingsChanged.Tell();
  RunSettingsReplaced.Tell();
  ShowSet();
}

std::span<const ControlDecl> WaveControls() {
  return SetControls;
}

void ShowModelOfFit() {
  if (Fit.FitWaveCount > 0) Fit.FitNormalized = Fit.WavesNormalized;  // as the recordings are
  ShowSet();
}

void AddFitLogLine(const std::string& line) {
  Fit.LogLines.push_back(line);
  if (Fit.LogLines.size() > MostLogLines) Fit.LogLines.pop_front();
  if (Model.FitActive != 0) return;  // a session shows its lines a few times a second
  if (TextBox* box = FindTextBox(FitLogBoxName)) TellLinesChanged(*box);
}

Outcome OpenListNamed(const std::string& path) {
  WaveSetClear();
  const Outcome outcome = ReadListNamed(path);
  WriteAllControls();
  ShowLoadedWaves();
  return outcome;
}

void AddWaveSetMenu() {
  AddMenu(WaveSetMenu);
}

}  // namespace zelvane
