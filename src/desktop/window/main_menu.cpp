#include "desktop/window/main_menu.h"

#include <QAction>
#include <QApplication>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPointer>
#include <algorithm>

#include "app/recorder.h"
#include "app/undo.h"
#include "desktop/widgets/text.h"

namespace zelvane {
namespace {

/// Returns the menus from left to right; menus of other names are placed before View.
const QStringList& Order() {
  static const QStringList order = {"File",  "Edit", "Model", "Stimulus", "Run",
                                    "Graph", "View", "Tools", "Help"};
  return order;
}

qsizetype PlaceOf(const QString& title) {
  const qsizetype place = Order().indexOf(title);
  return place >= 0 ? place : Order().indexOf("View");
}

QString WithoutMnemonic(QString title) {
  return title.remove('&');
}

/// Marks the first letter that no earlier entry has taken.
QString WithMnemonic(const QString& text, QString& taken) {
  for (qsizetype i = 0; i < text.size(); ++i) {
    const QChar letter = text[i].toLower();
    if (!letter.isLetter() || taken.contains(letter)) continue;
    taken += letter;
    return text.left(i) + '&' + text.mid(i);
  }
  return text;
}

void MarkActions(const QList<QAction*>& actions) {
  QString taken;
  for (QAction* action : actions) {
    if (!action->isSeparator()) action->setText(WithMnemonic(WithoutMnemonic(action->text()), taken));
  }
}

bool CanDo(const MenuItem& item) {
  if (item.dimmed || Screen.busy > 0) return false;
  if (item.command == "FxnUndo") return CanUndo();
  if (item.command == "FxnRedo") return CanRedo();
  if (item.command == "FxnStopRecording") return IsRecording();
  return item.command != "FxnRecord" || !IsRecording();
}

}  // namespace

void FinishTyping() {
  QWidget* field = QApplication::focusWidget();
  if (qobject_cast<QLineEdit*>(field) == nullptr) return;
  const QPointer<QWidget> kept = field;  // an editor in place is deleted when it loses the focus
  field->clearFocus();
  if (kept != nullptr && kept->isVisible()) kept->setFocus();
}

MainMenu::MainMenu(QMenuBar* bar) : QObject(bar), bar_(bar) {
  for (MenuItem& item : Screen.menu) addItem(item);
}

QMenu* MainMenu::menu(const QString& title) {
  QAction* before = nullptr;
  for (QAction* action : bar_->actions()) {
    const QString other = WithoutMnemonic(action->text());
    if (other == title) return action->menu();
    if (before == nullptr && PlaceOf(other) > PlaceOf(title)) before = action;
  }
  auto* added = new QMenu(title, bar_);
  bar_->insertMenu(before, added);
  return added;
}

void MainMenu::addItem(MenuItem& item) {
  const QStringList path = ToQt(item.path).split('/');
  QMenu* parent = menu(path.front());
  if (item.command == "ShutDown") parent->addSeparator();
  QAction* action = parent->addAction(path.mid(1).join('/'));
  action->setObjectName(ToQt(item.command));
  if (!item.shortcut.empty()) action->setShortcut(QKeySequence(ToQt(item.shortcut)));
  connect(action, &QAction::triggered, this, [&item] {
    FinishTyping();
    PressMenu(item);
  });
  entries_.push_back({&item, action});
}

QAction* MainMenu::action(std::string_view command) const {
  const auto it = std::find_if(entries_.begin(), entries_.end(),
                               [&](const Entry& entry) { return entry.item->command == command; });
  return it != entries_.end() ? it->action : nullptr;
}

void MainMenu::assignMnemonics() {
  MarkActions(bar_->actions());
  for (QAction* action : bar_->actions()) {
    if (action->menu() != nullptr) MarkActions(action->menu()->actions());
  }
}

void MainMenu::refresh() {
  for (const Entry& entry : entries_) entry.action->setEnabled(CanDo(*entry.item));
}

}  // namespace zelvane
