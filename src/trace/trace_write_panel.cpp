// Commands that write the trace, and the fields of autosave on the main panel.
#include <string>

#include "model/model_store.h"
#include "screen/screen.h"
#include "trace/trace_store.h"
#include "trace/trace_write.h"
#include "trace/trace_write_panels.h"

namespace zelvane {
namespace {

constexpr char AbfPattern[] = "*.abf";
constexpr char ColumnPattern[] = "*.asc";
constexpr char FileTypeWarning[] =
    "If you change file type AFTER selecting the filename, the extension (*.abf,*.asc) may not match the "
    "filetype.";

std::optional<std::string> AskForTarget(const char* title, const char* defaultName, const char* filter) {
  return FileSelectPopup({.title = title, .defaultName = defaultName, .filter = filter, .save = true});
}

void SaveAsciiData() {
  if (RefusedByAutosave()) return;
  if (const auto path = AskForTarget("Save ASCII Data File", ColumnPattern, "*.asc; *.atf"))
    TraceTextWrite(*path);
}

void SaveBinaryData() {
  if (RefusedByAutosave()) return;
  if (const auto path = AskForTarget("Save Data as Binary File", AbfPattern, AbfPattern))
    TraceAbfWrite(*path);
}

void SaveLegacyABFCallback() {
  if (RefusedByAutosave()) return;
  if (const auto path = AskForTarget("Save ABF As ...", AbfPattern, AbfPattern)) LegacyAbfWrite(*path);
}

/// Switches autosave. It stays off without a file.
void FxnAutosave(const ControlEvent&) {
  AutosaveLock().Release();
  if (Model.Autosave == 0) return;
  const bool column = Model.AutosaveFormat == 0;
  const char* pattern = column ? ColumnPattern : AbfPattern;
  const auto path = AskForTarget(
      column ? "Append data to single column ASCII File" : "Append data to ABF File", pattern, pattern);
  if (path) {
    Trace.AutosaveFileName = *path;
    ShowText("AutosaveFileName", *path);
  } else {
    Model.Autosave = 0;
    ShowNumber("Autosave", 0);
  }
}

void FxnASCIIABF(const ControlEvent&) {
  if (Model.Autosave != 0) MessagePopup(WarningTitle, FileTypeWarning);
}

// clang-format off
constexpr ControlDecl AutosaveControls[] = {
    {.name = "Autosave", .kind = ControlKind::Switch, .label = "Autosave", .format = "%d", .command = "FxnAutosave",
     .action = FxnAutosave, .help = "Append the trace of each run to a file.", .choices = "off|on"},
    {.name = "AutosaveFormat", .kind = ControlKind::Switch, .label = "Autosave as", .format = "%d",
     .command = "FxnASCIIABF", .action = FxnASCIIABF,
     .help = "Format of the autosave file: a column of text, or an Axon Binary File with one episode per run.",
     .choices = "ASCII|ABF"},
    {.name = "AutosaveFileName", .kind = ControlKind::Readout, .label = "Autosave file", .format = "",
     .help = "File to which the runs are appended."},
};

constexpr MenuDecl TraceWriteMenu[] = {
    {"File/Save Trace as Text...",       "SaveAsciiData",         SaveAsciiData},
    {"File/Save Trace as ABF...",        "SaveBinaryData",        SaveBinaryData},
    {"File/Save Trace as Legacy ABF...", "SaveLegacyABFCallback", SaveLegacyABFCallback},
};
// clang-format on

}  // namespace

std::string ShownTraceTitle() {
  const Graph* graph = FindGraph(MainPanelName);
  return graph != nullptr ? graph->y.title : std::string{};
}

void AddTraceWriteControls() {
  AddControls(MainPanelName, "autosave", AutosaveControls);
  AddMenu(TraceWriteMenu);
}

}  // namespace zelvane
