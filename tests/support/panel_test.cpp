#include "screen/screen.h"
#include "shell/application.h"
#include "support/store_test.h"

namespace zelvane {

PanelTest::PanelTest() {
  AddAllPanels();
  WriteAllControls();
}

}  // namespace zelvane
