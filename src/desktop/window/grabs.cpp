#include "desktop/window/grabs.h"

#include <QApplication>
#include <QDir>
#include <QPixmap>

#include "desktop/pages/task_page.h"
#include "desktop/widgets/text.h"
#include "desktop/window/main_window.h"
#include "desktop/window/panel_dialog.h"

namespace zelvane {
namespace {

constexpr int Turns = 4;  // turns of the event loop

bool SavePicture(QWidget& widget, const QDir& folder, const QString& name) {
  return widget.grab().save(folder.filePath(name + ".png"));
}

}  // namespace

bool GrabPanels(MainWindow& window, const QString& folder) {
  const QDir directory(folder);
  if (!directory.mkpath(".")) return false;
  // A change is shown, laid out and painted in separate turns.
  for (int turn = 0; turn < Turns; ++turn) QCoreApplication::processEvents();
  bool saved = SavePicture(window, directory, ToQt(window.page()->panel().name));
  for (PanelDialog* dialog : window.openDialogs()) {
    saved = SavePicture(*dialog, directory, ToQt(dialog->panel().name)) && saved;
  }
  if (QWidget* modal = QApplication::activeModalWidget()) {
    saved = SavePicture(*modal, directory, modal->objectName()) && saved;
  }
  for (QWidget* widget : QApplication::topLevelWidgets()) {
    for (const char* name : {"Welcome", "HelpWindow"}) {
      if (widget->objectName() == name && widget->isVisible())
        saved = SavePicture(*widget, directory, name) && saved;
    }
  }
  return saved;
}

}  // namespace zelvane
