// The page of the stimulus: the profile shown, what builds it, the multi-stimulus table.
#pragma once

#include "desktop/pages/task_page.h"

namespace zelvane {

class StimulusPage : public TaskPage {
  Q_OBJECT
 public:
  StimulusPage(Panel& panel, Settings& settings, QWidget* parent);

 private:
  void addCreators();
};

}  // namespace zelvane
