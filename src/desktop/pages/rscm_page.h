// The page of the series resistance: the trace, the current-voltage relation, the cell and the commands.
#pragma once

#include "desktop/pages/task_page.h"

namespace zelvane {

class RscmPage : public TaskPage {
  Q_OBJECT
 public:
  RscmPage(Panel& panel, Settings& settings, QWidget* parent);
};

}  // namespace zelvane
