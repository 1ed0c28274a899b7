// The page of a task in the main window: what all pages share.
#pragma once

#include <QWidget>
#include <initializer_list>
#include <set>
#include <span>
#include <vector>

#include "desktop/widgets/control_widget.h"
#include "screen/screen.h"

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

/// A row of controls at the top, readouts, then parts with a splitter between them (a graph, a table, a
/// drawing, each below a row of its own); at the right the column of settings with a row of buttons below. A
/// page names its parts in its constructor, from top to bottom; what it adds here is shown anew by `refresh`.
class TaskPage : public QWidget {
  Q_OBJECT
 public:
  TaskPage(Panel& panel, Settings& settings, QWidget* parent);

  Panel& panel() { return panel_; }

  /// Shows what the records hold; of graphs those that changed.
  void refresh(const std::set<Graph*>& changed);

  /// All graphs of the page, for a page that comes to the front.
  std::set<Graph*> graphs() const { return {panel_.graphs.begin(), panel_.graphs.end()}; }

  /// The column of settings: beside the parts, or in a narrow window a drawer over them.
  bool settingsOpen() const;
  void openSettings(bool open);

 protected:
  /// A part of the page: its row of controls, and room for a drawing below.
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
  Part addPart(int share);  // of the page's height, against the other parts
  GraphWidget& addGraph(const Part& part, Graph& graph);
  TableWidget& addTable(const Part& part, Table& table);
  void finishParts();  // once all parts are in
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
  void addFold(const Part& part, const QString& title);  // a title that folds the part down to its row
  void addStepper(FlowRow& row, const EpisodeControls& controls);  // shown for several episodes

  /// What the page shows beside its parts, after them.
  virtual void refreshMore() {}

  /// A right click beside all controls tells what the page is for.
  void contextMenuEvent(QContextMenuEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  QWidget* newMain();
  QWidget* newColumn();
  ControlWidget& newControl(const char* control, QWidget* parent, ControlWidget::Look look);

  Panel& panel_;
  Settings& settings_;
  QString key_;  // the settings' name of the page
  FlowRow* header_ = nullptr;
  QVBoxLayout* strips_ = nullptr;
  RememberedSplitter* parts_ = nullptr;
  QVBoxLayout* aboveForm_ = nullptr;
  SideForm* settingsForm_ = nullptr;
  FlowRow* foot_ = nullptr;
  DrawerFrame* frame_ = nullptr;
  QList<int> shares_;
  std::vector<ControlWidget*> controls_;  // outside the form
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
  const char* command = "";  // menu command that brings the task to the front
  TaskPage* (*make)(Panel& panel, Settings& settings, QWidget* parent) = nullptr;
};

/// All tasks, in the order of the side bar.
std::span<const TaskDecl> Tasks();

}  // namespace zelvane
