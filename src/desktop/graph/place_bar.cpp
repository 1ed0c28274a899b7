#include "desktop/graph/place_bar.h"

#include <QPainter>
#include <algorithm>

#include "desktop/widgets/text.h"
#include "desktop/window/theme.h"

namespace zelvane {
namespace {

constexpr double Narrowest = 2.0;  // pixels; the least width of a part, so that it is visible
constexpr double Radius = 4.0;

}  // namespace

PlaceBar::PlaceBar(const Graph& graph, QWidget* parent) : QWidget(parent), graph_(graph) {
  setObjectName("placeBar");
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  setToolTip(ToQt(graph.x.title));
  setAccessibleName(ToQt(graph.x.title));
}

QRectF PlaceBar::part() const {
  const auto range = DataRangeOf(graph_, 'x');
  const DataRange view = ViewRange(graph_, 'x');
  if (!range || !(view.max > view.min)) return {};
  const auto pixel = [&](double x) {
    return std::clamp((x - view.min) / (view.max - view.min), 0.0, 1.0) * width();
  };
  const double begin = std::min(pixel(range->min), width() - Narrowest);
  return {begin, 0.0, std::max(pixel(range->max) - begin, Narrowest), static_cast<double>(height())};
}

void PlaceBar::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(palette().color(QPalette::Mid));
  painter.setBrush(palette().color(QPalette::Base));
  painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), Radius, Radius);
  painter.setPen(Qt::NoPen);
  painter.setBrush(AccentColour());
  painter.drawRoundedRect(part().adjusted(0.0, 2.0, 0.0, -2.0), Radius - 2.0, Radius - 2.0);
}

}  // namespace zelvane
