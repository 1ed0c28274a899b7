// The waveforms of a fit as a list of pairs.
#pragma once

#include <QFrame>
#include <QScrollArea>
#include <vector>

class QLabel;

namespace zelvane {

class ControlWidget;
class ElidedLabel;

/// Shows one waveform: the colour of its curve, a switch and the name for its recording and its stimulus. A click
/// beside the switches puts it on display.
class FitPair : public QFrame {
  Q_OBJECT
 public:
  FitPair(int wave, QWidget* parent);

  void refresh();

  /// Returns whether the line has a file or a switch that is on.
  bool used() const;

 protected:
  void mouseReleaseEvent(QMouseEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  ElidedLabel* addLine(int row, const char* control, const char* whenEmpty);

  int wave_;
  QLabel* number_;
  std::vector<ControlWidget*> switches_;
  ElidedLabel* data_;
  ElidedLabel* stimulus_;
};

/// Shows the pairs in use and one empty pair below them.
class FitPairs : public QScrollArea {
  Q_OBJECT
 public:
  explicit FitPairs(QWidget* parent);

  void refresh();

  QSize minimumSizeHint() const override { return {120, 96}; }

 private:
  std::vector<FitPair*> pairs_;
  QLabel* hint_;
};

}  // namespace zelvane
