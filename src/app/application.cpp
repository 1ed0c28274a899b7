#include "app/application.h"

#include <chrono>
#include <filesystem>

#include "analysis/analysis_panel.h"
#include "analysis/analyze.h"
#include "analysis/dose_panel.h"
#include "analysis/results_files.h"
#include "analysis/results_read.h"
#include "analysis/run_analysis.h"
#include "analysis/trace_exports.h"
#include "analysis/wave_panel.h"
#include "app/about_panel.h"
#include "app/graph_properties.h"
#include "app/help_buttons.h"
#include "app/notes_panel.h"
#include "app/recorder.h"
#include "app/stores.h"
#include "app/undo.h"
#include "dwells/dwell_lists_panel.h"
#include "fit/fit_panel.h"
#include "fit/fit_rows_panel.h"
#include "fit/wave_load.h"
#include "fit/wave_set.h"
#include "formats/recording_file.h"
#include "model/model_file.h"
#include "model/model_panels.h"
#include "parameters/fit_limits_panel.h"
#include "platform/file_names.h"
#include "platform/folders.h"
#include "rscm/rs_correct.h"
#include "rscm/rscm_panel.h"
#include "run/q_matrix_panel.h"
#include "run/run.h"
#include "run/run_panel.h"
#include "screen/observer.h"
#include "screen/screen.h"
#include "screen/zoom_graph.h"
#include "stimulus/stimulus.h"
#include "stimulus/stimulus_file.h"
#include "trace/filter_panel.h"
#include "trace/program_random.h"
#include "trace/trace_panels.h"
#include "trace/trace_read.h"
#include "trace/trace_write.h"
#include "trace/transform_panel.h"

namespace zelvane {
namespace {

constexpr char QuitQuestion[] = "Are you ready to exit Zelvane?";
constexpr char CloseQuestion[] = "Are you ready to exit Zelvane ?";
constexpr char QuitHelp[] = "Terminates the program";
constexpr char ModelExtension[] = ".mod";
constexpr char NotAModelFile[] = "This is no model file: ";

bool Exists(const std::filesystem::path& path) {
  std::error_code error;
  return std::filesystem::is_regular_file(path, error);
}

/// Returns the "config.mod" of this start: that of the given folder, else the user's own, else the program's.
std::string ConfigFile(const StartOptions& options) {
  if (!options.folder.empty()) return (std::filesystem::path(options.folder) / ConfigFileName).string();
  const std::string own = UserConfigFolder();
  if (!own.empty() && Exists(std::filesystem::path(own) / ConfigFileName)) {
    return (std::filesystem::path(own) / ConfigFileName).string();
  }
  const std::string folder = ProgramDataFolder();
  return folder.empty() ? std::string{} : (std::filesystem::path(folder) / ConfigFileName).string();
}

void SeedAtStart(const StartOptions& options) {
  if (options.seeds) return;
  const auto now = std::chrono::system_clock::now().time_since_epoch();
  SeedGenerators(ProgramRandom,
                 static_cast<std::uint32_t>(std::chrono::duration_cast<std::chrono::seconds>(now).count()));
}

/// Reads "config.mod". Without it keeps the initial values and asks for no file.
void ReadConfig(const StartOptions& options) {
  const std::string path = ConfigFile(options);
  if (path.empty() || !Exists(path)) return;
  ModelFileReadNamed(path);
}

void ShowStores() {
  WriteAllControls();
  RefreshModelPanels();
  WriteRunParameters();
  StimPanelRefresh();
}

/// The function that opens files with an extension.
struct Opener {
  std::string_view extension;
  Outcome (*open)(const std::string& path);
};
constexpr Opener Openers[] = {
    {".stm", OpenStimulusNamed},
    {".lst", OpenListNamed},
    {".tbl", ReadResultsTableNamed},
};

/// Opens a file: a recording, recognised by its first bytes; a file of the table above, by its name; a model;
/// or any other file as a text recording. A file with the name of a model and other contents is not read as
/// numbers.
void OpenNamedFile(const std::string& file) {
  if (BeginsLikeRecording(file)) {
    TraceReadFile(file);
    return;
  }
  const std::string extension = ExtensionOf(file);
  for (const Opener& opener : Openers) {
    if (opener.extension != extension) continue;
    opener.open(file);
    return;
  }
  if (ModelFileReadNamed(file) != Outcome::Refused) return;
  if (file.ends_with(ModelExtension)) {
    MessagePopup(FileErrorTitle, NotAModelFile + file);
  } else {
    TraceReadFile(file);
  }
}

void OpenNamedFiles(const StartOptions& options) {
  for (const std::string& file : options.files) {
    if (Exists(file)) OpenFileByName(file);  // skips names without a file
  }
}

/// Loads dropped files as waveforms of the fit. Models, lists and tables are opened as anywhere else.
void AddNamedFilesToFit(std::span<const std::string> paths) {
  std::vector<std::string> waves;
  for (const std::string& path : paths) {
    const std::string extension = ExtensionOf(path);
    if (extension == ModelExtension || extension == ".lst" || extension == ".tbl") {
      OpenNamedFile(path);
    } else {
      waves.push_back(path);
    }
  }
  if (waves.empty()) return;
  static_cast<void>(AddWaveFiles(waves));  // has told what it could not load
  ShowLoadedWaves();
}

void QuitAfter(const char* question) {
  if (!ConfirmPopup("", question)) return;
  OfferUnwrittenRows();
  QuitUserInterface();
}

void AskToClose() {
  QuitAfter(CloseQuestion);
}

void Shutdown(const ControlEvent&) {
  AskToQuit();
}

// clang-format off
constexpr ControlDecl ShellControls[] = {
    {.name = "Quit", .kind = ControlKind::Button, .label = "Quit", .format = "", .command = "Shutdown",
     .action = Shutdown, .help = QuitHelp},
};
constexpr MenuDecl ShellMenu[] = {{"File/Quit", "ShutDown", AskToClose, "Ctrl+Q"}};
// clang-format on

}  // namespace

void ConnectHooks() {
  ConnectMeasures();
  ConnectRuns();
  ConnectAutosave();
  ConnectRunAnalysis();
}

void AskToQuit() {
  QuitAfter(QuitQuestion);
}

void OpenFileByName(const std::string& path) {
  Perform("open " + QuoteWord(path), [&] { OpenNamedFile(path); });
}

void AddFilesToFit(std::span<const std::string> paths) {
  std::string line = "add";
  for (const std::string& path : paths) line += ' ' + QuoteWord(path);
  Perform(line, [&] { AddNamedFilesToFit(paths); });
}

void AddAllPanels() {
  // The entries of a menu and the buttons of MainPanel are in the order of these calls.
  AddModelFileMenu();
  AddUndoMenu();
  AddModelPanels();
  AddRunPanels();
  AddControls(MainPanelName, "shell", ShellControls);
  AddRecordingPanels();
  AddStimulusPanel();
  AddStimulusFileControls();
  AddQMatrixPanel();
  AddWaveSetMenu();
  AddDwellListsPanels();
  AddFitLimitsPanel();
  AddAnalysisPanel();
  AddWavePanel();
  AddDosePanel();
  AddFitPanel();
  AddFitRowsControls();
  AddStimFitLimitsPanel();
  AddFitRatesTable();
  DimForSessions();
  AddGraphPropertiesPanel();
  AddFilterPanel();
  AddTransformPanel();
  AddRsCorrectionPanel();
  AddTraceExports();
  AddHelp();
  AddNotesPanel();
  AddRecorderMenu();
  AddMenu(ShellMenu);
  Panel& main = PanelNamed(MainPanelName);
  main.close = AskToClose;
  main.maximised = true;
  ZoomGraphCreate(GraphNamed(MainPanelName));
  ZoomGraphCreate(GraphNamed("AnalysisPanel"));
  ZoomGraphCreate(GraphNamed("WaveAnalysisPanel.expanded"));
}

void StartApplication(const StartOptions& options) {
  // The order is fixed: later steps use the results of earlier ones.
  ClearScreen();
  RemoveUserObservers();
  AllocateStores();
  AddAboutPanel();
  SetVisible("CloseAbout", false);
  ShowPanel("AboutPanel");
  SeedAtStart(options);
  SetProgramFolder(options.folder);
  ResetStores();
  ConnectHooks();
  SetLinearIv();
  AddAllPanels();
  Screen.PanelTag = "MN";
  ShowStores();
  ReadConfig(options);
  WriteGridRates();
  RefreshLinks();
  StimRebuild();
  HidePanel("AboutPanel");
  SetVisible("CloseAbout", true);
  ShowPanel(MainPanelName);
  UpdateDimming();
  if (options.shown) options.shown();
  OpenNamedFiles(options);
  StartUndo();
  WatchForRecorder();
  if (options.seeds) SetSeeds(ProgramRandom, *options.seeds);
}

}  // namespace zelvane
