// The page of a task in the main window.
#pragma once

#include <QWidget>
#include <set>
#include <span>

#include "screen/screen.h"

class QLabel;

namespace zelvane {

class TaskPage : public QWidget {
  Q_OBJECT
 public:
  TaskPage(Panel& panel, QWidget* parent) : QWidget(parent), panel_(panel) {}

  Panel& panel() { return panel_; }

  /// Shows what the records hold; of graphs those that changed.
  virtual void refresh(const std::set<Graph*>& changed) = 0;

  /// All graphs of the page, for a page that comes to the front.
  std::set<Graph*> graphs() const { return {panel_.graphs.begin(), panel_.graphs.end()}; }

 protected:
  /// A right click beside all controls tells what the page is for.
  void contextMenuEvent(QContextMenuEvent* event) override;

 private:
  Panel& panel_;
};

/// The title of a section of a page.
QLabel* SectionLabel(const QString& text, QWidget* parent);

/// A task of the side bar.
struct TaskDecl {
  const char* panel;
  const char* title;    // in the side bar
  const char* icon;     // name of a drawing: ThemedIcon
  const char* command;  // menu command that brings the task to the front
  TaskPage* (*make)(Panel& panel, QWidget* parent);
};

/// All tasks, in the order of the side bar.
std::span<const TaskDecl> Tasks();

}  // namespace zelvane
