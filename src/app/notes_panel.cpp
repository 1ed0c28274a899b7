#include "app/notes_panel.h"

#include <ctime>

#include "screen/screen.h"

namespace zelvane {
namespace {

constexpr char PanelName[] = "NotesPanel";
constexpr char BoxName[] = "NotesText";
constexpr std::size_t MostNotes = 1000;  // older ones are dropped

void FxnNotes() {
  ShowPanel(PanelName);
}

void FxnCloseNotes(const ControlEvent& /*event*/) {
  HidePanel(PanelName);
}

/// Returns the local time, "14:03:07".
std::string ClockText() {
  const std::time_t now = std::time(nullptr);
  char text[16] = "";
  if (const std::tm* local = std::localtime(&now)) std::strftime(text, sizeof text, "%H:%M:%S", local);
  return text;
}

void KeepNote(std::string_view sentence) {
  TextBox& box = TextBoxNamed(BoxName);
  if (box.lines.size() >= MostNotes) box.lines.erase(box.lines.begin());
  InsertLine(box, ClockText() + "  " + std::string(sentence));
}

// clang-format off
constexpr ControlDecl NotesControls[] = {
    {.name = "CloseNotes", .kind = ControlKind::Button, .label = "Close", .format = "", .command = "FxnCloseNotes",
     .action = FxnCloseNotes, .help = "Close this list. It keeps its notes."},
};
constexpr MenuDecl NotesMenu[] = {{"Help/Notes", "FxnNotes", FxnNotes}};
// clang-format on

}  // namespace

void AddNotesPanel() {
  AddPanel({.name = PanelName,
            .title = "Notes",
            .help = "What the program told in the status line since its start, with the time."});
  AddControls(PanelName, "notes", NotesControls);
  AddTextBox(PanelName, BoxName);
  AddMenu(NotesMenu);
  NoteGiven.Add(KeepNote);
}

}  // namespace zelvane
