#include "app/application.h"
#include "screen/screen.h"
#include "support/store_test.h"

namespace zelvane {

PanelTest::PanelTest() {
  AddAllPanels();
  WriteAllControls();
}

}  // namespace zelvane
