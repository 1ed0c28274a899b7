#include "desktop/window/main_window.h"

#include <QAction>
#include <QActionGroup>
#include <QCloseEvent>
#include <QDir>
#include <QFileInfo>
#include <QMenu>
#include <QMimeData>
#include <QScreen>
#include <QScrollArea>
#include <QStackedWidget>
#include <QToolBar>
#include <QToolButton>
#include <QVBoxLayout>

#include "app/application.h"
#include "desktop/pages/task_page.h"
#include "desktop/widgets/text.h"
#include "desktop/window/help_window.h"
#include "desktop/window/main_menu.h"
#include "desktop/window/main_status.h"
#include "desktop/window/page_printer.h"
#include "desktop/window/panel_dialog.h"
#include "desktop/window/script_player.h"
#include "desktop/window/settings.h"
#include "desktop/window/theme.h"
#include "desktop/window/welcome.h"
#include "fit/fit_panel.h"
#include "model/model_store.h"
#include "platform/folders.h"
#include "screen/entry.h"
#include "screen/observer.h"
#include "trace/trace_store.h"

namespace zelvane {
namespace {

constexpr QSize LeastSize(800, 560);
constexpr int TaskBarWidth = 84;
constexpr int TaskIconSize = 24;
constexpr int TaskSpacing = 1;
constexpr int ToolIconSize = 20;
constexpr int StopPollMs = 20;  // while a closing window waits for the end of a run

constexpr char TablePanelName[] = "TableModelPanel";  // part of the model's page
/// Controls that end a running command; each stops its own kind of command.
constexpr const char* StopControls[] = {"StopRun", "StopAnalysisButton"};
constexpr char StopFitSwitch[] = "FitStop";

constexpr char CannotWritePdf[] = "The PDF file could not be written: ";

/// A tool that presses a menu command or control.
struct Tool {
  const char* icon;
  const char* text;
  const char* command;
  const char* tip;
};
constexpr Tool Tools[] = {
    {"run", "Run", "AcquireData", "Run the model (F5)"},
    {"stop", "Stop", "", "Stop the run or the analysis (Esc)"},
    {"", "", "", ""},
    {"open", "Open", "OpenParameterFile", "Open a model file (Ctrl+O)"},
    {"save", "Save", "SaveParameters", "Save the model (Ctrl+S)"},
    {"", "", "", ""},
    {"undo", "Undo", "FxnUndo", "Undo (Ctrl+Z)"},
    {"redo", "Redo", "FxnRedo", "Redo (Ctrl+Shift+Z)"},
};

QString DataFolder(const char* name) {
  const std::string folder = ProgramDataFolder();
  return folder.empty() ? QString() : QDir(ToQt(folder)).filePath(name);
}

void StopWork() {
  if (Model.FitActive != 0) {
    EnterTyped(ControlNamed(StopFitSwitch), "1");
    return;
  }
  for (const char* control : StopControls) Press(ControlNamed(control));
}

/// Returns whether a page is in front: that of the task in front, unless a page over the tasks shows.
bool IsInFront(const Panel& panel) {
  if (!panel.visible || panel.overTask) return panel.visible;
  const bool covered = std::any_of(Screen.panels.begin(), Screen.panels.end(),
                                   [](const Panel& other) { return other.overTask && other.visible; });
  return !covered && panel.tag == Screen.PanelTag;
}

bool IsDialog(const Panel& panel) {
  return panel.tag.empty() && !panel.overTask && panel.name != TablePanelName;
}

/// Accepts dragged files as a copy: their source may delete what was moved. From a source that only moves, takes
/// no file over, so that it keeps them.
void TakeACopy(QDropEvent& event) {
  const bool copies = event.possibleActions().testFlag(Qt::CopyAction);
  event.setDropAction(copies ? Qt::CopyAction : Qt::IgnoreAction);
  event.accept();
}

}  // namespace

MainWindow::MainWindow(DesktopFrontEnd& frontEnd, Settings& settings)
    : frontEnd_(frontEnd), settings_(settings), modelFile_(Model.ModelFileName) {
  setObjectName("MainWindow");
  setAcceptDrops(true);
  setMinimumSize(LeastSize);  // for all pages: the content of a page must not enlarge the window
  menu_ = new MainMenu(menuBar());
  status_ = new MainStatus(this);
  setStatusBar(status_);
  addTasks();
  addTools();
  addOwnMenus();
  addViewMenu();
  menu_->assignMnemonics();
  refreshIcons();
  connectFrontEnd();
  restore();
  for (const Task& task : tasks_) task.page->refresh(task.page->graphs());
  refresh({});
}

MainWindow::~MainWindow() {
  settings_.setValue("window/geometry", saveGeometry());
  frontEnd_.setWindow(nullptr);
  frontEnd_.openHelp = nullptr;
  RemoveUserObservers();
}

// -- Parts of the window --

void MainWindow::addTasks() {
  auto* central = new QWidget(this);
  auto* layout = new QHBoxLayout(central);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  auto* scroll = new QScrollArea(central);  // in a low window the tasks scroll
  scroll->setFrameShape(QFrame::NoFrame);
  scroll->setFixedWidth(TaskBarWidth);
  scroll->setWidgetResizable(true);
  scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  scroll->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  auto* bar = new QWidget(scroll);
  bar->setObjectName("TaskBar");
  bar->setAttribute(Qt::WA_StyledBackground);
  auto* buttons = new QVBoxLayout(bar);
  buttons->setContentsMargins(6, 4, 6, 4);
  buttons->setSpacing(TaskSpacing);
  pages_ = new QStackedWidget(central);
  for (const TaskDecl& task : Tasks()) {
    Panel& panel = PanelNamed(task.panel);
    auto* button = new QToolButton(bar);
    button->setText(task.title);
    button->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
    button->setIconSize({TaskIconSize, TaskIconSize});
    button->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    button->setCheckable(true);
    button->setProperty("role", "task");
    button->setToolTip(ToQt(panel.help));
    buttons->addWidget(button);
    tasks_.push_back({&task, task.make(panel, settings_, pages_), button});
    pages_->addWidget(tasks_.back().page);
    connect(button, &QToolButton::clicked, this, [this, shown = tasks_.back()] { goTo(shown); });
  }
  buttons->addStretch();
  scroll->setWidget(bar);
  layout->addWidget(scroll);
  layout->addWidget(pages_, 1);
  setCentralWidget(central);
}

void MainWindow::addTools() {
  QToolBar* bar = addToolBar("Tools");
  bar->setObjectName("ToolBar");
  bar->setMovable(false);
  bar->setIconSize({ToolIconSize, ToolIconSize});
  bar->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
  for (const Tool& tool : Tools) {
    if (*tool.icon == '\0') {
      bar->addSeparator();
      continue;
    }
    QAction* action = bar->addAction(tool.text);
    action->setObjectName(QStringLiteral("tool/") + tool.icon);
    action->setToolTip(tool.tip);
    if (QAction* command = menu_->action(tool.command)) {
      connect(action, &QAction::triggered, command, &QAction::trigger);
      connect(command, &QAction::enabledChanged, action, &QAction::setEnabled);
    } else {
      stop_ = action;
      connect(action, &QAction::triggered, this, [] { StopWork(); });
    }
  }
}

void MainWindow::addOwnMenus() {
  QMenu* file = menu_->menu("File");
  recent_ = new QMenu("Open Recent", file);
  file->insertMenu(menu_->action("SaveParameters"), recent_);
  connect(recent_, &QMenu::aboutToShow, this, &MainWindow::fillRecentFiles);
  auto* pdf = new QAction("Page as PDF...", file);
  connect(pdf, &QAction::triggered, this, &MainWindow::choosePdf);
  const qsizetype afterPrint = file->actions().indexOf(menu_->action("FxnPrint")) + 1;
  file->insertAction(file->actions().value(afterPrint), pdf);
  menu_->menu("Tools")->addAction("Play...", this, [this] {
    const auto paths = frontEnd_.functions().files({.title = "Play Script", .filter = "*.drive"});
    if (!paths.empty()) playScript(ToQt(paths.front()));
  });
  menu_->menu("Help")->addAction("Welcome", this, &MainWindow::showWelcome);
}

void MainWindow::addViewMenu() {
  QMenu* view = menu_->menu("View");
  int number = 0;
  for (const Task& task : tasks_) {
    QAction* action = view->addAction(task.button->text(), this, [this, task] { goTo(task); });
    action->setShortcut(QKeySequence(QStringLiteral("Ctrl+%1").arg(++number)));
  }
  view->addSeparator();
  QMenu* themes = view->addMenu("Colours");
  auto* group = new QActionGroup(themes);
  const Theme chosen = ThemeNamed(settings_.value("window/theme").toString()).value_or(Theme::System);
  for (const auto& [theme, text] :
       {std::pair{Theme::System, "As the system"}, {Theme::Light, "Light"}, {Theme::Dark, "Dark"}}) {
    QAction* action = themes->addAction(text, this, [this, theme = theme] {
      settings_.setValue("window/theme", ThemeWord(theme));
      ApplyTheme(theme);
    });
    action->setCheckable(true);
    action->setChecked(theme == chosen);
    group->addAction(action);
  }
  QAction* settings =
      view->addAction("Settings", this, [this] { page()->openSettings(!page()->settingsOpen()); });
  settings->setShortcut(QKeySequence("F9"));
  QAction* full =
      view->addAction("Full screen", this, [this](bool on) { on ? showFullScreen() : showNormal(); });
  full->setCheckable(true);
  full->setShortcut(QKeySequence("F11"));
}

void MainWindow::connectFrontEnd() {
  frontEnd_.setWindow(this);
  frontEnd_.openHelp = [this](int topic) { return openHelp(topic); };
  connect(&frontEnd_, &DesktopFrontEnd::recordsChanged, this, &MainWindow::refresh);
  connect(&frontEnd_, &DesktopFrontEnd::graphsChanged, this, &MainWindow::refreshGraphs);
  connect(&frontEnd_, &DesktopFrontEnd::progressed, status_, &MainStatus::showProgress);
  connect(status_, &MainStatus::stopPressed, this, [] { StopWork(); });
  connect(&frontEnd_, &DesktopFrontEnd::noted, status_, &MainStatus::showNote);
  connect(status_, &MainStatus::notesWanted, this, [] { PressMenu(*FindMenu("FxnNotes")); });
  connect(&frontEnd_, &DesktopFrontEnd::breathed, status_, &MainStatus::showFraction);
  connect(&frontEnd_, &DesktopFrontEnd::printWanted, this, [this](const Panel* panel) {
    for (const Task& task : tasks_) {
      if (&task.page->panel() == panel) PrintPage(*task.page);
    }
  });
  AddUserObserver({[this] { frontEnd_.scheduleRefresh(); },
                   [this](const std::string&) { frontEnd_.scheduleRefresh(); }, nullptr});
}

void MainWindow::restore() {
  resize(sizeHint().boundedTo(screen()->availableSize()));
  if (!restoreGeometry(settings_.value("window/geometry").toByteArray())) {
    setWindowState(windowState() | Qt::WindowMaximized);
  }
}

// -- Showing --

void MainWindow::refresh(const std::set<Graph*>& changed) {
  for (const Task& task : tasks_) {
    const bool inFront = IsInFront(task.page->panel());
    task.button->setChecked(inFront);
    if (!inFront) continue;
    const bool comes = pages_->currentWidget() != task.page;
    pages_->setCurrentWidget(task.page);
    task.page->refresh(comes ? task.page->graphs() : changed);
  }
  refreshDialogs(changed);
  menu_->refresh();
  stop_->setEnabled(Screen.busy > 0);
  status_->refresh();
  if (Screen.busy == 0) status_->showProgress(-1.0, {});
  refreshTitle();
}

void MainWindow::refreshGraphs(const std::set<Graph*>& changed) {
  for (const Task& task : tasks_) {
    if (pages_->currentWidget() == task.page) task.page->refreshGraphs(changed);
  }
  refreshDialogs(changed);
}

void MainWindow::refreshDialogs(const std::set<Graph*>& changed) {
  for (Panel& panel : Screen.panels) {
    if (!IsDialog(panel) || frontEnd_.runsModally(panel)) continue;
    PanelDialog*& dialog = dialogs_[&panel];
    if (panel.visible && dialog == nullptr) dialog = new PanelDialog(panel, this);
    if (dialog == nullptr) continue;
    if (panel.visible) dialog->refresh(changed);
    if (dialog->isVisible() != panel.visible) dialog->setVisible(panel.visible);
  }
}

void MainWindow::refreshTitle() {
  const QString path = ToQt(Model.ModelFileName);
  if (modelFile_ != Model.ModelFileName && QFileInfo(path).isFile()) settings_.addRecentFile(path);
  modelFile_ = Model.ModelFileName;
  const QString recording = ToQt(Trace.TraceFileName);
  if (traceFile_ != Trace.TraceFileName && QFileInfo(recording).isFile()) settings_.addRecentFile(recording);
  traceFile_ = Trace.TraceFileName;
  setWindowTitle(path.isEmpty() ? QStringLiteral("Zelvane") : QFileInfo(path).fileName() + " - Zelvane");
}

void MainWindow::refreshIcons() {
  for (const Task& task : tasks_) task.button->setIcon(ThemedIcon(task.decl->icon));
  for (const Tool& tool : Tools) {
    if (auto* action = findChild<QAction*>(QStringLiteral("tool/") + tool.icon)) {
      action->setIcon(ThemedIcon(tool.icon));
    }
  }
}

TaskPage* MainWindow::page() const {
  return static_cast<TaskPage*>(pages_->currentWidget());
}

std::vector<PanelDialog*> MainWindow::openDialogs() const {
  std::vector<PanelDialog*> open;
  for (const auto& [panel, dialog] : dialogs_) {
    if (dialog != nullptr && dialog->isVisible()) open.push_back(dialog);
  }
  return open;
}

// -- What the user does --

void MainWindow::goTo(const Task& task) {
  FinishTyping();
  MenuItem* command = FindMenu(task.decl->command);
  if (task.page != page() && command != nullptr) PressMenu(*command);
  refresh({});  // the button of the page in front shows as pressed, whichever was clicked
}

void MainWindow::fillRecentFiles() {
  recent_->clear();
  for (const QString& path : settings_.recentFiles()) {
    QString name = QFileInfo(path).fileName();
    QAction* action = recent_->addAction(name.replace('&', "&&"), this, [this, path] { openFile(path); });
    action->setToolTip(path);
  }
  recent_->setToolTipsVisible(true);
  if (recent_->isEmpty()) recent_->addAction("None yet")->setEnabled(false);
}

void MainWindow::openFile(const QString& path) {
  OpenFileByName(path.toStdString());
}

void MainWindow::choosePdf() {
  FinishTyping();
  const auto paths = frontEnd_.functions().files(
      {.title = "Page as PDF", .defaultName = "zelvane.pdf", .filter = "*.pdf", .save = true});
  if (!paths.empty() && !WritePagePdf(*page(), ToQt(paths.front()))) {
    MessagePopup(FileErrorTitle, CannotWritePdf + paths.front());
  }
}

void MainWindow::playScript(const QString& path) {
  FinishTyping();
  PlayScript(path, frontEnd_);
}

void MainWindow::showWelcome() {
  auto* welcome = new Welcome(DataFolder("models"), this);
  welcome->setAttribute(Qt::WA_DeleteOnClose);
  connect(welcome, &Welcome::modelChosen, this, &MainWindow::openFile);
  welcome->open();
}

bool MainWindow::openHelp(int topic) {
  if (help_ == nullptr) help_ = std::make_unique<HelpWindow>(DataFolder("help"));
  return help_->open(topic);
}

// -- Events --

void MainWindow::changeEvent(QEvent* event) {
  QMainWindow::changeEvent(event);
  if (event->type() == QEvent::PaletteChange) refreshIcons();
}

void MainWindow::closeEvent(QCloseEvent* event) {
  event->ignore();  // the program ends only after its own question
  if (Screen.busy > 0) {
    StopWork();
    closing_ = true;
  }
  if (!closing_) {
    FinishTyping();
    ClosePanel(PanelNamed(MainPanelName));
    return;
  }
  closing_ = Screen.busy > 0;
  QTimer::singleShot(StopPollMs, this, &QWidget::close);
}

void MainWindow::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape && Screen.busy > 0)
    StopWork();
  else
    QMainWindow::keyPressEvent(event);
}

void MainWindow::dragEnterEvent(QDragEnterEvent* event) {
  if (event->mimeData()->hasUrls()) TakeACopy(*event);
}

/// Some systems act on the answer to the last move, not on that to the drop.
void MainWindow::dragMoveEvent(QDragMoveEvent* event) {
  if (event->mimeData()->hasUrls()) TakeACopy(*event);
}

void MainWindow::dropEvent(QDropEvent* event) {
  TakeACopy(*event);
  QStringList paths;
  for (const QUrl& url : event->mimeData()->urls())
    paths << (url.isLocalFile() ? url.toLocalFile() : url.toString());
  // After the drop has ended: a message must not block the program that the files came from.
  QTimer::singleShot(0, this, [this, paths] {
    if (page()->panel().name == FitPanelName) {
      std::vector<std::string> files;
      for (const QString& path : paths) files.push_back(path.toStdString());
      return AddFilesToFit(files);
    }
    for (const QString& path : paths) openFile(path);
  });
}

}  // namespace zelvane
