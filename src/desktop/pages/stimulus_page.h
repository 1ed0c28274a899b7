// The page of the stimulus: the profile shown, what builds it, the multi-stimulus table.
#pragma once

#include <vector>

#include "desktop/pages/task_page.h"

class QHBoxLayout;

namespace zelvane {

class ControlWidget;
class GraphWidget;
class SideForm;
class TableWidget;

class StimulusPage : public TaskPage {
  Q_OBJECT
 public:
  StimulusPage(Panel& panel, QWidget* parent);

  void refresh(const std::set<Graph*>& changed) override;

 private:
  QWidget* makeHeader();
  QWidget* makeTable();
  QWidget* makeSide();
  QWidget* makeCreators();
  ControlWidget* add(QHBoxLayout* row, const char* control);
  ControlWidget* make(const char* control);

  GraphWidget* graph_ = nullptr;
  TableWidget* table_ = nullptr;
  SideForm* settings_ = nullptr;
  std::vector<ControlWidget*> controls_;  // outside the settings
};

}  // namespace zelvane
