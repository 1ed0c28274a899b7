#include "desktop/widgets/wrapping_widget.h"

#include <QEvent>

namespace zelvane {

WrappingWidget::WrappingWidget(QWidget* parent) : QWidget(parent) {
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void WrappingWidget::arrange() {
  if (!isVisible()) return;  // it has no width yet
  const int needed = place(width());
  if (needed != minimumHeight() || needed != maximumHeight()) setFixedHeight(needed);
}

bool WrappingWidget::event(QEvent* event) {
  if (event->type() == QEvent::LayoutRequest) {
    updateGeometry();
    arrange();
  }
  return QWidget::event(event);
}

void WrappingWidget::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  arrange();
}

void WrappingWidget::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  arrange();
}

}  // namespace zelvane
