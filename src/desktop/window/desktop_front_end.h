// The functions of the window for the program: message boxes, dialogs, progress, repainting.
#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QPointer>
#include <QTimer>
#include <QWidget>
#include <functional>
#include <iosfwd>
#include <set>
#include <string>

#include "screen/front_end.h"

namespace zelvane {

class Settings;

/// Fills the FrontEnd of the program with Qt dialogs. Collects changes of records and sends one signal for
/// all changes at the next turn of the event loop.
class DesktopFrontEnd : public QObject {
  Q_OBJECT
 public:
  explicit DesktopFrontEnd(Settings& settings);

  /// Returns the functions. They keep a pointer to this object, which must outlive them.
  FrontEnd functions();

  /// Sets the parent of all later dialogs.
  void setWindow(QWidget* window) { window_ = window; }

  /// Sets whether a script runs the program. Nothing then waits for the user: a modal dialog shows what the
  /// script has filled in and closes.
  void setUnattended(bool unattended) { unattended_ = unattended; }

  /// Asks for a refresh after a change that no record reports.
  void scheduleRefresh();

  /// Sends the collected changes at once.
  void refreshNow();

  /// Returns whether a panel runs modally at this moment.
  bool runsModally(const Panel& panel) const { return modal_.contains(&panel); }

  std::function<bool(int topic)> openHelp;  // false = no such page
  std::function<void()> modalShown;         // called when a script's modal dialog shows, filled in

  /// Runs the lines of a script against the window and writes the events as objects, one a line. The program
  /// that opens the window sets it, because the command language is not part of this folder.
  std::function<void(std::istream& script, std::ostream& events)> playScript;

 signals:
  void recordsChanged(const std::set<zelvane::Graph*>& graphs);

  /// Sent instead while a command runs and has changed nothing but the plots of graphs.
  void graphsChanged(const std::set<zelvane::Graph*>& graphs);
  void progressed(double fraction, const QString& text);
  void noted(const QString& sentence);
  void breathed(double fraction);  // about 15 times a second while a run computes
  void printWanted(zelvane::Panel* panel);

 private:
  void showMessage(MessageTitle title, std::string_view text);
  bool ask(std::string_view title, std::string_view text);
  std::vector<std::string> chooseFiles(const FileRequest& request);
  bool runModal(Panel& panel, std::string_view text);
  void takeEvents();
  void pump();
  void breathe(double fraction);
  void showProgress(double fraction, std::string_view text);

  Settings& settings_;
  QPointer<QWidget> window_;
  QTimer refreshTimer_;
  QElapsedTimer sinceEvents_;
  QElapsedTimer sinceProgress_;
  std::set<Graph*> changedGraphs_;
  bool controlsChanged_ = true;  // since the last refresh
  std::set<const Panel*> modal_;
  bool unattended_ = false;
};

}  // namespace zelvane
