// The toolkit-neutral screen: plain records of all that a user sees, and the one dispatcher of what a user
// does.
//
//   Declaring            AddPanel  AddControls  AddGraph  AddTable  AddTextBox  AddMenu
//   Panels               ShowPanel  HidePanel  ShowTask  RunModalPanel
//   Controls             FindControl  FindCommand  ReadControls  WriteControls  ShowField  TakeTyped
//                        ShowNumber  ShowText  SetDimmed
//   What a user does     TypeInto  Commit  RightClick  ClosePanel  PressKey  MoveCursor  EnterCell  ClickCell
//   Graphs               ClearPlots  PlotWave  PlotPoints  SetAxisTitle  SetAxisRange  SetAxisAuto
//   Tables, text boxes   SetCell  CellText  MarkRow  ScrollTable  InsertLine  ClearLines
//
// A control holds what the panel shows, apart from its store: a typed value reaches the store when the
// control is committed or when a command reads its panel (ReadControls). Only panel files may use this
// header; computations use popups.h.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <limits>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "screen/fields.h"
#include "screen/listeners.h"
#include "screen/popups.h"

namespace zelvane {

enum class ControlKind { Number, Switch, Choice, Text, Button, Readout };

struct Control;
struct Panel;
struct Table;

/// What an action is told of the commit that runs it.
struct ControlEvent {
  Control* control = nullptr;  // nullptr for a menu command
  int index = 0;               // the number that %d stood for in the declaration, 0 without one
  double previous = 0.0;       // number in the store before this commit
};
using Action = void (*)(const ControlEvent&);

/// A row of a panel's table of controls. One row can stand for a family: %d in name, label, command and help
/// then runs from `first` to `last`, and reaches the action as event.index. %04d likewise. A control whose
/// name is a registered field edits that field: a commit stores the value before the action runs.
struct ControlDecl {
  const char* name = "";
  ControlKind kind = ControlKind::Number;
  const char* label = "";
  const char* unit = "";
  const char* format = "%g";  // how a number is shown; it never decides what is stored
  const char* command = "";   // name of the callback
  Action action = nullptr;
  const char* help = "";  // shown on a right click under "? Help"
  int first = 0;
  int last = 0;
  const char* choices = "";  // words of a Choice, or of a Switch's two positions, split by '|'
  int choiceBase = 0;        // value of the first word
  bool whileBusy = false;    // may act while a run has the stores in use (the stop button)
  bool helpActs = false;     // a right click runs the action too: buttons that ask whether to open the help
  double (*toShown)(double stored) = nullptr;  // a field shown in another unit than its store's
  double (*toStored)(double shown) = nullptr;  // and back; only a value that the user typed is taken
};

/// A control as the user sees it.
struct Control {
  std::string name;
  Panel* panel = nullptr;
  std::string group;
  ControlKind kind = ControlKind::Number;
  std::string label;
  std::string unit;
  std::string format;
  std::string command;
  std::string help;
  Action action = nullptr;
  int index = 0;
  std::vector<std::string> choices;
  int choiceBase = 0;
  bool whileBusy = false;
  bool helpActs = false;
  double (*toShown)(double stored) = nullptr;
  double (*toStored)(double shown) = nullptr;
  bool typed = false;   // holds a value that the user typed and no command has read yet
  FieldRef field;       // empty for a control of its own
  double number = 0.0;  // value of a Number, Switch or Choice
  std::string text;     // value of a Text or Readout
  bool dimmed = false;
  bool visible = true;
  std::string colour;  // "" = the panel's own
};

enum class PlotStyle { Line, Stair, Points, Cross, Dashed };

struct Colour {
  int red = 0;
  int green = 0;
  int blue = 0;
};
inline constexpr Colour Black{0, 0, 0};
inline constexpr Colour DarkBlue{0, 0, 128};
inline constexpr Colour DarkRed{128, 0, 0};

/// From a smallest to a largest coordinate.
struct DataRange {
  double min = 0.0;
  double max = 0.0;
};

/// One plot with its own copy of the data. Evenly sampled: x is empty and sample i stands at start + i x
/// step. PlotWave and PlotPoints fill all of it.
struct Plot {
  PlotStyle style = PlotStyle::Line;
  Colour colour;
  double start = 0.0;
  double step = 1.0;
  std::vector<double> x;
  std::vector<float> y;
  std::optional<DataRange> xRange;  // of the finite coordinates; nothing without one
  std::optional<DataRange> yRange;
};

struct Axis {
  std::string title;
  bool automatic = true;
  double min = 0.0;
  double max = 1.0;
  bool log = false;
  int decimals = -1;  // of the numbers along the axis; -1 = as they come
  double gain = 1.0;  // the numbers along the axis are coordinate x gain: samples shown as times
};

struct Cursor {
  double x = 0.0;
  double y = 0.0;
  bool enabled = true;
  Colour colour;
};

struct Graph {
  std::string name;
  Panel* panel = nullptr;
  std::vector<Plot> plots;
  Axis x;
  Axis y;
  std::vector<Cursor> cursors;  // cursor 1 is element 0
  void (*cursorMoved)(Graph&, int cursor) = nullptr;
  bool zooms = false;  // has strips, bars and span buttons: zoom_graph.h
  double fullXMin = 0.0, fullXMax = 1.0;
  double fullYMin = 0.0, fullYMax = 1.0;
  void (*axisChanged)(Graph&) = nullptr;
  std::uint64_t revision = 0;  // rises with every change of the plots
};

struct Table {
  std::string name;
  Panel* panel = nullptr;
  int rows = 0;
  int columns = 0;
  std::vector<std::string> rowTitles;
  std::vector<std::string> columnTitles;
  std::vector<std::string> cells;  // row after row
  bool editable = false;
  bool numeric = true;  // a typed cell must be a number
  std::string command;  // name of the callback of a cell's commit
  std::string help;
  void (*committed)(Table&, int row, int column) = nullptr;
  void (*clicked)(Table&, int row, int column) = nullptr;  // a click or double click on a cell
  int markedRow = 0;                                       // shown in colour; 0 = none
  int topRow = 1;                                          // first row and column in view
  int leftColumn = 1;
};

struct TextBox {
  std::string name;
  Panel* panel = nullptr;
  std::vector<std::string> lines;
};

/// A panel's declaration.
struct PanelDecl {
  const char* name = "";
  const char* title = "";
  const char* tag = "";       // task in front while it shows; "" for an auxiliary panel
  void (*dim)() = nullptr;    // sets dimming from the stores; runs after every commit and every read
  void (*close)() = nullptr;  // the user closes the panel; without one it is hidden
  void (*key)(std::string_view) = nullptr;
  const char* help = "";  // what the panel is for
};

struct Panel {
  std::string name;
  std::string title;
  std::string tag;
  std::string help;
  bool visible = false;
  bool maximised = false;
  std::vector<void (*)()> dim;  // each folder that adds controls may add a rule
  void (*close)() = nullptr;
  void (*key)(std::string_view) = nullptr;
  std::vector<Control*> controls;
  std::vector<Graph*> graphs;
  std::vector<Table*> tables;
  std::vector<TextBox*> textBoxes;
};

/// A menu command. The path names its place: "File/Read Parameters...".
struct MenuDecl {
  const char* path = "";
  const char* command = "";
  void (*action)() = nullptr;
  const char* shortcut = "";
};

struct MenuItem {
  std::string path;
  std::string command;
  std::string shortcut;
  void (*action)() = nullptr;
  bool dimmed = false;
};

/// All that is on the screen. Records keep their addresses until the process ends.
struct ScreenStore {
  std::deque<Panel> panels;
  std::deque<Control> controls;
  std::deque<Graph> graphs;
  std::deque<Table> tables;
  std::deque<TextBox> textBoxes;
  std::deque<MenuItem> menu;
  std::string PanelTag;  // task in front
  std::string PreviousPanelTag;
  int busy = 0;  // above 0 while a command runs
  bool quit = false;
};
inline ScreenStore Screen;

// -- Declaring --

/// Adds a panel, hidden. A name may be added once.
Panel& AddPanel(const PanelDecl& decl);

/// Adds controls to a panel; `group` names what ReadControls and WriteControls take together.
void AddControls(std::string_view panel, std::string_view group, std::span<const ControlDecl> decls);

/// Adds one control built by hand (families with two indices). Returns it for further settings.
Control& AddControl(std::string_view panel, std::string_view group, const ControlDecl& decl, int index = 0);

Graph& AddGraph(std::string_view panel, std::string_view name, std::string_view xTitle,
                std::string_view yTitle, int cursors = 0);
Table& AddTable(std::string_view panel, std::string_view name, int rows, int columns);
TextBox& AddTextBox(std::string_view panel, std::string_view name);
void AddMenu(std::span<const MenuDecl> decls);

/// Takes everything off the screen again; start-up and tests call it.
void ClearScreen();

// -- Finding. Nullptr when there is none; the ...Named forms end the program on a name that no code declared
// --

Panel* FindPanel(std::string_view name);
Control* FindControl(std::string_view name);
Control* FindCommand(std::string_view command);
MenuItem* FindMenu(std::string_view command);
Graph* FindGraph(std::string_view name);
Table* FindTable(std::string_view name);
TextBox* FindTextBox(std::string_view name);
Panel& PanelNamed(std::string_view name);
Control& ControlNamed(std::string_view name);
Graph& GraphNamed(std::string_view name);
Table& TableNamed(std::string_view name);
TextBox& TextBoxNamed(std::string_view name);

// -- Panels --

void ShowPanel(std::string_view name);
void HidePanel(std::string_view name);
bool PanelVisible(std::string_view name);

/// Hides the panels of the other tasks, shows this one and puts its tag in front (the former goes to
/// PreviousPanelTag).
void ShowTask(std::string_view panel);

/// Hides a task panel and puts PreviousPanelTag back in front.
void LeaveTask(std::string_view panel);

/// Shows a panel modally with a message. True when the user leaves it with ok; typed values stand in its
/// controls.
bool RunModalPanel(std::string_view name, std::string_view text);

// -- Controls --

/// Stores what the controls of a group show in the fields they edit. Runs nothing.
void ReadControls(std::string_view panel, std::string_view group);

/// Shows the fields in the controls of a group that edit them.
void WriteControls(std::string_view panel, std::string_view group);

/// Shows the fields in every control on the screen that edits one.
void WriteAllControls();

/// Interval, points or units of a run came from a file: titles and axes that follow them are to be shown.
inline Listeners<> RunSettingsReplaced;

// A field can have a control on several panels, all under its name.

/// Shows a field in every control that edits it.
void ShowField(std::string_view name);

/// Stores what the user typed into whichever control of a field shows another value than the field holds, the
/// first of them, and shows it in the others.
void TakeTyped(std::string_view name);

void ShowNumber(std::string_view control, double value);
void ShowText(std::string_view control, std::string_view text);
double ControlNumber(std::string_view control);
void SetDimmed(std::string_view control, bool dimmed);
void SetVisible(std::string_view control, bool visible);
void SetColour(std::string_view control, std::string_view colour);

/// What the control shows: the number through its format, the text, or the word of a choice.
std::string ShownText(const Control& control);

/// Runs the dimming rules of all panels.
void UpdateDimming();

// -- What a user does --

/// Why a typed value was refused; empty when it was taken.
using Refusal = std::string;

/// The user types into a control, without a commit. A Choice or Switch takes a word or a number that it
/// offers.
Refusal TypeInto(Control& control, std::string_view text);

/// Commit event: stores the value in the field it edits, runs the action, then the dimming rules. While
/// another command runs only controls marked whileBusy act, as does one that is dimmed: the refusal says so.
Refusal Commit(Control& control);

/// A press: a switch flips and a choice steps on before the commit; anything else is committed as it stands.
Refusal Press(Control& control);
Refusal PressMenu(MenuItem& item);

/// An action of the user that no control stands for, such as dropping a file on the window; `line` repeats it
/// in the command language. Refused while another command runs.
Refusal Perform(const std::string& line, const std::function<void()>& action);

/// Tells observers of a change of a graph's view, which no dispatcher holds back: while a command runs they
/// are told once it has ended. `line` repeats the change.
void TellViewed(const std::string& line);

/// Right click: shows the control's help under "? Help" and does nothing else. A help button acts as on a
/// commit.
void RightClick(Control& control);

void ClosePanel(Panel& panel);
void PressKey(Panel& panel, std::string_view key);
Refusal EnterCell(Table& table, int row, int column, std::string_view text);

/// A click or double click on a cell.
Refusal ClickCell(Table& table, int row, int column);
Refusal MoveCursor(Graph& graph, int cursor, double x, std::optional<double> y);

// -- Graphs --

void ClearPlots(Graph& graph);

/// Removes all plots but the first `count`.
void KeepPlots(Graph& graph, std::size_t count);
void PlotWave(Graph& graph, PlotStyle style, Colour colour, std::span<const float> y, double start,
              double step);
void PlotPoints(Graph& graph, PlotStyle style, Colour colour, std::span<const double> x,
                std::span<const float> y);
void SetAxisTitle(Graph& graph, char axis, std::string_view title);
void SetAxisRange(Graph& graph, char axis, double min, double max);
void SetAxisAuto(Graph& graph, char axis);
void SetAxisLog(Graph& graph, char axis, bool log);

/// Smallest and largest finite coordinate, of one plot and over all plots; nothing without one.
std::optional<DataRange> PlotRange(const Plot& plot, char axis);
std::optional<DataRange> DataRangeOf(const Graph& graph, char axis);

/// The range in force: the axis' own when fixed, else that of the data.
DataRange ViewRange(const Graph& graph, char axis);

// -- Tables and text boxes. Rows and columns count from 1 --

void SetCell(Table& table, int row, int column, std::string_view text);

/// Marks a row as the current one, in place of any other; 0 marks none.
void MarkRow(Table& table, int row);

/// Scrolls a table so that its view begins with that row and column.
void ScrollTable(Table& table, int topRow, int leftColumn);
const std::string& CellText(const Table& table, int row, int column);
void InsertLine(TextBox& box, std::string_view line);
void ClearLines(TextBox& box);

}  // namespace zelvane
