// Waits until a widget is painted.
#pragma once

#include <QApplication>
#include <QEvent>
#include <QObject>
#include <QWidget>

namespace zelvane {

/// Counts the paints of a widget.
class PaintCount : public QObject {
 public:
  explicit PaintCount(QWidget& widget) { widget.installEventFilter(this); }

  /// Runs the event loop until the widget has been painted again.
  void await() {
    const int before = paints_;
    while (paints_ == before) QApplication::processEvents();
  }

  int count() const { return paints_; }

 private:
  bool eventFilter(QObject* /*watched*/, QEvent* event) override {
    paints_ += event->type() == QEvent::Paint;
    return false;
  }
  int paints_ = 0;
};

}  // namespace zelvane
