// The menus: every command of the program, and the window's own.
#pragma once

#include <QMenuBar>
#include <QObject>
#include <vector>

#include "screen/screen.h"

class QAction;
class QMenu;

namespace zelvane {

/// Enters what the user is typing: a command by key or tool button takes no focus, and would pass it over.
void FinishTyping();

/// Builds a menu bar from the program's menu records; a path names the place, "File/Print...".
class MainMenu : public QObject {
  Q_OBJECT
 public:
  explicit MainMenu(QMenuBar* bar);

  /// The menu of a title, made where it is due in the order of the bar.
  QMenu* menu(const QString& title);

  /// The action of a menu command; nullptr where the program has no such command.
  QAction* action(std::string_view command) const;

  /// Gives every entry a letter of its own. Once all entries are there.
  void assignMnemonics();

  /// Enables what can be done now.
  void refresh();

 private:
  struct Entry {
    MenuItem* item;
    QAction* action;
  };

  void addItem(MenuItem& item);

  QMenuBar* bar_;
  std::vector<Entry> entries_;
};

}  // namespace zelvane
