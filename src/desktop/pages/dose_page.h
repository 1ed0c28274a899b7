// The page of dose-response curves: the pairs, the curve, its residual.
#pragma once

#include "desktop/pages/task_page.h"

namespace zelvane {

class DosePage : public TaskPage {
  Q_OBJECT
 public:
  DosePage(Panel& panel, Settings& settings, QWidget* parent);

 private:
  void addPairs();
};

}  // namespace zelvane
