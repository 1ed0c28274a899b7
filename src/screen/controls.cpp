// Values of controls, and the rules for clicks, commits and right clicks.
#include <algorithm>
#include <cmath>
#include <utility>

#include "platform/index.h"
#include "screen/announce.h"
#include "screen/memory_guard.h"
#include "screen/number_entry.h"
#include "screen/observe.h"
#include "screen/observer.h"
#include "screen/screen.h"

namespace zelvane {
namespace {

constexpr char NotAChoice[] = "not one of the choices";
constexpr char IsDimmed[] = "dimmed";
constexpr char RunInProgress[] = "a run is in progress";
constexpr char ReadOnly[] = "not editable";
constexpr char NoSuchCell[] = "no such cell";
constexpr char NameOfRecord[] = "undoing or recording this action";

/// Changes of views while a command runs; observers get them after it.
std::vector<std::string>& ViewedMeanwhile() {
  static std::vector<std::string> lines;
  return lines;
}

bool HoldsNumber(const Control& control) {
  return control.kind == ControlKind::Number || control.kind == ControlKind::Switch ||
         control.kind == ControlKind::Choice;
}

bool EditsField(const Control& control) {
  return control.field && (HoldsNumber(control) || control.kind == ControlKind::Text);
}

/// Returns the number of the store's field as the panel shows it.
double ShownNumber(const Control& control) {
  const double stored = FieldNumber(control.field);
  return control.toShown != nullptr ? control.toShown(stored) : stored;
}

/// Stores a value shown in another unit, but only one that the user typed: converting to the panel and back
/// may round.
void StoreConverted(Control& control) {
  if (!control.typed) return;
  control.typed = false;
  SetFieldNumber(control.field, control.toStored(control.number));
  control.number = ShownNumber(control);
}

void StoreControl(Control& control) {
  if (!EditsField(control)) return;
  if (control.field.field->type == FieldType::Text) {
    SetFieldText(control.field, control.text);
  } else if (control.toStored != nullptr) {
    StoreConverted(control);
  } else {
    SetFieldNumber(control.field, control.number);
  }
}

void LoadControl(Control& control) {
  if (!control.field) return;
  control.typed = false;
  if (control.field.field->type == FieldType::Text) {
    control.text = FieldText(control.field);
  } else {
    control.number = ShownNumber(control);
    if (control.kind == ControlKind::Readout) control.text = FormatNumber(control.format, control.number);
  }
}

/// Marks the screen busy during its lifetime.
class BusyMark {
 public:
  BusyMark() { ++Screen.busy; }
  ~BusyMark() { --Screen.busy; }
  BusyMark(const BusyMark&) = delete;
  BusyMark& operator=(const BusyMark&) = delete;
};

/// Runs an action of the user with the screen marked busy, then the dimming rules. Every action comes through
/// here, so that one that needs more memory than there is ends with a message.
/// @param line  the action in the command language; observers get only the outermost action
/// @param name  what the user calls the action
template <typename Function>
void RunAction(const std::string& line, std::string_view name, Function&& action) {
  const bool outermost = Screen.busy == 0;
  WithinMemory(name, [&] {
    if (outermost) {
      RestartPumpCount();
      ObserveBefore();
    } else {
      ObserveQueued(FormatText("during %d ", PumpsOfAction()) + line);
    }
    const BusyMark busy;
    action();
  });
  WithinMemory(NameOfRecord, [&] {
    UpdateDimming();
    if (!outermost) return;
    ObserveDid(line);
    for (const std::string& viewed : std::exchange(ViewedMeanwhile(), {})) ObserveDid(viewed);
  });
}

template <typename Function>
void RunAction(const std::string& line, Function&& action) {
  RunAction(line, line, std::forward<Function>(action));
}

/// Returns the words of the command language for a press of a control.
std::string PressLine(const Control& control) {
  return control.command.empty() ? "commit " + QuoteWord(control.name) : "press " + control.command;
}

void CommitControl(Control& control, const std::string& line) {
  ControlEvent event{&control, control.index, control.field ? FieldNumber(control.field) : 0.0};
  RunAction(line, control.label.empty() ? control.name : control.label, [&] {
    StoreControl(control);
    if (control.action != nullptr) control.action(event);
  });
  AnnouncePanel(*control.panel);
}

Refusal WhyNotNow(const Control& control) {
  if (Screen.busy > 0 && !control.whileBusy) return RunInProgress;
  return control.dimmed ? IsDimmed : "";
}

Refusal TypeChoice(Control& control, std::string_view text) {
  const auto word = std::find(control.choices.begin(), control.choices.end(), text);
  if (word != control.choices.end()) {
    control.number = control.choiceBase + static_cast<double>(word - control.choices.begin());
    control.typed = true;
    return {};
  }
  const auto value = ParseNumber(text);
  if (!value) return control.choices.empty() ? NotANumber : NotAChoice;
  const double count = control.choices.empty() ? 2.0 : static_cast<double>(control.choices.size());
  if (!std::isfinite(*value)) return NotFinite;
  if (*value != std::trunc(*value) || *value < control.choiceBase || *value >= control.choiceBase + count) {
    return NotAChoice;
  }
  control.number = *value;
  control.typed = true;
  return {};
}

}  // namespace

void ReadControls(std::string_view panelName, std::string_view group) {
  for (Control* control : PanelNamed(panelName).controls) {
    if (control->group == group) StoreControl(*control);
  }
}

void WriteControls(std::string_view panelName, std::string_view group) {
  Panel& panel = PanelNamed(panelName);
  for (Control* control : panel.controls) {
    if (control->group == group) LoadControl(*control);
  }
  UpdateDimming();
  AnnouncePanel(panel);
}

void WriteAllControls() {
  for (Control& control : Screen.controls) LoadControl(control);
  UpdateDimming();
  for (Panel& panel : Screen.panels) AnnouncePanel(panel);
}

void ShowField(std::string_view name) {
  for (Control& control : Screen.controls) {
    if (control.name != name) continue;
    LoadControl(control);
    AnnouncePanel(*control.panel);
  }
}

void StoreTyped(std::string_view name) {
  for (Control& control : Screen.controls) {
    if (control.name != name || !EditsField(control)) continue;
    const std::string former = FieldText(control.field);
    StoreControl(control);
    if (FieldText(control.field) != former) break;
  }
  ShowField(name);
}

void ShowNumber(std::string_view name, double value) {
  Control& control = ControlNamed(name);
  control.number = value;
  if (control.kind == ControlKind::Readout) control.text = FormatNumber(control.format, value);
  AnnouncePanel(*control.panel);
}

void ShowText(std::string_view name, std::string_view text) {
  Control& control = ControlNamed(name);
  control.text = text;
  AnnouncePanel(*control.panel);
}

double ControlNumber(std::string_view name) {
  return ControlNamed(name).number;
}

void SetDimmed(std::string_view name, bool dimmed) {
  ControlNamed(name).dimmed = dimmed;
}

void SetVisible(std::string_view name, bool visible) {
  ControlNamed(name).visible = visible;
}

void SetColour(std::string_view name, std::string_view colour) {
  ControlNamed(name).colour = colour;
}

std::string ShownText(const Control& control) {
  switch (control.kind) {
    case ControlKind::Number:
      return FormatNumber(control.format, control.number);
    case ControlKind::Switch:
    case ControlKind::Choice: {
      const double word = control.number - control.choiceBase;
      if (word >= 0.0 && word < static_cast<double>(control.choices.size())) {
        return control.choices[static_cast<std::size_t>(word)];
      }
      return FormatNumber("%g", control.number);
    }
    case ControlKind::Text:
    case ControlKind::Readout:
      return control.text;
    case ControlKind::Button:
      break;
  }
  return control.label;
}

void UpdateDimming() {
  for (Panel& panel : Screen.panels) {
    for (void (*rule)() : panel.dim) rule();
  }
}

namespace {

Refusal TypeNumber(Control& control, std::string_view text) {
  const auto value = ParseNumber(text);
  if (!value) return NotANumber;
  if (!std::isfinite(*value)) return NotFinite;
  const double stored = control.toStored != nullptr ? control.toStored(*value) : *value;
  if (control.field && !NumberSuits(*control.field.field, stored))
    return WhyNotSuitable(control.field.field->type);
  control.number = *value;
  control.typed = true;
  return {};
}

Refusal TypeText(Control& control, std::string_view text) {
  const int room = control.field ? control.field.field->textBytes : 0;
  control.text = CutToRoom(text.substr(0, text.find_first_of("\r\n")), room);
  return {};
}

Refusal TypeByKind(Control& control, std::string_view text) {
  switch (control.kind) {
    case ControlKind::Number:
      return TypeNumber(control, text);
    case ControlKind::Switch:
    case ControlKind::Choice:
      return TypeChoice(control, text);
    case ControlKind::Text:
      return TypeText(control, text);
    case ControlKind::Button:
    case ControlKind::Readout:
      break;
  }
  return ReadOnly;
}

}  // namespace

Refusal TypeInto(Control& control, std::string_view text) {
  if (control.dimmed) return IsDimmed;
  const Refusal refusal = TypeByKind(control, text);
  if (refusal.empty() && Screen.busy == 0) {
    ObserveDid("set " + QuoteWord(control.name) + ' ' + QuoteWord(text));
  }
  return refusal;
}

Refusal Commit(Control& control) {
  const Refusal refusal = WhyNotNow(control);
  if (refusal.empty()) CommitControl(control, "commit " + QuoteWord(control.name));
  return refusal;
}

Refusal Press(Control& control) {
  const Refusal refusal = WhyNotNow(control);
  if (!refusal.empty()) return refusal;
  if (control.kind == ControlKind::Switch) {
    control.number = control.number == 0.0 ? 1.0 : 0.0;
  } else if (control.kind == ControlKind::Choice) {
    const double count = static_cast<double>(control.choices.size());
    control.number =
        control.number + 1.0 < control.choiceBase + count ? control.number + 1.0 : control.choiceBase;
  }
  control.typed = true;
  CommitControl(control, PressLine(control));
  return {};
}

Refusal PressMenu(MenuItem& item) {
  if (Screen.busy > 0) return RunInProgress;
  if (item.dimmed) return IsDimmed;
  const std::string_view name = std::string_view(item.path).substr(item.path.rfind('/') + 1);
  RunAction("press " + item.command, name.substr(0, name.find("...")), [&] {
    if (item.action != nullptr) item.action();
  });
  return {};
}

Refusal Perform(const std::string& line, const std::function<void()>& action) {
  if (Screen.busy > 0) return RunInProgress;
  RunAction(line, action);
  return {};
}

void TellViewed(const std::string& line) {
  if (Screen.busy > 0)
    ViewedMeanwhile().push_back(line);
  else
    ObserveDid(line);
}

void RightClick(Control& control) {
  if (!control.helpActs) {
    MessagePopup(HelpTitle, control.help);
  } else if (Screen.busy == 0) {
    CommitControl(control, PressLine(control));
  }
}

void ClosePanel(Panel& panel) {
  if (Screen.busy > 0) return;
  RunAction("close " + panel.name, [&] {
    if (panel.close != nullptr)
      panel.close();
    else
      HidePanel(panel.name);
  });
}

void PressKey(Panel& panel, std::string_view key) {
  if (panel.key == nullptr || Screen.busy > 0) return;
  RunAction("key " + panel.name + ' ' + QuoteWord(key), [&] { panel.key(key); });
}

Refusal ClickCell(Table& table, int row, int column) {
  if (Screen.busy > 0) return RunInProgress;
  if (row < 1 || row > table.rows || column < 1 || column > table.columns) return NoSuchCell;
  if (table.clicked == nullptr) return {};
  RunAction(FormatText("click %s %d %d", table.name.c_str(), row, column),
            [&] { table.clicked(table, row, column); });
  return {};
}

Refusal EnterCell(Table& table, int row, int column, std::string_view text) {
  if (!table.editable) return ReadOnly;
  if (Screen.busy > 0) return RunInProgress;
  if (row < 1 || row > table.rows || column < 1 || column > table.columns) return NoSuchCell;
  if (table.numeric) {
    const auto value = ParseNumber(text);
    if (!value) return NotANumber;
    if (!std::isfinite(*value)) return NotFinite;
  }
  const std::string line =
      FormatText("enter-cell %s %d %d ", table.name.c_str(), row, column) + QuoteWord(text);
  RunAction(line, [&] {
    SetCell(table, row, column, text);
    if (table.committed != nullptr) table.committed(table, row, column);
  });
  return {};
}

Refusal MoveCursor(Graph& graph, int cursor, double x, std::optional<double> y) {
  if (cursor < 1 || cursor > static_cast<int>(graph.cursors.size())) return "no such cursor";
  if (!std::isfinite(x) || (y && !std::isfinite(*y))) return NotFinite;
  Cursor& moved = graph.cursors[Index(cursor) - 1];
  if (!moved.enabled) return IsDimmed;
  if (Screen.busy > 0) return RunInProgress;
  const std::string line = FormatText(y ? "cursor %s %d %.17g %.17g" : "cursor %s %d %.17g",
                                      graph.name.c_str(), cursor, x, y.value_or(0.0));
  RunAction(line, [&] {
    moved.x = x;
    if (y) moved.y = *y;
    if (graph.cursorMoved != nullptr) graph.cursorMoved(graph, cursor);
  });
  AnnounceGraph(graph);
  return {};
}

bool RunModalPanel(std::string_view name, std::string_view text) {
  struct Shown {
    Panel& panel;
    explicit Shown(Panel& shown) : panel(shown) { show(true); }
    ~Shown() { show(false); }
    Shown(const Shown&) = delete;
    Shown& operator=(const Shown&) = delete;
    void show(bool visible) const {
      panel.visible = visible;
      AnnouncePanel(panel);
    }
  };
  const Shown shown(PanelNamed(name));
  return AskModal(shown.panel, std::string(text).c_str());
}

}  // namespace zelvane
