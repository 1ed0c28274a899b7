#include "desktop/window/desktop_front_end.h"

#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QMessageBox>
#include <cstdio>

#include "desktop/widgets/text.h"
#include "desktop/window/panel_dialog.h"
#include "desktop/window/settings.h"
#include "screen/screen.h"

namespace zelvane {
namespace {

// Milliseconds between two repaints while a run computes. A run of many short channels pumps events and
// reports its progress far more often than anyone can see.
constexpr int BreathMs = 50;
constexpr int PumpMs = 20;

QMessageBox::Icon IconOf(MessageKind kind) {
  if (kind == MessageKind::Error) return QMessageBox::Critical;
  return kind == MessageKind::Warning ? QMessageBox::Warning : QMessageBox::Information;
}

void SetUp(QMessageBox& box, std::string_view title, std::string_view text) {
  box.setWindowTitle(title.empty() ? QStringLiteral("Zelvane") : ToQt(title));
  box.setTextFormat(Qt::PlainText);
  box.setText(ToQt(text));
}

/// Returns "*.mod;*.txt" in the form of Qt's dialogs.
QString FilterOf(const std::string& filter) {
  const QString patterns = ToQt(filter).replace(';', ' ').simplified();
  const QString all = QStringLiteral("All files (*)");
  if (patterns.isEmpty() || patterns == "*" || patterns == "*.*") return all;
  return QStringLiteral("Files (%1);;").arg(patterns) + all;
}

/// Returns the ending for a saved file when the user gives no ending: that of a filter with one pattern.
QString EndingOf(const std::string& filter) {
  const QString pattern = ToQt(filter);
  if (!pattern.startsWith("*.") || pattern.contains(';') || pattern.count('*') != 1) return {};
  return pattern.mid(2);
}

/// Returns where a dialog opens: folder and name of the request, or else the last folder.
QString StartOf(const FileRequest& request, const QString& lastFolder) {
  const QString folder = request.directory.empty() ? lastFolder : ToQt(request.directory);
  const QString name = ToQt(request.defaultName);
  if (name.isEmpty() || name.contains('*')) return folder;
  return QDir(folder).filePath(name);
}

}  // namespace

DesktopFrontEnd::DesktopFrontEnd(Settings& settings) : settings_(settings) {
  refreshTimer_.setSingleShot(true);
  refreshTimer_.setInterval(0);
  connect(&refreshTimer_, &QTimer::timeout, this, &DesktopFrontEnd::refreshNow);
  sinceEvents_.start();
  sinceProgress_.start();
}

FrontEnd DesktopFrontEnd::functions() {
  FrontEnd frontEnd;
  frontEnd.message = [this](MessageTitle title, std::string_view text) { showMessage(title, text); };
  frontEnd.note = [this](std::string_view sentence) { emit noted(ToQt(sentence)); };
  frontEnd.confirm = [this](std::string_view title, std::string_view text) { return ask(title, text); };
  frontEnd.files = [this](const FileRequest& request) { return chooseFiles(request); };
  frontEnd.modal = [this](Panel& panel, std::string_view text) { return runModal(panel, text); };
  frontEnd.pump = [this] { pump(); };
  frontEnd.console = [](std::string_view line) {
    std::fprintf(stderr, "%.*s\n", static_cast<int>(line.size()), line.data());
  };
  frontEnd.progress = [this](double fraction, std::string_view text) { showProgress(fraction, text); };
  frontEnd.panelChanged = [this](Panel&) { scheduleRefresh(); };
  frontEnd.graphChanged = [this](Graph& graph) {
    changedGraphs_.insert(&graph);
    if (!refreshTimer_.isActive()) refreshTimer_.start();
  };
  frontEnd.quit = [] { QCoreApplication::exit(0); };
  frontEnd.help = [this](int topic) { return openHelp && openHelp(topic); };
  frontEnd.print = [this](Panel& panel) {
    if (!unattended_) emit printWanted(&panel);
  };
  frontEnd.breathe = [this](double fraction) { breathe(fraction); };
  return frontEnd;
}

void DesktopFrontEnd::scheduleRefresh() {
  controlsChanged_ = true;
  if (!refreshTimer_.isActive()) refreshTimer_.start();
}

void DesktopFrontEnd::refreshNow() {
  refreshTimer_.stop();
  // A fit draws its graphs more often than anything else of its page.
  const bool graphsAlone = Screen.busy > 0 && !std::exchange(controlsChanged_, false);
  const std::set<Graph*> graphs = std::exchange(changedGraphs_, {});
  if (graphsAlone)
    emit graphsChanged(graphs);
  else
    emit recordsChanged(graphs);
}

void DesktopFrontEnd::showMessage(MessageTitle title, std::string_view text) {
  QMessageBox box(IconOf(title.kind), {}, {}, QMessageBox::Ok, QApplication::activeModalWidget());
  if (box.parentWidget() == nullptr) box.setParent(window_, box.windowFlags());
  SetUp(box, title.words, text);
  box.setObjectName("Message");
  box.exec();
}

bool DesktopFrontEnd::ask(std::string_view title, std::string_view text) {
  QMessageBox box(QMessageBox::Question, {}, {}, QMessageBox::Yes | QMessageBox::No, window_);
  SetUp(box, title, text);
  box.setObjectName("Question");
  box.setDefaultButton(QMessageBox::Yes);
  box.setEscapeButton(QMessageBox::No);
  return box.exec() == QMessageBox::Yes;
}

std::vector<std::string> DesktopFrontEnd::chooseFiles(const FileRequest& request) {
  QFileDialog dialog(window_, ToQt(request.title), StartOf(request, settings_.lastFolder()),
                     FilterOf(request.filter));
  dialog.setAcceptMode(request.save ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
  dialog.setFileMode(request.save       ? QFileDialog::AnyFile
                     : request.multiple ? QFileDialog::ExistingFiles
                                        : QFileDialog::ExistingFile);
  if (request.save) dialog.setDefaultSuffix(EndingOf(request.filter));
  if (const QString name = ToQt(request.defaultName); !name.isEmpty() && !name.contains('*')) {
    dialog.selectFile(name);
  }
  if (dialog.exec() != QDialog::Accepted) return {};
  settings_.setLastFolder(dialog.directory().absolutePath());
  std::vector<std::string> paths;
  for (const QString& path : dialog.selectedFiles()) paths.push_back(path.toStdString());
  return paths;
}

bool DesktopFrontEnd::runModal(Panel& panel, std::string_view text) {
  PanelDialog dialog(panel, window_, PanelDialog::Modal, ToQt(text));
  const auto connection = connect(this, &DesktopFrontEnd::recordsChanged, &dialog,
                                  [&dialog](const std::set<Graph*>& graphs) { dialog.refresh(graphs); });
  modal_.insert(&panel);
  bool accepted = true;
  if (unattended_) {
    dialog.open();
    if (modalShown) modalShown();
  } else {
    accepted = dialog.exec() == QDialog::Accepted;
  }
  modal_.erase(&panel);
  disconnect(connection);
  return accepted;
}

void DesktopFrontEnd::takeEvents() {
  QCoreApplication::processEvents();
  sinceEvents_.start();
}

void DesktopFrontEnd::pump() {
  if (Screen.busy == 0 || sinceEvents_.elapsed() >= PumpMs) takeEvents();
}

void DesktopFrontEnd::breathe(double fraction) {
  if (sinceEvents_.elapsed() < BreathMs) return;
  emit breathed(fraction);
  takeEvents();
}

void DesktopFrontEnd::showProgress(double fraction, std::string_view text) {
  if (fraction > 0.0 && sinceProgress_.elapsed() < PumpMs) return;
  emit progressed(fraction, ToQt(text));
  sinceProgress_.start();
}

}  // namespace zelvane
