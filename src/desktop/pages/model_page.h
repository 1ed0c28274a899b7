// The page of the model: the scheme, its run settings, the response.
#pragma once

#include <vector>

#include "desktop/pages/task_page.h"

class QStackedWidget;
class QToolButton;

namespace zelvane {

class RateTableView;
class SchemeView;

class ModelPage : public TaskPage {
  Q_OBJECT
 public:
  ModelPage(Panel& panel, Settings& settings, QWidget* parent);

 protected:
  void refreshMore() override;

 private:
  void addScheme();
  void addResponse();
  QWidget* newFormSwitch(QWidget* parent);

  QToolButton* gridButton_ = nullptr;
  QToolButton* tableButton_ = nullptr;
  QStackedWidget* forms_ = nullptr;  // the grid, the table
  SchemeView* scheme_ = nullptr;
  RateTableView* table_ = nullptr;
  ControlWidget* title_ = nullptr;
  std::vector<ControlWidget*> tableCommands_;
  std::vector<ControlWidget*> monitors_;  // by state, from 1
};

}  // namespace zelvane
