// The whole window, for tests that use it.
#pragma once

#include <QCheckBox>
#include <QDropEvent>
#include <QLineEdit>
#include <QMimeData>
#include <QToolButton>
#include <sstream>

#include "app/application.h"
#include "desktop/graph/graph_widget.h"
#include "desktop/pages/task_page.h"
#include "desktop/widget_test.h"
#include "desktop/widgets/control_widget.h"
#include "desktop/widgets/fold_button.h"
#include "desktop/window/desktop_front_end.h"
#include "desktop/window/main_window.h"
#include "desktop/window/settings.h"
#include "desktop/window/theme.h"
#include "headless/drive/drive.h"

namespace zelvane {

/// The program with its window, from data/config.mod. The fixture records popups and answers them.
class WindowTest : public StoreTest {
 protected:
  WindowTest() {
    std::filesystem::copy_file(ZELVANE_DATA "/config.mod", folder.File("config.mod"));
    ApplyTheme(Theme::Light);
    open();
  }
  ~WindowTest() override {
    window.reset();
    SetFrontEnd({});
  }

  /// Starts the program with the files of its command line.
  void open(std::vector<std::string> files = {}) {
    FrontEnd shown = frontEnd.functions();
    const FrontEnd recorder = SetFrontEnd({});
    shown.message = [this, record = recorder.message](MessageTitle title, std::string_view text) {
      EXPECT_TRUE(window != nullptr && window->isVisible()) << text << ": there is no window behind it";
      record(title, text);
    };
    shown.confirm = recorder.confirm;
    shown.files = recorder.files;
    shown.quit = [this] { quit = true; };
    SetFrontEnd(shown);
    frontEnd.playScript = [this](std::istream& script, std::ostream& events) {
      PlayDrive(script, events,
                {.frontEnd = frontEnd.functions(), .afterLine = [this] { frontEnd.refreshNow(); }});
    };
    StartOptions start = options();
    start.files = std::move(files);
    start.shown = [this] { reopen(settings); };
    StartApplication(start);
    Settle();
  }

  /// Makes a new window.
  void reopen(Settings& from) {
    window.reset();
    window = std::make_unique<MainWindow>(frontEnd, from);
    window->setWindowState(Qt::WindowNoState);
    ShowAt(*window, {1280, 720});
  }

  /// Plays a script again without a window. The result must have the expected digest.
  void ReplayAndExpect(const std::string& script, std::string (*digest)(), const std::string& expected) {
    std::istringstream in(script);
    std::ostringstream out;
    EXPECT_EQ(RunDrive(in, out, options()), 0) << script << out.str();
    EXPECT_EQ(digest(), expected) << script;
  }

  StartOptions options() const { return {folder.Path().string(), {}, {{1.0, 2.0, 3.0}}}; }

  ControlWidget* widget(const QString& control, QWidget* within = nullptr) {
    for (auto* found : (within != nullptr ? within : window.get())->findChildren<ControlWidget*>(control)) {
      if (found->isVisible()) return found;
    }
    ADD_FAILURE() << control.toStdString() << " does not show";
    return nullptr;
  }

  void click(QWidget* target) {
    QTest::mouseClick(target, Qt::LeftButton);
    Settle();
  }

  /// Clicks the button, check box or segment with this text within a control.
  void clickWord(const QString& control, const QString& word) {
    for (auto* button : widget(control)->findChildren<QAbstractButton*>()) {
      if (button->text() == word) click(button);
    }
  }

  void clickControl(const QString& control) {
    auto* button = widget(control)->findChild<QAbstractButton*>();
    if (qobject_cast<QCheckBox*>(button) != nullptr) {
      QTest::mouseClick(button, Qt::LeftButton, {}, {8, button->height() / 2});
      Settle();
    } else {
      click(button);
    }
  }

  QLineEdit* field(const QString& control) { return widget(control)->findChild<QLineEdit*>(); }

  void type(const QString& control, const QString& text, bool enter = true) {
    QLineEdit* edit = field(control);
    edit->setFocus();
    edit->selectAll();
    QTest::keyClicks(edit, text);
    if (enter) QTest::keyClick(edit, Qt::Key_Return);
    Settle();
  }

  void clickTool(const char* text) {
    for (auto* button : window->findChildren<QToolButton*>()) {
      const bool folds =
          qobject_cast<FoldButton*>(button) != nullptr;  // a group of settings may have the same name
      if (button->text() == text && button->isVisible() && !folds) return click(button);
    }
    ADD_FAILURE() << text << " is no tool";
  }

  void key(int key, Qt::KeyboardModifiers modifiers = {}) {
    QWidget* target = QApplication::focusWidget() != nullptr ? QApplication::focusWidget() : window.get();
    QTest::keyClick(target, static_cast<Qt::Key>(key), modifiers);
    Settle();
  }

  /// Drops files on the window, from a source that would rather move them.
  void drop(const std::string& path, Qt::DropActions offered = Qt::CopyAction | Qt::MoveAction) {
    drop(std::vector{path}, offered);
  }
  void drop(const std::vector<std::string>& paths,
            Qt::DropActions offered = Qt::CopyAction | Qt::MoveAction) {
    QMimeData data;
    QList<QUrl> urls;
    for (const std::string& path : paths) urls << QUrl::fromLocalFile(QString::fromStdString(path));
    data.setUrls(urls);
    QDragEnterEvent enter({40, 40}, offered, &data, Qt::LeftButton, Qt::ShiftModifier);
    QDragMoveEvent move({40, 40}, offered, &data, Qt::LeftButton, Qt::ShiftModifier);
    QDropEvent drop({40, 40}, offered, &data, Qt::LeftButton, Qt::ShiftModifier);
    for (QDropEvent* event : std::initializer_list<QDropEvent*>{&enter, &move, &drop}) {
      event->setDropAction(Qt::MoveAction);
      QApplication::sendEvent(window.get(), event);
      EXPECT_TRUE(event->isAccepted());
      EXPECT_NE(event->dropAction(), Qt::MoveAction) << "a move would let the source delete the file";
    }
    Settle();
  }

  /// Returns the widget of the first graph of the page in front.
  GraphWidget* graph() {
    for (GraphWidget* widget : window->page()->findChildren<GraphWidget*>()) {
      if (&widget->graph() == window->page()->panel().graphs.front()) return widget;
    }
    return nullptr;
  }

  Settings settings{false};
  DesktopFrontEnd frontEnd{settings};
  std::unique_ptr<MainWindow> window;
  bool quit = false;
};

}  // namespace zelvane
