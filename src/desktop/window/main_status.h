// The status bar: model file, length of the sweep, progress, stop.
#pragma once

#include <QElapsedTimer>
#include <QStatusBar>

class QLabel;
class QProgressBar;
class QPushButton;

namespace zelvane {

class ElidedLabel;

class MainStatus : public QStatusBar {
  Q_OBJECT
 public:
  explicit MainStatus(QWidget* parent);

  /// Shows what the records hold.
  void refresh();

  /// `fraction` from 0 to 1; below 0 there is nothing to show.
  void showProgress(double fraction, const QString& text);

  /// The part that is done and the seconds since it began.
  void showFraction(double fraction);

 signals:
  void stopPressed();

 private:
  ElidedLabel* file_;
  ElidedLabel* data_;  // name of the recording on display; hidden without one
  QLabel* length_;
  QLabel* form_;
  QProgressBar* progress_;
  QPushButton* stop_;
  QString runText_;
  QElapsedTimer sinceStart_;  // of what the progress is of; invalid when nothing runs
};

}  // namespace zelvane
