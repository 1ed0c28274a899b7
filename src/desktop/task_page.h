// The page of a task in the main window.
#pragma once

#include <QWidget>
#include <set>

#include "screen/screen.h"

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

/// The page of a panel; nullptr where there is none.
TaskPage* MakeTaskPage(Panel& panel, QWidget* parent);

}  // namespace zelvane
