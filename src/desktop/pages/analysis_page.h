// The page of the analysis: a response with its cursors and marks, its measures, the results table.
#pragma once

#include "desktop/pages/task_page.h"

namespace zelvane {

class AnalysisPage : public TaskPage {
  Q_OBJECT
 public:
  AnalysisPage(Panel& panel, Settings& settings, QWidget* parent);

 protected:
  void refreshMore() override;
  bool eventFilter(QObject* watched, QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void addResponse();
  void addResults();
  void addDoses();
  void showResidual(bool shown);
  bool pressKey(int key);

  ReadoutStrip* readouts_ = nullptr;
  ControlWidget* stop_ = nullptr;
  GraphWidget* response_ = nullptr;
  QWidget* residualRoom_ = nullptr;
  bool residualPlaced_ = false;
};

}  // namespace zelvane
