// The page of averages: the whole record, the stretch in view with the average over it.
#pragma once

#include "desktop/pages/task_page.h"

namespace zelvane {

class WavePage : public TaskPage {
  Q_OBJECT
 public:
  WavePage(Panel& panel, Settings& settings, QWidget* parent);
};

}  // namespace zelvane
