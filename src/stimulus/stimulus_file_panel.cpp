// Commands and fields of stimulus files on the stimulus panel and in the menu.
#include <string>

#include "model/model_events.h"
#include "model/model_store.h"
#include "platform/file_names.h"
#include "screen/screen.h"
#include "stimulus/stimulus.h"
#include "stimulus/stimulus_file.h"
#include "stimulus/stimulus_file_panels.h"
#include "stimulus/stimulus_store.h"

namespace zelvane {
namespace {

constexpr char StimulusPanelName[] = "StimulusPanel";
constexpr char FilesGroup[] = "files";
constexpr char BinaryFilter[] = "*.stm";
constexpr char ColumnFilter[] = "*.asc";
constexpr char NoExportPoints[] = "An export needs at least one sample.";

std::optional<std::string> AskFor(const char* title, const char* filter, bool save) {
  return FileSelectPopup({.title = title, .defaultName = filter, .filter = filter, .save = save});
}

/// Selects USER mode, because the profiles are now from a file.
void EnterUserMode() {
  Stimulus.StimMode = StimUser;
  StimPanelRefresh();
  Stimulus.StimFromFile = 1;
  StimRebuild();
}

/// Shows the profiles after a refused file. Builds the automatic step again.
void ShowWhatIsLeft() {
  if (Stimulus.StimMode == StimAutomatic)
    StimRebuild();
  else
    StimPlot();
}

void ReadProfiles(const char* title) {
  if (const auto path = AskFor(title, BinaryFilter, false)) OpenStimulusNamed(*path);
}

void OpenStimulus() {
  ReadProfiles("Read Stimulus Profile");
}

void SaveStimulus() {
  if (const auto path = AskFor("Save Stimulus Profile as binary File", BinaryFilter, true))
    StimFileWrite(*path, MaxStimPoints);
}

void LoadStim(const ControlEvent&) {
  ReadProfiles("Read Binary Stimulus Profile");
}

void ButtonSaveStim(const ControlEvent&) {
  StimReadControls();
  ReadControls(StimulusPanelName, FilesGroup);
  if (const auto path = AskFor("Save Full Stimulus Profile to Binary File", BinaryFilter, true))
    StimFileWrite(*path, Stimulus.ExportPoints);
}

void ImportStim(const ControlEvent&) {
  StimReadControls();
  const auto path = AskFor("Read Ascii Stimulus Profile", "*.*", false);
  if (!path) return;
  const auto read = StimAsciiImport(*path);
  if (!read) return;
  if (*read == 1) Stimulus.StimFileName = *path;
  EnterUserMode();
  ShowStimulusOfFile();
}

void ExportStim(const ControlEvent&) {
  StimReadControls();
  ReadControls(StimulusPanelName, FilesGroup);
  if (const auto path = AskFor("Export Current Stimulus Profile as ASCII File", ColumnFilter, true))
    StimAsciiExport(*path, Stimulus.ExportPoints);
}

void FxnExportPoints(const ControlEvent& event) {
  if (Stimulus.ExportPoints < 1) {
    MessagePopup(ErrorTitle, NoExportPoints);
    Stimulus.ExportPoints = static_cast<int>(event.previous);
  }
  if (Stimulus.ExportPoints > MaxStimPoints) Stimulus.ExportPoints = MaxStimPoints;
  ShowNumber("ExportPoints", Stimulus.ExportPoints);
}

constexpr ControlKind Number = ControlKind::Number;
constexpr ControlKind Button = ControlKind::Button;
constexpr ControlKind Readout = ControlKind::Readout;

// clang-format off
constexpr ControlDecl FileControls[] = {
    {.name = "StimFile", .kind = Readout, .label = "Stimulus file", .format = "",
     .help = "Name of the last stimulus file that was read."},
    {.name = "ExportPoints", .kind = Number, .label = "Samples to export", .format = "%d",
     .command = "FxnExportPoints", .action = FxnExportPoints,
     .help = "Number of samples to write from each profile."},
    {.name = "LoadStim", .kind = Button, .label = "Load...", .format = "", .command = "LoadStim", .action = LoadStim,
     .help = "Read all seven profiles, voltage and Drug1 to Drug6, from a binary stimulus file."},
    {.name = "ButtonSaveStim", .kind = Button, .label = "Save...", .format = "", .command = "ButtonSaveStim",
     .action = ButtonSaveStim, .help = "Save all seven profiles to a binary stimulus file."},
    {.name = "ImportStim", .kind = Button, .label = "Import column...", .format = "", .command = "ImportStim",
     .action = ImportStim,
     .help = "Read the stimulus shown from a text file. The first line is the interval in ms. Each further line "
     "is one value."},
    {.name = "ExportStim", .kind = Button, .label = "Export column...", .format = "", .command = "ExportStim",
     .action = ExportStim,
     .help = "Write the stimulus shown to a text file. The first line is the interval in ms. Each further line is "
     "one value."},
};

constexpr ControlDecl MainPanelReadout[] = {
    {.name = "MainStimFile", .kind = Readout, .label = "Stimulus file", .format = "",
     .help = "Name of the last stimulus file that was read."},
};

constexpr MenuDecl StimulusFileMenu[] = {
    {"Stimulus/Read Profiles...", "OpenStimulus", OpenStimulus},
    {"Stimulus/Save Profiles...", "SaveStimulus", SaveStimulus},
};
// clang-format on

}  // namespace

Outcome OpenStimulusNamed(const std::string& path) {
  const Outcome outcome = StimFileRead(path);
  if (outcome == Outcome::Done) {
    EnterUserMode();
  } else {
    ShowWhatIsLeft();
  }
  return outcome;
}

void ReadStimulusPanel() {
  StimReadControls();
}

void ShowStimulusOfFile() {
  RunLengthTaken.Tell();
  WriteAllControls();
  RunSettingsReplaced.Tell();
  StimPanelRefresh();
  const std::string name = FileNameOf(Stimulus.StimFileName);
  ShowText("StimFile", name);
  ShowText("MainStimFile", name);
  StimPlot();
}

void AddStimulusFileControls() {
  AddControls(StimulusPanelName, FilesGroup, FileControls);
  AddControls(MainPanelName, "stimulus", MainPanelReadout);
  AddMenu(StimulusFileMenu);
}

}  // namespace zelvane
