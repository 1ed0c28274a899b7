#include "desktop/graph/graph_mouse.h"

#include <cmath>

#include "desktop/graph/graph_cursors.h"
#include "desktop/graph/graph_widget.h"
#include "screen/zoom_graph.h"

namespace zelvane {
namespace {

constexpr double DragThreshold = 3.0;    // pixels; a shorter movement is a click
constexpr double ZoomPerNotch = 0.8;     // factor of the span for one notch of the wheel
constexpr double UnitsPerNotch = 120.0;  // units of QWheelEvent::angleDelta

}  // namespace

GraphMouse::GraphMouse(GraphWidget& widget) : QObject(&widget), widget_(widget), plot_(widget.plot()) {
  plot_.setMouseTracking(true);
  plot_.installEventFilter(this);
}

bool GraphMouse::eventFilter(QObject* /*watched*/, QEvent* event) {
  switch (event->type()) {
    case QEvent::MouseButtonPress:
      return press(*static_cast<QMouseEvent*>(event));
    case QEvent::MouseMove:
      return move(*static_cast<QMouseEvent*>(event));
    case QEvent::MouseButtonRelease:
      return release(*static_cast<QMouseEvent*>(event));
    case QEvent::MouseButtonDblClick:
      if (static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton) widget_.showAll();
      return true;
    case QEvent::ContextMenu:  // a plot keeps mouse events from its parent
      widget_.openMenu(static_cast<QContextMenuEvent*>(event)->globalPos());
      return true;
    case QEvent::Wheel:
      return wheel(*static_cast<QWheelEvent*>(event));
    default:
      return false;
  }
}

bool GraphMouse::press(const QMouseEvent& event) {
  if (event.button() != Qt::LeftButton) return true;
  widget_.setFocus(Qt::MouseFocusReason);
  pressed_ = event.position();
  cursor_ = widget_.cursors().at(pressed_);
  dragged_ = false;
  const bool inside = plot_.axisRect()->rect().contains(pressed_.toPoint());
  if (widget_.graph().areaCursor != 0 && (cursor_ == 0 || !inside)) {
    chooses_ = inside;
    if (inside)
      widget_.placeCorner(false, pressed_);
    else
      widget_.endAreaChoice();
    return true;
  }
  if (cursor_ == 0 && inside) {
    pan_ = Pan{pressed_, PictureRange(widget_.graph(), 'x'), PictureRange(widget_.graph(), 'y')};
  }
  return true;
}

bool GraphMouse::move(const QMouseEvent& event) {
  const QPointF way = event.position() - pressed_;
  const bool far = std::hypot(way.x(), way.y()) >= DragThreshold;
  if (cursor_ != 0) {
    const bool gone = dragged_ && !widget_.cursors().dragging();  // Escape returned it
    if (!gone && (far || dragged_)) widget_.dragCursor(cursor_, event.position());
    dragged_ = dragged_ || far;
  } else if (chooses_) {
    dragged_ = dragged_ || far;
  } else if (pan_) {
    if (!pan_->moved && !far) return true;
    pan_->moved = true;
    plot_.setCursor(Qt::ClosedHandCursor);
    const QRectF area = plot_.axisRect()->rect();
    ZoomPan(widget_.graph(), 'y', pan_->y, way.y() / area.height());
    ZoomPan(widget_.graph(), 'x', pan_->x, -way.x() / area.width());  // y may follow x
    widget_.refresh();
  } else {
    showPointer(event.position());
  }
  return true;
}

bool GraphMouse::release(const QMouseEvent& event) {
  if (event.button() != Qt::LeftButton) return true;
  if (cursor_ != 0 && widget_.cursors().dragging()) widget_.dropCursor();
  if (chooses_ && dragged_) widget_.placeCorner(true, event.position());
  cursor_ = 0;
  chooses_ = false;
  pan_.reset();
  showPointer(event.position());
  return true;
}

bool GraphMouse::wheel(const QWheelEvent& event) {
  // Some systems turn the wheel sideways while a modifier is down.
  const QPoint turned = event.angleDelta();
  const double notches = (turned.y() != 0 ? turned.y() : turned.x()) / UnitsPerNotch;
  if (notches == 0.0 || pan_ || cursor_ != 0) return true;
  const QRectF area = plot_.axisRect()->rect();
  const QPointF at = event.position();
  const bool besideX = at.y() > area.bottom();
  const bool besideY = at.x() < area.left();
  const bool onlyX = besideX || event.modifiers().testFlag(Qt::ControlModifier);
  const bool onlyY = besideY || event.modifiers().testFlag(Qt::ShiftModifier);
  widget_.zoomAt(at, std::pow(ZoomPerNotch, notches), onlyX || !onlyY, onlyY || !onlyX);
  return true;
}

void GraphMouse::showPointer(const QPointF& position) {
  const Qt::CursorShape free = widget_.graph().areaCursor != 0 ? Qt::CrossCursor : Qt::ArrowCursor;
  plot_.setCursor(widget_.cursors().at(position) != 0 ? Qt::SizeHorCursor : free);
}

}  // namespace zelvane
