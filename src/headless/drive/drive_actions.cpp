// Commands of the language for actions of a user: type, press, answer, drag.
#include <cmath>

#include "app/application.h"
#include "headless/drive/drive_session.h"
#include "headless/nearest_names.h"
#include "headless/words.h"
#include "screen/zoom_graph.h"

namespace zelvane {
namespace {

constexpr char NotOpen[] = "not open";

std::vector<std::string> ControlNames() {
  std::vector<std::string> names;
  for (const Control& control : Screen.controls) names.push_back(control.name);
  return names;
}

std::vector<std::string> CallbackNames() {
  std::vector<std::string> names;
  for (const Control& control : Screen.controls) {
    if (!control.command.empty()) names.push_back(control.command);
  }
  for (const MenuItem& item : Screen.menu) names.push_back(item.command);
  return names;
}

template <typename Record>
std::vector<std::string> NamesOf(const std::deque<Record>& records) {
  std::vector<std::string> names;
  for (const Record& record : records) names.push_back(record.name);
  return names;
}

Control* KnownControl(DriveSession& session, const std::string& name) {
  Control* control = FindControl(name);
  if (control == nullptr) WriteUnknownName(session, "control", name, ControlNames());
  return control;
}

Panel* KnownPanel(DriveSession& session, const std::string& name) {
  Panel* panel = FindPanel(name);
  if (panel == nullptr) WriteUnknownName(session, "panel", name, NamesOf(Screen.panels));
  return panel;
}

Graph* KnownGraph(DriveSession& session, const std::string& name) {
  Graph* graph = FindGraph(name);
  if (graph == nullptr) WriteUnknownName(session, "graph", name, NamesOf(Screen.graphs));
  return graph;
}

/// Returns a graph that has strips and bars; on failure writes a message and returns nullptr.
Graph* ZoomGraphNamed(DriveSession& session, const std::string& name) {
  Graph* graph = KnownGraph(session, name);
  if (graph != nullptr && !graph->zooms) {
    WriteRefusal(session, name + ": no zoom strips on this graph");
    return nullptr;
  }
  return graph;
}

/// Returns 'x' or 'y'; on failure writes a message and returns 0.
char AxisLetter(DriveSession& session, const std::string& word) {
  if (word == "x" || word == "y") return word[0];
  WriteMisunderstood(session, "no axis (x or y): " + Shortened(word));
  return '\0';
}

/// Returns a finite number; on failure writes a message and returns nullopt.
std::optional<double> ReadFiniteNumber(DriveSession& session, const std::string& word) {
  const std::optional<double> value = ParseNumber(word);
  if (value && std::isfinite(*value)) return value;
  WriteMisunderstood(session, "not a finite number: " + Shortened(word));
  return std::nullopt;
}

std::optional<int> ReadWholeNumber(DriveSession& session, const std::string& word) {
  const std::optional<int> value = WholeNumber(word);
  if (!value) WriteMisunderstood(session, "not a whole number: " + Shortened(word));
  return value;
}

void WriteIfRefused(DriveSession& session, const std::string& name, const Refusal& refusal) {
  if (!refusal.empty()) WriteRefusal(session, name + ": " + refusal);
}

// -- Controls --

/// Types into a control. Returns false when the control refuses.
bool TypeWord(DriveSession& session, Control& control, const std::string& value) {
  const Refusal refusal = TypeInto(control, value);
  WriteIfRefused(session, control.name, refusal);
  return refusal.empty();
}

void Set(DriveSession& session, Words words) {
  if (Control* control = KnownControl(session, words[0])) TypeWord(session, *control, words[1]);
}

void CommitNamed(DriveSession& session, Words words) {
  if (Control* control = KnownControl(session, words[0])) {
    WriteIfRefused(session, control->name, Commit(*control));
  }
}

void Enter(DriveSession& session, Words words) {
  Control* control = KnownControl(session, words[0]);
  if (control == nullptr || !TypeWord(session, *control, words[1])) return;
  WriteIfRefused(session, control->name, Commit(*control));
}

void PressWord(DriveSession& session, Words words) {
  PressNamed(session, words[0]);
}

/// Shows the help of a table, as a right click on a control does, or of a panel.
bool HelpOfRecord(const std::string& name) {
  for (const Table& table : Screen.tables) {
    if (table.name != name && (table.command.empty() || table.command != name)) continue;
    MessagePopup(HelpTitle, table.help);
    return true;
  }
  const Panel* panel = FindPanel(name);
  if (panel != nullptr) MessagePopup(HelpTitle, panel->help);
  return panel != nullptr;
}

void Help(DriveSession& session, Words words) {
  const std::string& name = words[0];
  Control* control = FindCommand(name);
  if (control == nullptr && FindMenu(name) != nullptr) {
    WriteRefusal(session, name + ": a menu command has no help text");
    return;
  }
  if (control == nullptr) control = FindControl(name);
  if (control != nullptr)
    RightClick(*control);
  else if (!HelpOfRecord(name))
    WriteUnknownName(session, "callback", name, CallbackNames());
}

// -- Panels and tables --

void Close(DriveSession& session, Words words) {
  Panel* panel = KnownPanel(session, words[0]);
  if (panel == nullptr) return;
  if (panel->visible)
    ClosePanel(*panel);
  else
    WriteRefusal(session, panel->name + ": " + NotOpen);
}

void Key(DriveSession& session, Words words) {
  if (Panel* panel = KnownPanel(session, words[0])) PressKey(*panel, words[1]);
}

void Click(DriveSession& session, Words words) {
  Table* table = FindTable(words[0]);
  if (table == nullptr) {
    WriteUnknownName(session, "table", words[0], NamesOf(Screen.tables));
    return;
  }
  const auto row = ReadWholeNumber(session, words[1]);
  const auto column = ReadWholeNumber(session, words[2]);
  if (row && column) WriteIfRefused(session, table->name, ClickCell(*table, *row, *column));
}

// -- Graphs --

void MoveCursorTo(DriveSession& session, Words words) {
  Graph* graph = KnownGraph(session, words[0]);
  if (graph == nullptr) return;
  const auto number = ReadWholeNumber(session, words[1]);
  const auto x = ReadFiniteNumber(session, words[2]);
  if (!number || !x) return;
  std::optional<double> y;
  if (words.size() > 3 && !(y = ReadFiniteNumber(session, words[3]))) return;
  if (*number < 1 || *number > static_cast<int>(graph->cursors.size())) {
    WriteMisunderstood(session, graph->name + ": no such cursor: " + words[1]);
    return;
  }
  WriteIfRefused(session, graph->name + " cursor " + words[1], MoveCursor(*graph, *number, *x, y));
}

void Strip(DriveSession& session, Words words) {
  Graph* graph = ZoomGraphNamed(session, words[0]);
  if (graph == nullptr) return;
  const char axis = AxisLetter(session, words[1]);
  if (axis == '\0') return;
  const auto a = ReadFiniteNumber(session, words[2]);
  const auto b = ReadFiniteNumber(session, words[3]);
  if (a && b) ZoomStrip(*graph, axis, *a, *b);
}

void Zoom(DriveSession& session, Words words) {
  Graph* graph = ZoomGraphNamed(session, words[0]);
  if (graph == nullptr || ZoomButton(*graph, words[1])) return;
  WriteUnknownName(session, "zoom button", words[1],
                   {"xexpand", "xcontract", "yexpand", "ycontract", "left", "right", "up", "down"});
}

/// Handles `view GRAPH all`, and `view` with an axis and its range.
void View(DriveSession& session, Words words) {
  Graph* graph = KnownGraph(session, words[0]);
  if (graph == nullptr) return;
  if (words.size() == 2 && words[1] == "all") {
    ZoomFullScale(*graph);
    return;
  }
  const char axis = AxisLetter(session, words[1]);
  if (axis == '\0') return;
  if (words.size() != 4) {
    WriteMisunderstood(session, "view: give a smallest and a largest coordinate");
    return;
  }
  const auto min = ReadFiniteNumber(session, words[2]);
  const auto max = ReadFiniteNumber(session, words[3]);
  if (min && max && !ZoomView(*graph, axis, *min, *max)) {
    WriteRefusal(session, graph->name + ": the smallest coordinate is not below the largest");
  }
}

void ThumbDrag(DriveSession& session, Words words) {
  Graph* graph = ZoomGraphNamed(session, words[0]);
  if (graph == nullptr) return;
  const char axis = AxisLetter(session, words[1]);
  if (axis == '\0') return;
  if (const auto pixels = ReadFiniteNumber(session, words[2])) ZoomThumb(*graph, axis, *pixels);
}

void Page(DriveSession& session, Words words) {
  Graph* graph = ZoomGraphNamed(session, words[0]);
  if (graph == nullptr) return;
  const char axis = AxisLetter(session, words[1]);
  if (axis == '\0') return;
  if (const auto pages = ReadWholeNumber(session, words[2])) ZoomPage(*graph, axis, *pages);
}

void Open(DriveSession&, Words words) {
  OpenFileByName(words[0]);
}

void AddToFit(DriveSession&, Words words) {
  AddFilesToFit(words);
}

// -- Queues --

void Answer(DriveSession& session, Words words) {
  if (words[0] == "yes" || words[0] == "no")
    session.answers.push_back(words[0] == "yes");
  else
    WriteMisunderstood(session, "no answer (yes or no): " + Shortened(words[0]));
}

void Choose(DriveSession& session, Words words) {
  if (words.size() == 1 && words[0] == "cancel")
    session.choices.emplace_back();
  else
    session.choices.emplace_back(words.begin(), words.end());
}

void Reply(DriveSession& session, Words words) {
  DialogReply reply;
  if (words.size() % 2 == 1) {
    const std::string& last = words.back();
    if (last != "ok" && last != "cancel") {
      WriteMisunderstood(session, "reply: a field without a value: " + Shortened(last));
      return;
    }
    reply.accept = last == "ok";
  }
  for (std::size_t i = 0; i + 1 < words.size(); i += 2) reply.fields.emplace_back(words[i], words[i + 1]);
  session.replies.push_back(std::move(reply));
}

void During(DriveSession& session, Words words) {
  const auto moment = ReadWholeNumber(session, words[0]);
  if (!moment) return;
  if (*moment < 1 || words[1] != "press") {
    WriteMisunderstood(session, "during: N counts from 1, and the action must be press");
    return;
  }
  const std::string& name = words[2];
  if (FindCommand(name) == nullptr && FindMenu(name) == nullptr && FindControl(name) == nullptr) {
    WriteUnknownName(session, "callback", name, CallbackNames());
    return;
  }
  session.presses.push_back({*moment, name});
}

void Quit(DriveSession& session, Words) {
  session.ended = true;
}

// clang-format off
constexpr DriveCommand Actions[] = {
    // command     words         usage                                    does
    {"set",        2, 2,         "set NAME VALUE",                        Set},
    {"commit",     1, 1,         "commit NAME",                           CommitNamed},
    {"enter",      2, 2,         "enter NAME VALUE",                      Enter},
    {"press",      1, 1,         "press CALLBACK",                        PressWord},
    {"help",       1, 1,         "help CALLBACK",                         Help},
    {"close",      1, 1,         "close PANEL",                           Close},
    {"add",        1, AnyNumber, "add PATH...",                           AddToFit},
    {"open",       1, 1,         "open PATH",                             Open},
    {"key",        2, 2,         "key PANEL KEY",                         Key},
    {"cursor",     3, 4,         "cursor GRAPH N X [Y]",                  MoveCursorTo},
    {"strip",      4, 4,         "strip GRAPH x|y A B",                   Strip},
    {"zoom",       2, 2,         "zoom GRAPH BUTTON",                     Zoom},
    {"view",       2, 4,         "view GRAPH x|y MIN MAX | view GRAPH all", View},
    {"thumb",      3, 3,         "thumb GRAPH x|y D",                     ThumbDrag},
    {"page",       3, 3,         "page GRAPH x|y D",                      Page},
    {"answer",     1, 1,         "answer yes|no",                         Answer, true},
    {"choose",     1, AnyNumber, "choose PATH... | choose cancel",        Choose, true},
    {"reply",      1, AnyNumber, "reply [FIELD VALUE]... ok|cancel",      Reply,  true},
    {"during",     3, 3,         "during N press CALLBACK",               During, true},
    {"click",      3, 3,         "click TABLE ROW COLUMN",                Click},
    {"quit",       0, 0,         "quit",                                  Quit},
};
// clang-format on

}  // namespace

void PressNamed(DriveSession& session, const std::string& name) {
  Refusal refusal;
  if (Control* command = FindCommand(name)) {
    refusal = Press(*command);
  } else if (MenuItem* item = FindMenu(name)) {
    refusal = PressMenu(*item);
  } else if (Control* control = FindControl(name)) {
    refusal = Press(*control);
  } else {
    WriteUnknownName(session, "callback", name, CallbackNames());
    return;
  }
  WriteIfRefused(session, name, refusal);
}

std::span<const DriveCommand> ActionCommands() {
  return Actions;
}

}  // namespace zelvane
