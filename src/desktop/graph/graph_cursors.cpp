#include "desktop/graph/graph_cursors.h"

#include <algorithm>
#include <cmath>

#include "platform/index.h"
#include "screen/graph_text.h"

namespace zelvane {
namespace {

constexpr double Reach = 6.0;       // pixels to both sides of a cursor's line
constexpr double MarkLength = 7.0;  // pixels; cross at a cursor's height
constexpr double TagHeight = 14.0;  // pixels; number at the top of a cursor
constexpr int BandOpacity = 30;     // of 255

}  // namespace

GraphCursors::GraphCursors(Graph& graph, QCustomPlot* plot) : QCPLayerable(plot), graph_(graph) {}

int GraphCursors::at(const QPointF& pixel) const {
  if (!mParentPlot->axisRect()->rect().contains(pixel.toPoint())) return 0;
  const std::vector<QRectF> places = tags(graph_.cursors);
  const auto tag =
      std::find_if(places.begin(), places.end(), [&](const QRectF& t) { return t.contains(pixel); });
  if (tag != places.end()) return static_cast<int>(tag - places.begin()) + 1;
  int nearest = 0;
  double reach = Reach;
  for (std::size_t k = 0; k < graph_.cursors.size(); ++k) {
    const Cursor& cursor = graph_.cursors[k];
    const double distance = std::abs(mParentPlot->xAxis->coordToPixel(cursor.x) - pixel.x());
    if (!cursor.enabled || distance > reach) continue;
    nearest = static_cast<int>(k) + 1;
    reach = distance;
  }
  return nearest;
}

/// Returns the height of the plot that passes nearest to (x, y).
std::optional<double> GraphCursors::heightNear(double x, double y) const {
  std::optional<double> nearest;
  for (const Plot& plot : graph_.plots) {
    const auto height = HeightAt(plot, x);
    if (height && (!nearest || std::abs(*height - y) < std::abs(*nearest - y))) nearest = height;
  }
  return nearest;
}

void GraphCursors::drag(int cursor, const QPointF& pixel, bool follows) {
  const QRectF area = mParentPlot->axisRect()->rect();
  dragged_ = cursor;
  x_ = mParentPlot->xAxis->pixelToCoord(std::clamp(pixel.x(), area.left(), area.right()));
  y_ = mParentPlot->yAxis->pixelToCoord(std::clamp(pixel.y(), area.top(), area.bottom()));
  if (follows) y_ = heightNear(x_, y_).value_or(y_);
}

Refusal GraphCursors::drop() {
  const int cursor = dragged_;
  dragged_ = 0;
  return cursor != 0 ? MoveCursor(graph_, cursor, x_, y_) : Refusal{};
}

std::vector<Cursor> GraphCursors::shown() const {
  std::vector<Cursor> cursors = graph_.cursors;
  if (dragged_ != 0) {
    cursors[Index(dragged_) - 1].x = x_;
    cursors[Index(dragged_) - 1].y = y_;
  }
  return cursors;
}

void GraphCursors::applyDefaultAntialiasingHint(QCPPainter* painter) const {
  applyAntialiasingHint(painter, true, QCP::aeItems);
}

QRect GraphCursors::clipRect() const {
  return mParentPlot->axisRect()->rect();
}

/// Returns the rectangles of the cursors' numbers, empty for a cursor that does not show. The numbers of
/// close cursors are below one another, so that the mouse can reach each of them.
std::vector<QRectF> GraphCursors::tags(const std::vector<Cursor>& cursors) const {
  const QRectF area = clipRect();
  std::vector<QRectF> places(cursors.size());
  for (std::size_t k = 0; k < cursors.size(); ++k) {
    const double x = mParentPlot->xAxis->coordToPixel(cursors[k].x);
    if (!cursors[k].enabled || !(x >= area.left() && x <= area.right())) continue;
    const double left =
        std::clamp(x - TagHeight / 2.0, area.left(), std::max(area.left(), area.right() - TagHeight));
    QRectF tag(left, area.top(), TagHeight, TagHeight);
    for (std::size_t other = 0; other < k; ++other) {
      if (tag.intersects(places[other])) tag.moveTop(places[other].bottom());
    }
    places[k] = tag;
  }
  return places;
}

/// Draws the visible part of the stretch between two cursors. Cursors beyond the view are hidden, not off.
void GraphCursors::drawBand(QCPPainter* painter, const Cursor& from, const Cursor& to) const {
  const QRectF area = clipRect();
  const double left = std::max(mParentPlot->xAxis->coordToPixel(from.x), area.left());
  const double right = std::min(mParentPlot->xAxis->coordToPixel(to.x), area.right() + 1.0);
  if (!(left < right)) return;
  QColor colour = VisibleColour(from.colour, colours_);
  colour.setAlpha(BandOpacity);
  painter->fillRect(QRectF(left, area.top(), right - left, area.height()), colour);
}

void GraphCursors::draw(QCPPainter* painter) {
  const QRectF area = clipRect();
  const std::vector<Cursor> cursors = shown();
  for (const auto& [from, to] : bands_) {
    drawBand(painter, cursors[Index(from) - 1], cursors[Index(to) - 1]);
  }
  const std::vector<QRectF> places = tags(cursors);
  for (std::size_t k = 0; k < cursors.size(); ++k) {
    if (!cursors[k].enabled) continue;
    const double x = mParentPlot->xAxis->coordToPixel(cursors[k].x);
    if (!(x >= area.left() && x <= area.right())) continue;
    const double y = mParentPlot->yAxis->coordToPixel(cursors[k].y);
    const QColor colour = VisibleColour(cursors[k].colour, colours_);
    const bool dragged = dragged_ == static_cast<int>(k) + 1;
    painter->setPen(QPen(colour, dragged ? 1.5 : 1.0, Qt::DashLine));
    painter->setAntialiasing(false);
    painter->drawLine(QPointF(x, places[k].bottom()), QPointF(x, area.bottom()));
    painter->setAntialiasing(true);
    if (y >= area.top() && y <= area.bottom()) {
      painter->setPen(QPen(colour, 1.5));
      painter->drawLine(QPointF(x - MarkLength, y), QPointF(x + MarkLength, y));
      painter->drawLine(QPointF(x, y - MarkLength), QPointF(x, y + MarkLength));
    }
    const QRectF& tag = places[k];
    painter->setPen(Qt::NoPen);
    painter->setBrush(colour);
    painter->drawRoundedRect(tag, 3.0, 3.0);
    painter->setBrush(Qt::NoBrush);
    painter->setPen(TextOn(colour));
    painter->drawText(tag, Qt::AlignCenter, QString::number(k + 1));
  }
}

}  // namespace zelvane
