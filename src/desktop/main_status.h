// The status bar: model file, length of the sweep, progress, stop.
#pragma once

#include <QStatusBar>

class QLabel;
class QProgressBar;
class QPushButton;

namespace zelvane {

class MainStatus : public QStatusBar {
  Q_OBJECT
 public:
  explicit MainStatus(QWidget* parent);

  /// Shows what the records hold.
  void refresh();

  /// `fraction` from 0 to 1; below 0 there is nothing to show.
  void showProgress(double fraction, const QString& text);

 private:
  QLabel* file_;
  QLabel* length_;
  QLabel* form_;
  QProgressBar* progress_;
  QPushButton* stop_;
};

}  // namespace zelvane
