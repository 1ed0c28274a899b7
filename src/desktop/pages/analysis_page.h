// The page of the analysis: a response with its cursors and marks, what was measured of it, the results
// table.
#pragma once

#include <vector>

#include "desktop/pages/task_page.h"

class QBoxLayout;

namespace zelvane {

class ControlWidget;
class GraphWidget;
class ReadoutStrip;
class SideForm;
class TableWidget;

class AnalysisPage : public TaskPage {
  Q_OBJECT
 public:
  AnalysisPage(Panel& panel, QWidget* parent);

  void refresh(const std::set<Graph*>& changed) override;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  QWidget* makeHeader();
  QWidget* makeGraph();
  QWidget* makeTable();
  QWidget* makeSide();
  QWidget* makeStepper();
  ControlWidget* add(QBoxLayout* row, const char* control);
  bool pressKey(int key);

  GraphWidget* graph_ = nullptr;
  TableWidget* table_ = nullptr;
  SideForm* settings_ = nullptr;
  ReadoutStrip* measures_ = nullptr;
  ReadoutStrip* fit_ = nullptr;
  ControlWidget* stop_ = nullptr;
  QWidget* stepper_ = nullptr;
  std::vector<ControlWidget*> controls_;  // outside the settings
};

}  // namespace zelvane
