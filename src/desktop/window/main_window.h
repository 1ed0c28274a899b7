// The main window: tasks at the side, the task's page in the middle, menus, tool bar, status bar; auxiliary
// panels as dialogs.
#pragma once

#include <QMainWindow>
#include <map>
#include <memory>
#include <set>
#include <vector>

#include "desktop/window/desktop_front_end.h"
#include "screen/screen.h"

class QMenu;
class QStackedWidget;
class QToolButton;

namespace zelvane {

class HelpWindow;
class MainMenu;
class MainStatus;
class PanelDialog;
class Settings;
class TaskPage;
struct TaskDecl;

class MainWindow : public QMainWindow {
  Q_OBJECT
 public:
  /// Shows a started program (StartApplication) through `frontEnd`.
  MainWindow(DesktopFrontEnd& frontEnd, Settings& settings);
  ~MainWindow() override;

  /// Shows what the records hold; redraws only the graphs in `changed`.
  void refresh(const std::set<Graph*>& changed);

  /// Returns the page in front.
  TaskPage* page() const;

  /// Returns the dialogs that show at this moment.
  std::vector<PanelDialog*> openDialogs() const;

  /// Runs a script of the command language in this window. Shows its failures at the end.
  void playScript(const QString& path);

  void showWelcome();

  QSize sizeHint() const override { return {1280, 720}; }

 protected:
  void changeEvent(QEvent* event) override;
  void closeEvent(QCloseEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dragMoveEvent(QDragMoveEvent* event) override;
  void dropEvent(QDropEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  QMenu* createPopupMenu() override { return nullptr; }

 private:
  struct Task {
    const TaskDecl* decl;
    TaskPage* page;
    QToolButton* button;
  };

  void addTasks();
  void addOwnMenus();
  void addViewMenu();
  void addTools();
  void connectFrontEnd();
  void goTo(const Task& task);
  void refreshGraphs(const std::set<Graph*>& changed);
  void refreshDialogs(const std::set<Graph*>& changed);
  void refreshTitle();
  void refreshIcons();
  void fillRecentFiles();
  void openFile(const QString& path);
  void choosePdf();
  void restore();
  bool openHelp(int topic);

  DesktopFrontEnd& frontEnd_;
  Settings& settings_;
  MainMenu* menu_ = nullptr;
  MainStatus* status_ = nullptr;
  QMenu* recent_ = nullptr;
  QStackedWidget* pages_ = nullptr;
  QAction* stop_ = nullptr;
  std::vector<Task> tasks_;
  std::map<Panel*, PanelDialog*> dialogs_;
  std::unique_ptr<HelpWindow> help_;
  std::string modelFile_;  // the file that the title shows
  std::string traceFile_;  // the recording that was read last
  bool closing_ = false;   // the window closes once the run has stopped
};

}  // namespace zelvane
