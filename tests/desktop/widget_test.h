// Widgets on a screen in memory, used as a user does.
#pragma once

#include <QApplication>
#include <QMouseEvent>
#include <QTest>
#include <QWheelEvent>

#include "support/store_test.h"

namespace zelvane {

/// Runs everything that waits: queued replots, timers of 0 ms, paints.
inline void Settle() {
  for (int turn = 0; turn < 5; ++turn) QApplication::processEvents();
}

/// Presses at one point, moves to another in steps and releases, all with one button.
inline void Drag(QWidget* widget, QPoint from, QPoint to, Qt::MouseButton button = Qt::LeftButton) {
  const auto send = [&](QEvent::Type type, QPointF at, Qt::MouseButtons held) {
    QMouseEvent event(type, at, widget->mapToGlobal(at), type == QEvent::MouseMove ? Qt::NoButton : button,
                      held, Qt::NoModifier);
    QApplication::sendEvent(widget, &event);
  };
  constexpr int steps = 4;
  send(QEvent::MouseButtonPress, from, button);
  for (int i = 1; i <= steps; ++i)
    send(QEvent::MouseMove, from + (to - from) * (static_cast<double>(i) / steps), button);
  send(QEvent::MouseButtonRelease, to, Qt::NoButton);
  Settle();
}

/// Moves the mouse with the left button held.
inline void MoveWithButton(QWidget* widget, QPointF to) {
  QMouseEvent event(QEvent::MouseMove, to, widget->mapToGlobal(to), Qt::NoButton, Qt::LeftButton,
                    Qt::NoModifier);
  QApplication::sendEvent(widget, &event);
  Settle();
}

/// Turns the wheel by notches, away from the user for a positive number.
inline void Wheel(QWidget* widget, QPoint at, int notches, Qt::KeyboardModifiers keys = Qt::NoModifier) {
  QWheelEvent event(at, widget->mapToGlobal(at), {}, {0, 120 * notches}, Qt::NoButton, keys,
                    Qt::NoScrollPhase, false);
  QApplication::sendEvent(widget, &event);
  Settle();
}

/// Shows a widget at a size and waits until it is painted.
inline void ShowAt(QWidget& widget, QSize size) {
  widget.resize(size);
  widget.show();
  EXPECT_TRUE(QTest::qWaitForWindowExposed(&widget));
  Settle();
}

}  // namespace zelvane
