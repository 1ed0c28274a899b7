// The page of the series resistance: the trace, the current-voltage relation, the cell and the commands.
#pragma once

#include <vector>

#include "desktop/pages/task_page.h"

class QHBoxLayout;

namespace zelvane {

class ControlWidget;
class GraphWidget;
class SideForm;

class RscmPage : public TaskPage {
  Q_OBJECT
 public:
  RscmPage(Panel& panel, QWidget* parent);

  void refresh(const std::set<Graph*>& changed) override;

 private:
  QWidget* makeHeader();
  QWidget* makeGraphs();
  QWidget* makeSide();
  void add(QHBoxLayout* row, const char* control);

  SideForm* settings_ = nullptr;
  std::vector<GraphWidget*> graphs_;
  std::vector<ControlWidget*> controls_;  // outside the settings
};

}  // namespace zelvane
