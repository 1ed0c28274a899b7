#include "screen/screen.h"

#include <algorithm>
#include <cassert>
#include <cstdio>
#include <cstdlib>
#include <unordered_map>
#include <utility>

#include "platform/index.h"
#include "screen/announce.h"
#include "screen/listeners.h"

namespace zelvane {
namespace {

/// Records by name; the records themselves are in Screen.
struct NameIndex {
  std::unordered_map<std::string, Control*> controls;
  std::unordered_map<std::string, Control*> commands;
};

NameIndex& Names() {
  static NameIndex names;
  return names;
}

template <typename Record>
Record* FindByName(std::deque<Record>& records, std::string_view name) {
  const auto it =
      std::find_if(records.begin(), records.end(), [&](const Record& r) { return r.name == name; });
  return it != records.end() ? &*it : nullptr;
}

template <typename Record>
Record& Existing(Record* record, std::string_view name) {
  if (record == nullptr) {
    std::fprintf(stderr, "zelvane: the screen has no item with the name %.*s\n",
                 static_cast<int>(name.size()), name.data());
    std::abort();
  }
  return *record;
}

/// Returns a declared text with the number of its family in place of %d.
std::string Expanded(const char* pattern, int index) {
  std::string text = pattern;
  for (const std::string_view mark : {"%04d", "%d"}) {
    const std::string number = mark == "%d" ? FormatText("%d", index) : FormatText("%04d", index);
    for (std::size_t at = text.find(mark); at != std::string::npos;
         at = text.find(mark, at + number.size())) {
      text.replace(at, mark.size(), number);
    }
  }
  return text;
}

std::vector<std::string> Words(std::string_view list) {
  std::vector<std::string> words;
  while (!list.empty()) {
    const std::size_t bar = list.find('|');
    words.emplace_back(list.substr(0, bar));
    list = bar == std::string_view::npos ? std::string_view{} : list.substr(bar + 1);
  }
  return words;
}

}  // namespace

Panel& AddPanel(const PanelDecl& decl) {
  assert(FindPanel(decl.name) == nullptr);
  Panel& panel = Screen.panels.emplace_back();
  panel.name = decl.name;
  panel.title = decl.title;
  panel.tag = decl.tag;
  panel.help = decl.help;
  if (decl.dim != nullptr) panel.dim.push_back(decl.dim);
  panel.close = decl.close;
  panel.overTask = decl.overTask;
  panel.key = decl.key;
  return panel;
}

Control& AddControl(std::string_view panelName, std::string_view group, const ControlDecl& decl, int index) {
  Panel& panel = PanelNamed(panelName);
  Control& control = Screen.controls.emplace_back();
  control.name = Expanded(decl.name, index);
  control.panel = &panel;
  control.group = group;
  control.kind = decl.kind;
  control.label = Expanded(decl.label, index);
  control.unit = decl.unit;
  control.format = decl.format;
  control.command = Expanded(decl.command, index);
  control.help = Expanded(decl.help, index);
  control.action = decl.action;
  control.index = index;
  control.choices = Words(decl.choices);
  control.choiceBase = decl.choiceBase;
  control.whileBusy = decl.whileBusy;
  control.helpActs = decl.helpActs;
  control.toShown = decl.toShown;
  control.toStored = decl.toStored;
  control.field = FindField(control.name);
  panel.controls.push_back(&control);
  Names().controls.emplace(control.name, &control);
  if (!control.command.empty()) Names().commands.emplace(control.command, &control);
  return control;
}

void AddControls(std::string_view panel, std::string_view group, std::span<const ControlDecl> decls) {
  for (const ControlDecl& decl : decls) {
    for (int i = decl.first; i <= std::max(decl.first, decl.last); ++i) AddControl(panel, group, decl, i);
  }
}

Graph& AddGraph(std::string_view panelName, std::string_view name, std::string_view xTitle,
                std::string_view yTitle, int cursors) {
  Panel& panel = PanelNamed(panelName);
  Graph& graph = Screen.graphs.emplace_back();
  graph.name = name;
  graph.panel = &panel;
  graph.x.title = xTitle;
  graph.y.title = yTitle;
  graph.cursors.resize(Index(cursors));
  panel.graphs.push_back(&graph);
  return graph;
}

Table& AddTable(std::string_view panelName, std::string_view name, int rows, int columns) {
  Panel& panel = PanelNamed(panelName);
  Table& table = Screen.tables.emplace_back();
  table.name = name;
  table.panel = &panel;
  table.rows = rows;
  table.columns = columns;
  table.cells.resize(Index(rows) * Index(columns));
  panel.tables.push_back(&table);
  return table;
}

TextBox& AddTextBox(std::string_view panelName, std::string_view name) {
  Panel& panel = PanelNamed(panelName);
  TextBox& box = Screen.textBoxes.emplace_back();
  box.name = name;
  box.panel = &panel;
  panel.textBoxes.push_back(&box);
  return box;
}

void AddMenu(std::span<const MenuDecl> decls) {
  for (const MenuDecl& decl : decls) {
    Screen.menu.push_back({decl.path, decl.command, decl.shortcut, decl.action, false});
  }
}

void ClearScreen() {
  Screen = ScreenStore{};
  Names() = NameIndex{};
  RemoveListeners();
}

Panel* FindPanel(std::string_view name) {
  return FindByName(Screen.panels, name);
}
Graph* FindGraph(std::string_view name) {
  return FindByName(Screen.graphs, name);
}
Table* FindTable(std::string_view name) {
  return FindByName(Screen.tables, name);
}
TextBox* FindTextBox(std::string_view name) {
  return FindByName(Screen.textBoxes, name);
}

Control* FindControl(std::string_view name) {
  auto it = Names().controls.find(std::string(name));
  if (it == Names().controls.end()) it = Names().controls.find(std::string(MeantName(name)));
  return it != Names().controls.end() ? it->second : nullptr;
}

Control* FindCommand(std::string_view command) {
  const auto it = Names().commands.find(std::string(command));
  return it != Names().commands.end() ? it->second : nullptr;
}

void AnswerCommand(Control& control) {
  Names().commands[control.command] = &control;
}

MenuItem* FindMenu(std::string_view command) {
  const auto it = std::find_if(Screen.menu.begin(), Screen.menu.end(),
                               [&](const MenuItem& item) { return item.command == command; });
  return it != Screen.menu.end() ? &*it : nullptr;
}

Panel& PanelNamed(std::string_view name) {
  return Existing(FindPanel(name), name);
}
Control& ControlNamed(std::string_view name) {
  return Existing(FindControl(name), name);
}
Graph& GraphNamed(std::string_view name) {
  return Existing(FindGraph(name), name);
}
Table& TableNamed(std::string_view name) {
  return Existing(FindTable(name), name);
}
TextBox& TextBoxNamed(std::string_view name) {
  return Existing(FindTextBox(name), name);
}

void ShowPanel(std::string_view name) {
  Panel& panel = PanelNamed(name);
  panel.visible = true;
  AnnouncePanel(panel);
}

void HidePanel(std::string_view name) {
  Panel& panel = PanelNamed(name);
  panel.visible = false;
  AnnouncePanel(panel);
}

bool PanelVisible(std::string_view name) {
  return PanelNamed(name).visible;
}

void PrintPanel(std::string_view name) {
  AnnouncePrint(PanelNamed(name));
}

void ShowTask(std::string_view name) {
  const Panel& front = PanelNamed(name);
  for (Panel& panel : Screen.panels) {
    if ((panel.tag.empty() && !panel.overTask) || &panel == &front || !panel.visible) continue;
    panel.visible = false;
    AnnouncePanel(panel);
  }
  if (Screen.PanelTag != front.tag) Screen.PreviousPanelTag = Screen.PanelTag;
  Screen.PanelTag = front.tag;
  ShowPanel(name);
}

void LeaveTask(std::string_view name) {
  HidePanel(name);
  if (Screen.PanelTag != PanelNamed(name).tag) return;
  const std::string former = std::exchange(Screen.PreviousPanelTag, PanelNamed(MainPanelName).tag);
  const auto panel = std::find_if(Screen.panels.begin(), Screen.panels.end(),
                                  [&](const Panel& task) { return !task.tag.empty() && task.tag == former; });
  if (panel == Screen.panels.end()) return;
  Screen.PanelTag = former;  // the way back is gone, so a second Done does not return to this task
  ShowTask(panel->name);
}

}  // namespace zelvane
