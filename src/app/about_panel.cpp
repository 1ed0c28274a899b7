#include "app/about_panel.h"

#include "screen/screen.h"

namespace zelvane {
namespace {

constexpr char AboutHelp[] = "Close this box.";

void FxnAbout() {
  SetVisible("CloseAbout", true);
  ShowPanel("AboutPanel");
}

void FxnCloseAbout(const ControlEvent&) {
  HidePanel("AboutPanel");
}

// clang-format off
constexpr ControlDecl AboutControls[] = {
    {.name = "CloseAbout", .kind = ControlKind::Button, .label = "Close", .format = "", .command = "FxnCloseAbout",
     .action = FxnCloseAbout, .help = AboutHelp},
};
constexpr MenuDecl AboutMenu[] = {{"Help/About Zelvane", "FxnAbout", FxnAbout}};
// clang-format on

constexpr const char* AboutLines[] = {
    "Zelvane",
    "Kinetic schemes of ion channels: build, simulate, measure.",
    "Free software under the GNU General Public License, version 3 or later.",
};

}  // namespace

void AddAboutPanel() {
  AddPanel({.name = "AboutPanel", .title = "About Zelvane", .help = "Describes this program."});
  AddControls("AboutPanel", "about", AboutControls);
  TextBox& box = AddTextBox("AboutPanel", "AboutText");
  for (const char* line : AboutLines) InsertLine(box, line);
  AddMenu(AboutMenu);
}

}  // namespace zelvane
