// The menus: every command of the program, and the window's own.
#pragma once

#include <QMenuBar>
#include <QObject>
#include <vector>

#include "screen/screen.h"

class QAction;
class QMenu;

namespace zelvane {

/// Enters what the user is typing. A command by key or tool button takes no focus, so the text would
/// otherwise not be entered.
void FinishTyping();

/// Builds a menu bar from the program's menu records; a path gives the place, "File/Print...".
class MainMenu : public QObject {
  Q_OBJECT
 public:
  explicit MainMenu(QMenuBar* bar);

  /// Returns the menu of a title; makes a new one at its place in the order of the bar.
  QMenu* menu(const QString& title);

  /// Returns the action of a menu command; nullptr when the program has no such command.
  QAction* action(std::string_view command) const;

  /// Gives every entry a letter of its own. Call after the last entry was added.
  void assignMnemonics();

  /// Enables the entries that can be used now.
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
