// The page of the model: the scheme, its run settings, the response.
#pragma once

#include <vector>

#include "desktop/pages/task_page.h"

class QHBoxLayout;
class QLabel;
class QStackedWidget;
class QToolButton;

namespace zelvane {

class ControlWidget;
class GraphWidget;
class RateTableView;
class SchemeView;
class SideForm;

class ModelPage : public TaskPage {
  Q_OBJECT
 public:
  ModelPage(Panel& panel, QWidget* parent);

  void refresh(const std::set<Graph*>& changed) override;

 private:
  QWidget* makeScheme();
  QWidget* makeResponse();
  void addEpisodes(QHBoxLayout* header);
  QWidget* makeFormSwitch();
  ControlWidget* add(QHBoxLayout* row, const char* control, int stretch = 0);

  QToolButton* gridButton_ = nullptr;
  QToolButton* tableButton_ = nullptr;
  QStackedWidget* forms_ = nullptr;  // the grid, the table
  SchemeView* scheme_ = nullptr;
  RateTableView* table_ = nullptr;
  GraphWidget* graph_ = nullptr;
  SideForm* settings_ = nullptr;
  ControlWidget* title_ = nullptr;
  std::vector<ControlWidget*> tableCommands_;
  std::vector<ControlWidget*> controls_;  // outside the settings
  std::vector<ControlWidget*> monitors_;  // by state, from 1
  QWidget* episodes_ = nullptr;           // shown for a recording of several
};

}  // namespace zelvane
