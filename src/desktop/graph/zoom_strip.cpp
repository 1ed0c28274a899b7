#include "desktop/graph/zoom_strip.h"

#include <QMouseEvent>
#include <QPainter>
#include <algorithm>

namespace zelvane {
namespace {

constexpr QColor SelectionColour(128, 128, 128);
constexpr double SelectionShare = 1.0 / 5.0;  // of the strip's thickness
constexpr int HoverAlpha = 28;

}  // namespace

ZoomStripArea::ZoomStripArea(Graph& graph, char axis, QWidget* parent)
    : QWidget(parent), graph_(graph), axis_(axis) {
  setCursor(axis == 'x' ? Qt::SizeHorCursor : Qt::SizeVerCursor);
  setContextMenuPolicy(Qt::PreventContextMenu);  // the right button shows help
  setObjectName(axis == 'x' ? "xStrip" : "yStrip");
}

double ZoomStripArea::along(const QMouseEvent* event) const {
  return axis_ == 'x' ? std::clamp(event->position().x(), 0.0, static_cast<double>(width()))
                      : std::clamp(event->position().y(), 0.0, static_cast<double>(height()));
}

PlotArea ZoomStripArea::area() const {
  return {static_cast<double>(width()), static_cast<double>(height())};
}

void ZoomStripArea::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  if (underMouse() || start_) {
    QColor tint = palette().color(QPalette::Highlight);
    tint.setAlpha(HoverAlpha);
    painter.fillRect(rect(), tint);
  }
  if (!start_) return;
  const double from = std::min(*start_, end_);
  const double length = std::max(*start_, end_) - from;
  const QRectF selection =
      axis_ == 'x' ? QRectF(from, 0.0, length, height() * SelectionShare)
                   : QRectF(width() * (1.0 - SelectionShare), from, width() * SelectionShare, length);
  painter.fillRect(selection, SelectionColour);
}

void ZoomStripArea::mousePressEvent(QMouseEvent* event) {
  if (event->button() == Qt::RightButton) MessagePopup(HelpTitle, ZoomStripHelp);
  if (event->button() != Qt::LeftButton) return;
  start_ = end_ = along(event);
  update();
}

void ZoomStripArea::mouseMoveEvent(QMouseEvent* event) {
  if (!start_) return;
  end_ = along(event);
  update();
}

void ZoomStripArea::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton || !start_) return;
  const double from = *start_;
  start_.reset();
  update();
  ZoomStrip(graph_, axis_, from, along(event), area());
  emit zoomed();
}

void ZoomStripArea::enterEvent(QEnterEvent* event) {
  QWidget::enterEvent(event);
  update();
}

void ZoomStripArea::leaveEvent(QEvent* event) {
  QWidget::leaveEvent(event);
  update();
}

}  // namespace zelvane
