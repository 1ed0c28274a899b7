#include "desktop/graph/graph_legend.h"

#include <QPainter>

#include "desktop/graph/graph_colours.h"

namespace zelvane {
namespace {

constexpr int SignWidth = 18;  // pixels
constexpr int SignGap = 5;     // from the sign to its word
constexpr int EntryGap = 8;
constexpr int LineGap = 4;
constexpr double MarkRadius = 4.0;

int WidthOfSign(const LegendEntry& entry, const QFontMetrics& metrics) {
  return entry.sign == LegendEntry::Sign::Cursors ? metrics.horizontalAdvance(entry.numbers) + 8 : SignWidth;
}

int WidthOf(const LegendEntry& entry, const QFontMetrics& metrics) {
  return WidthOfSign(entry, metrics) + SignGap + metrics.horizontalAdvance(entry.text) + EntryGap;
}

void DrawSign(QPainter& painter, const LegendEntry& entry, const QRectF& box, const QColor& colour) {
  const QPointF c = box.center();
  painter.setPen(QPen(colour, 2.0));
  switch (entry.sign) {
    case LegendEntry::Sign::Cursors:
      painter.setPen(Qt::NoPen);
      painter.setBrush(colour);
      painter.drawRoundedRect(box.adjusted(0, 1, 0, -1), 3, 3);
      painter.setBrush(Qt::NoBrush);
      painter.setPen(TextOn(colour));
      painter.drawText(box, Qt::AlignCenter, entry.numbers);
      break;
    case LegendEntry::Sign::Cross:
      painter.drawLine(c - QPointF(MarkRadius, 0), c + QPointF(MarkRadius, 0));
      painter.drawLine(c - QPointF(0, MarkRadius), c + QPointF(0, MarkRadius));
      break;
    case LegendEntry::Sign::Points:
      painter.setPen(Qt::NoPen);
      painter.setBrush(colour);
      painter.drawEllipse(c, MarkRadius, MarkRadius);
      painter.setBrush(Qt::NoBrush);
      break;
    case LegendEntry::Sign::Line:
      painter.drawLine(QPointF(box.left(), c.y()), QPointF(box.right(), c.y()));
      break;
  }
}

}  // namespace

GraphLegend::GraphLegend(std::vector<LegendEntry> entries, QWidget* parent)
    : WrappingWidget(parent), entries_(std::move(entries)), places_(entries_.size()) {}

QSize GraphLegend::sizeHint() const {
  int width = 0;
  for (const LegendEntry& entry : entries_) width += WidthOf(entry, fontMetrics());
  return {width, fontMetrics().height() + LineGap};
}

int GraphLegend::place(int width) {
  const int line = fontMetrics().height() + LineGap;
  QPoint next(0, 0);
  for (std::size_t i = 0; i < entries_.size(); ++i) {
    const int own = WidthOf(entries_[i], fontMetrics());
    if (next.x() > 0 && next.x() + own - EntryGap > width) next = {0, next.y() + line};
    places_[i] = next;
    next.rx() += own;
  }
  update();
  return next.y() + line;
}

void GraphLegend::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const GraphColours colours = ColoursOf(palette());
  const int line = fontMetrics().height() + LineGap;
  for (std::size_t i = 0; i < entries_.size(); ++i) {
    const LegendEntry& entry = entries_[i];
    const QRectF box(places_[i].x(), places_[i].y(), WidthOfSign(entry, fontMetrics()), line);
    DrawSign(painter, entry, box, VisibleColour(entry.colour, colours));
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawText(QRectF(box.right() + SignGap, box.top(), width(), line), Qt::AlignVCenter, entry.text);
  }
}

}  // namespace zelvane
