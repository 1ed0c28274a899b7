// FileInfoPanel: information on the last file that was read.
#include "screen/screen.h"
#include "trace/trace_dialogs.h"
#include "trace/trace_events.h"
#include "trace/trace_panels.h"
#include "trace/trace_store.h"

namespace zelvane {
namespace {

constexpr char PanelName[] = "FileInfoPanel";
constexpr char BoxName[] = "FileInfoText";

void FnxCloseFileInfo(const ControlEvent& /*event*/) {
  HidePanel(PanelName);
}

// clang-format off
constexpr ControlDecl InfoControls[] = {
    {.name = "CloseFileInfo", .kind = ControlKind::Button, .label = "Close", .format = "",
     .command = "FnxCloseFileInfo", .action = FnxCloseFileInfo, .help = "Close File Information Panel"},
};
// clang-format on

}  // namespace

void AddFileInfoPanel() {
  AddPanel({.name = PanelName,
            .title = "File information",
            .help = "Mode, length, interval, gains and units of the last recording that was read."});
  AddControls(PanelName, "info", InfoControls);
  AddTextBox(PanelName, BoxName);
  RecordingTaken.Add(ShowFileInfo);
}

void FxnFileInfo() {
  ShowFileInfo();
  ShowPanel(PanelName);
}

void ShowFileInfo() {
  TextBox& box = TextBoxNamed(BoxName);
  ClearLines(box);
  for (const std::string& line : Trace.FileInfo) InsertLine(box, line);
}

}  // namespace zelvane
