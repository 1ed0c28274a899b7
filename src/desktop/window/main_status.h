// The status bar: model file, length of the sweep, notes, progress, stop.
#pragma once

#include <QElapsedTimer>
#include <QStatusBar>

class QLabel;
class QProgressBar;
class QPushButton;

namespace zelvane {

class ElidedLabel;
class NoteLine;

class MainStatus : public QStatusBar {
  Q_OBJECT
 public:
  explicit MainStatus(QWidget* parent);

  /// Shows what the records hold.
  void refresh();

  /// Shows a note for ten seconds, in place of the file and the lengths.
  void showNote(const QString& sentence);

  /// Shows progress: `fraction` from 0 to 1; below 0 hides it.
  void showProgress(double fraction, const QString& text);

  /// Shows the fraction done and the seconds since the operation began.
  void showFraction(double fraction);

 signals:
  void stopPressed();
  void notesWanted();

 private:
  NoteLine* note_;
  ElidedLabel* file_;
  ElidedLabel* data_;  // name of the recording on display; hidden when there is no recording
  QLabel* length_;
  QLabel* form_;
  QProgressBar* progress_;
  QPushButton* stop_;
  QString runText_;
  QElapsedTimer sinceStart_;  // since the operation began; invalid when nothing runs
};

}  // namespace zelvane
