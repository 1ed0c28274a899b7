// The screen without a toolkit: plain records of everything that a user sees, and the one dispatcher of all
// actions of the user.
//
//   Declaring            AddPanel  AddControls  AddGraph  AddTable  AddTextBox  AddMenu
//   Panels               ShowPanel  HidePanel  ShowTask  RunModalPanel
//   Controls             FindControl  FindCommand  ReadControls  WriteControls  ShowField  StoreTyped
//                        ShowNumber  ShowText  SetDimmed
//   Actions of the user  TypeInto  Commit  RightClick  ClosePanel  PressKey  MoveCursor  EnterCell  ClickCell
//   Graphs               ClearPlots  PlotWave  PlotPoints  SetAxisTitle  SetAxisRange  SetAxisAuto
//   Tables, text boxes   SetCell  CellText  MarkRow  ScrollTable  InsertLine  ClearLines  LinesOf  TellLinesChanged
//
// A control holds the shown value; the store holds its own. A typed value reaches the store when the user
// commits the control, or when a command reads its panel (ReadControls). Only panel files may use this
// header. Computations use popups.h.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "screen/fields.h"
#include "screen/popups.h"

namespace zelvane {

/// The first panel: scheme, run and trace. Other subjects add controls and buttons to it.
inline constexpr char MainPanelName[] = "MainPanel";

enum class ControlKind { Number, Switch, Choice, Text, Button, Readout };

struct Control;
struct Panel;
struct Table;

/// Describes the commit that runs an action.
struct ControlEvent {
  Control* control = nullptr;  // nullptr for a menu command
  int index = 0;               // the number in place of %d in the declaration; 0 without %d
  double previous = 0.0;       // number in the store before this commit
};
using Action = void (*)(const ControlEvent&);

/// Runs an operation without an event as the action of a control or menu. The operation shows its own
/// outcome.
template <auto Operation>
void Run(const ControlEvent& /*event*/) {
  static_cast<void>(Operation());
}
template <auto Operation>
void Run() {
  static_cast<void>(Operation());
}

/// A row of a panel's table of controls. One row can declare a family: %d (or %04d) in name, label, command
/// and help runs from `first` to `last`, and the action gets it as event.index. If the name of a control is
/// a registered field, the control edits this field: a commit stores the value, then runs the action.
struct ControlDecl {
  const char* name = "";
  ControlKind kind = ControlKind::Number;
  const char* label = "";
  const char* unit = "";
  const char* format = "%g";  // how a number is shown; it does not change the stored value
  const char* command = "";   // name of the callback
  Action action = nullptr;
  const char* help = "";  // shown on a right click under "? Help"
  int first = 0;
  int last = 0;
  const char* choices = "";  // words of a Choice, or of the two positions of a Switch, separated by '|'
  int choiceBase = 0;        // value of the first word
  bool whileBusy = false;    // may act while a run uses the stores (the stop button)
  bool helpActs = false;     // a right click also runs the action: for buttons that offer to open the help
  double (*toShown)(double stored) = nullptr;  // for a field that is shown in another unit than its store's
  double (*toStored)(double shown) = nullptr;  // the inverse; used only for a value that the user typed
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
  bool typed = false;   // the user has typed a value, and no command has read it yet
  FieldRef field;       // empty for a control without a field
  double number = 0.0;  // value of a Number, Switch or Choice
  std::string text;     // value of a Text or Readout
  bool dimmed = false;
  std::string whyDimmed;  // one sentence for the tool tip; "" = plain from the panel
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

/// One plot with its own copy of the data. An evenly sampled plot has an empty x, and sample i is at
/// start + i x step. PlotWave and PlotPoints fill all fields.
struct Plot {
  PlotStyle style = PlotStyle::Line;
  Colour colour;
  double start = 0.0;
  double step = 1.0;
  std::vector<double> x;
  std::vector<float> y;
  std::optional<DataRange> xRange;  // of the finite coordinates; empty if no coordinate is finite
  std::optional<DataRange> yRange;
  bool faint = false;  // one of many behind a curve: its colour is nearly that of the ground
};

struct Axis {
  std::string title;
  bool automatic = true;
  double min = 0.0;
  double max = 1.0;
  bool log = false;
  int decimals = -1;  // of the numbers along the axis; -1 = automatic
  double gain = 1.0;  // a number along the axis is coordinate x gain: shows samples as times
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
  void (*cursorDragged)(Graph&, int cursor, double x) = nullptr;  // the mouse holds it at x; the record waits
  int areaCursor = 0;  // while the user chooses an area: the cursor of a corner; the next is opposite
  const char* areaCommand = "";  // a click beside the plot presses it, and so ends the choice of an area
  bool zooms = false;            // has strips, bars and span buttons: zoom_graph.h
  double fullXMin = 0.0, fullXMax = 1.0;
  double fullYMin = 0.0, fullYMax = 1.0;
  void (*axisChanged)(Graph&) = nullptr;
  std::uint64_t revision = 0;  // increases with every change of the plots
  bool draft = false;          // the plots change many times a second: lines are thin and not smoothed
};

struct Table {
  std::string name;
  Panel* panel = nullptr;
  int rows = 0;
  int columns = 0;
  std::vector<std::string> rowTitles;
  std::vector<std::string> columnTitles;
  std::vector<std::string> cells;  // row after row; unused with `made`
  bool editable = false;
  bool numeric = true;  // a typed cell must be a number
  std::string command;  // name of the callback of a cell's commit
  std::string help;
  void (*committed)(Table&, int row, int column) = nullptr;
  void (*clicked)(Table&, int row, int column) = nullptr;  // a click or double click on a cell
  std::string (*made)(int row, int column) = nullptr;      // makes the text of a cell when it is looked at
  std::string (*doubt)(int row, int column) = nullptr;     // why a cell shows in grey; empty = it does not
  int markedRow = 0;                                       // shown in colour; 0 = none
  int topRow = 1;                                          // first row and column in view
  int leftColumn = 1;
};

struct TextBox {
  std::string name;
  Panel* panel = nullptr;
  std::vector<std::string> lines;
  void (*renew)(TextBox&) = nullptr;  // brings the lines up to date when somebody looks at them
};

/// A panel's declaration.
struct PanelDecl {
  const char* name = "";
  const char* title = "";
  const char* tag = "";       // its task; "" for an auxiliary panel
  void (*dim)() = nullptr;    // sets the dimming from the stores; runs after every commit and every read
  void (*close)() = nullptr;  // runs when the user closes the panel; nullptr = the panel is hidden
  void (*key)(std::string_view) = nullptr;
  const char* help = "";  // describes the panel
  bool overTask =
      false;  // a page that keeps the tag of the task before it; a task that comes to the front hides it
};

struct Panel {
  std::string name;
  std::string title;
  std::string tag;
  std::string help;
  bool visible = false;
  bool maximised = false;
  bool overTask = false;
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

/// Everything on the screen. Records keep their addresses until the process ends.
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

/// Adds controls to a panel. ReadControls and WriteControls handle all controls of a `group` together.
void AddControls(std::string_view panel, std::string_view group, std::span<const ControlDecl> decls);

/// Adds one control and returns it for further settings. For families with two indices.
Control& AddControl(std::string_view panel, std::string_view group, const ControlDecl& decl, int index = 0);

Graph& AddGraph(std::string_view panel, std::string_view name, std::string_view xTitle,
                std::string_view yTitle, int cursors = 0);
Table& AddTable(std::string_view panel, std::string_view name, int rows, int columns);
TextBox& AddTextBox(std::string_view panel, std::string_view name);
void AddMenu(std::span<const MenuDecl> decls);

/// Removes everything from the screen. Start-up and tests call it.
void ClearScreen();

// -- Finding. The Find... functions return nullptr for an unknown name. The ...Named functions end the
// program --

Panel* FindPanel(std::string_view name);
Control* FindControl(std::string_view name);
Control* FindCommand(std::string_view command);
MenuItem* FindMenu(std::string_view command);

/// Lets FindCommand return this control, of several with the same callback, from now on.
void AnswerCommand(Control& control);
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

/// Hides the panels of the other tasks and the page over them, shows this panel and sets PanelTag to its tag. The
/// old tag goes to PreviousPanelTag.
void ShowTask(std::string_view panel);

/// Hides a task panel. If it was in front, shows the task before it (PreviousPanelTag); the task before that
/// one is then MainPanel.
void LeaveTask(std::string_view panel);

/// Shows a panel modally with a message. Returns true when the user leaves it with ok; its controls then
/// hold the typed values.
bool RunModalPanel(std::string_view name, std::string_view text);

// -- Controls --

/// Copies the values of the controls of a group into their fields. Runs no actions.
void ReadControls(std::string_view panel, std::string_view group);

/// Copies the fields into the controls of a group that edit them.
void WriteControls(std::string_view panel, std::string_view group);

/// Copies the fields into all controls of the screen that edit them.
void WriteAllControls();

// A field can have a control on several panels, all under its name.

/// Shows a field in every control that edits it.
void ShowField(std::string_view name);

/// Finds the first control of a field whose value differs from the field. Stores this value in the field
/// and shows it in the other controls of the field.
void StoreTyped(std::string_view name);

void ShowNumber(std::string_view control, double value);
void ShowText(std::string_view control, std::string_view text);
double ControlNumber(std::string_view control);
void SetDimmed(std::string_view control, bool dimmed);
void SetVisible(std::string_view control, bool visible);
void SetColour(std::string_view control, std::string_view colour);

/// Returns the text that the control shows: the formatted number, the text, or the word of a choice.
std::string ShownText(const Control& control);

/// Runs the dimming rules of all panels.
void UpdateDimming();

// -- Actions of the user --

/// The reason for a refused action; empty when the action was accepted.
using Refusal = std::string;

/// Types text into a control, without a commit. A Choice or Switch takes one of its words or their numbers.
Refusal TypeInto(Control& control, std::string_view text);

/// Commits a control: stores the value in its field, runs the action, then the dimming rules. Refuses a
/// dimmed control. While another command runs, refuses every control except those with whileBusy.
Refusal Commit(Control& control);

/// Presses a control: flips a switch, or selects the next entry of a choice, then commits the control.
Refusal Press(Control& control);
Refusal PressMenu(MenuItem& item);

/// Performs an action of the user that has no control, such as dropping a file on the window. `line` is the
/// same action in the command language. Refuses the action while another command runs.
Refusal Perform(const std::string& line, const std::function<void()>& action);

/// Tells observers that the user changed the view of a graph. While a command runs, observers hear of it at
/// the end of the command. `line` is the same change in the command language.
void TellViewed(const std::string& line);

/// Right-clicks a control: shows its help under "? Help" and does nothing else. A help button runs its action
/// instead.
void RightClick(Control& control);

void ClosePanel(Panel& panel);
void PressKey(Panel& panel, std::string_view key);
Refusal EnterCell(Table& table, int row, int column, std::string_view text);

/// Clicks or double-clicks a cell.
Refusal ClickCell(Table& table, int row, int column);
Refusal MoveCursor(Graph& graph, int cursor, double x, std::optional<double> y);

// -- Graphs --

void ClearPlots(Graph& graph);

/// Removes all plots except the first `count`.
void KeepPlots(Graph& graph, std::size_t count);
void PlotWave(Graph& graph, PlotStyle style, Colour colour, std::span<const float> y, double start,
              double step);
void PlotPoints(Graph& graph, PlotStyle style, Colour colour, std::span<const double> x,
                std::span<const float> y);
void SetAxisTitle(Graph& graph, char axis, std::string_view title);
void SetAxisRange(Graph& graph, char axis, double min, double max);
void SetAxisAuto(Graph& graph, char axis);
void SetAxisLog(Graph& graph, char axis, bool log);

/// Return the smallest and largest finite coordinate of one plot or of all plots. Empty if no coordinate is
/// finite.
std::optional<DataRange> PlotRange(const Plot& plot, char axis);
std::optional<DataRange> DataRangeOf(const Graph& graph, char axis);

/// Returns the visible range: that of the axis when it is fixed, else that of the data.
DataRange ViewRange(const Graph& graph, char axis);

// -- Tables and text boxes. Rows and columns count from 1 --

void SetCell(Table& table, int row, int column, std::string_view text);

/// Marks a row as the current row. 0 removes the mark.
void MarkRow(Table& table, int row);

/// Scrolls a table so that its view begins at this row and column.
void ScrollTable(Table& table, int topRow, int leftColumn);
std::string CellText(const Table& table, int row, int column);
void InsertLine(TextBox& box, std::string_view line);
void ClearLines(TextBox& box);

/// Returns the lines, brought up to date. Use it to show a box.
const std::vector<std::string>& LinesOf(TextBox& box);

/// Tells the front end that lines, which `renew` brings, have changed.
void TellLinesChanged(TextBox& box);

}  // namespace zelvane
