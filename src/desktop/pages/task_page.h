// The page of a task in the main window: what all pages share.
#pragma once

#include <QWidget>
#include <initializer_list>
#include <set>
#include <span>
#include <vector>

#include "desktop/widgets/control_widget.h"
#include "screen/screen.h"

class QHBoxLayout;
class QVBoxLayout;

namespace zelvane {

class DrawerFrame;
class FlowRow;
class FormPage;
class GraphWidget;
class ReadoutStrip;
class RememberedSplitter;
class Settings;
class SideForm;
class TableWidget;

/// Shows a row of controls at the top, then readouts, then parts with a splitter between them (a graph, a
/// table, a drawing, each below its own row of controls). At the right is the column of settings with a row
/// of buttons below. A page names its parts in its constructor, from top to bottom; `refresh` shows the parts
/// again.
class TaskPage : public QWidget {
  Q_OBJECT
 public:
  TaskPage(Panel& panel, Settings& settings, QWidget* parent);

  Panel& panel() { return panel_; }

  /// Shows what the records hold; redraws only the graphs in `changed`.
  void refresh(const std::set<Graph*>& changed);

  /// Shows the graphs of `changed` alone.
  void refreshGraphs(const std::set<Graph*>& changed);

  /// Returns all graphs of the page, for a page that comes to the front.
  std::set<Graph*> graphs() const { return {panel_.graphs.begin(), panel_.graphs.end()}; }

  /// Returns whether the column of settings is open: beside the parts, or in a narrow window a drawer over
  /// them.
  bool settingsOpen() const;
  void openSettings(bool open);

 protected:
  /// A part of the page: its row of controls, and the room below for a graph, table or drawing.
  struct Part {
    FlowRow* row;
    QWidget* content;
    QVBoxLayout* body;  // of the content
  };
  /// Controls that step through the episodes of a recording.
  struct EpisodeControls {
    const char* index;
    const char* count;
    const char* last;
    const char* next;
  };

  // -- Parts --
  FlowRow& header() { return *header_; }
  ReadoutStrip& addStrip(std::span<const char* const> controls);
  Part addPart(int share);          // its part of the page's height, relative to the other parts
  QVBoxLayout& addSide(int width);  // a column at the left of the parts
  GraphWidget& addGraph(const Part& part, Graph& graph) { return addGraph(*part.body, graph); }
  GraphWidget& addGraph(QVBoxLayout& body, Graph& graph, int share = 1);
  TableWidget& addTable(const Part& part, Table& table) { return addTable(*part.body, table); }
  TableWidget& addTable(QVBoxLayout& body, Table& table);
  void finishParts();  // call after the last addPart
  FormPage& form();
  QVBoxLayout& aboveForm() { return *aboveForm_; }
  FlowRow& foot() { return *foot_; }

  // -- Controls, by name --
  ControlWidget& newControl(const char* control, QWidget* parent);
  ControlWidget& add(FlowRow& row, const char* control);
  ControlWidget& add(FlowRow& row, const char* control, ControlWidget::Look look);
  void add(FlowRow& row, std::initializer_list<const char*> controls);
  ControlWidget& addLabelled(FlowRow& row, const char* control, const QString& label);
  void addTitle(FlowRow& row, const QString& title);
  /// Adds a title that folds the part down to its row; `opened` is how it begins.
  void addFold(const Part& part, const QString& title, bool opened = true);
  void addStepper(FlowRow& row, const EpisodeControls& controls);  // shown when there are several episodes

  /// Shows what the page has beside its parts; called after them.
  virtual void refreshMore() {}

  /// Shows what the page is for when the right click is beside all controls.
  void contextMenuEvent(QContextMenuEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  QWidget* newMain();
  QWidget* newColumn();
  ControlWidget& newControl(const char* control, QWidget* parent, ControlWidget::Look look);

  Panel& panel_;
  Settings& settings_;
  QString key_;  // name of the page in the settings
  FlowRow* header_ = nullptr;
  QVBoxLayout* strips_ = nullptr;
  QHBoxLayout* besideParts_ = nullptr;
  RememberedSplitter* parts_ = nullptr;
  QVBoxLayout* aboveForm_ = nullptr;
  SideForm* settingsForm_ = nullptr;
  FlowRow* foot_ = nullptr;
  DrawerFrame* frame_ = nullptr;
  QList<int> shares_;
  std::vector<ControlWidget*> controls_;  // those outside the form
  std::vector<GraphWidget*> graphs_;
  std::vector<TableWidget*> tables_;
  std::vector<ReadoutStrip*> readoutStrips_;
  QWidget* stepper_ = nullptr;
};

/// A task of the side bar.
struct TaskDecl {
  const char* panel = "";
  const char* title = "";    // in the side bar
  const char* icon = "";     // name of a drawing: ThemedIcon
  const char* command = "";  // menu command that brings the page to the front
  TaskPage* (*make)(Panel& panel, Settings& settings, QWidget* parent) = nullptr;
};

/// Returns all tasks, in the order of the side bar.
std::span<const TaskDecl> Tasks();

}  // namespace zelvane
