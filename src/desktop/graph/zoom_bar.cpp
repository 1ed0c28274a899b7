#include "desktop/graph/zoom_bar.h"

#include <QMouseEvent>
#include <QPainter>
#include <algorithm>

namespace zelvane {
namespace {

constexpr int FirstWaitMs = 500;
constexpr int BackwardWaitMs = 100;  // to the left and upward
constexpr int ForwardWaitMs = 500;   // to the right and downward

}  // namespace

ZoomBar::ZoomBar(Graph& graph, char axis, QWidget* parent) : QWidget(parent), graph_(graph), axis_(axis) {
  setObjectName(axis == 'x' ? "xBar" : "yBar");
  setContextMenuPolicy(Qt::PreventContextMenu);
  connect(&repeat_, &QTimer::timeout, this, [this] {
    repeat_.setInterval(pages_ < 0 ? BackwardWaitMs : ForwardWaitMs);
    page();
  });
}

QRectF ZoomBar::thumb() const {
  const Thumb full = ZoomThumbOf(graph_, axis_, area());
  // A view that reaches beyond the full range has a thumb that is cut at the bar's ends.
  double start = std::clamp(full.start, 0.0, length());
  double end = std::clamp(full.start + full.length, 0.0, length());
  const double least = std::min(10.0, length());
  if (end - start < least) {
    start = std::min(start, length() - least);
    end = start + least;
  }
  return axis_ == 'x' ? QRectF(start, 0.0, end - start, height()) : QRectF(0.0, start, width(), end - start);
}

void ZoomBar::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.fillRect(rect(), palette().color(QPalette::Midlight));
  QColor ground = palette().color(QPalette::Window);
  ground.setAlpha(150);
  painter.fillRect(rect(), ground);
  painter.setRenderHint(QPainter::Antialiasing);
  QColor fill = palette().color(QPalette::WindowText);
  fill.setAlpha(grip_ ? 130 : 70);
  painter.setPen(Qt::NoPen);
  painter.setBrush(fill);
  painter.drawRoundedRect(thumb().adjusted(1.0, 3.0, -1.0, -3.0), 4.0, 4.0);
}

void ZoomBar::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  pressedAt_ = along(event->position());
  const QRectF held = thumb();
  const double start = along(held.topLeft());
  const double end = along(held.bottomRight());
  if (pressedAt_ >= start && pressedAt_ < end) {
    grip_ = Grip{-start, length() - end, 0.0};
    update();
    return;
  }
  pages_ = pressedAt_ < start ? -1 : 1;
  repeat_.start(FirstWaitMs);
  page();
}

void ZoomBar::page() {
  ZoomPage(graph_, axis_, pages_);
  update();
  emit scrolled();
}

void ZoomBar::mouseMoveEvent(QMouseEvent* event) {
  if (!grip_) return;
  const double way = std::clamp(along(event->position()) - pressedAt_, grip_->least, grip_->most);
  if (way == grip_->moved) return;
  ZoomThumb(graph_, axis_, way - grip_->moved, area());
  grip_->moved = way;
  update();
  emit scrolled();
}

void ZoomBar::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  grip_.reset();
  pages_ = 0;
  repeat_.stop();
  update();
}

}  // namespace zelvane
