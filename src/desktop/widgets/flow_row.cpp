#include "desktop/widgets/flow_row.h"

#include <algorithm>
#include <utility>

namespace zelvane {
namespace {

constexpr int ElasticWidth = 110;  // pixels; least width of a text or field that can be short

QSize WantedSize(const QWidget& widget) {
  return widget.sizeHint().expandedTo(widget.minimumSize()).boundedTo(widget.maximumSize());
}

int LeastWidth(const QWidget& widget) {
  const int wanted = WantedSize(widget).width();
  const int least = std::max(widget.minimumSizeHint().width(), widget.minimumWidth());
  return std::min(wanted, std::max(least, ElasticWidth));
}

}  // namespace

FlowRow::FlowRow(QWidget* parent) : WrappingWidget(parent) {
  hide();  // until it holds something
}

void FlowRow::add(QWidget* widget) {
  widget->setParent(this);
  items_.push_back({widget, atRight_});
  show();
}

QSize FlowRow::sizeHint() const {
  QSize size;
  for (const Item& item : items_) {
    if (item.widget->isHidden()) continue;
    const QSize wanted = WantedSize(*item.widget);
    size = {size.width() + wanted.width() + gap_, std::max(size.height(), wanted.height())};
  }
  return size;
}

QSize FlowRow::minimumSizeHint() const {
  QSize size;
  for (const Item& item : items_) {
    if (item.widget->isHidden()) continue;
    size = size.expandedTo({LeastWidth(*item.widget), WantedSize(*item.widget).height()});
  }
  return size;
}

std::vector<FlowRow::Line> FlowRow::linesOf(int width) const {
  std::vector<Line> lines;
  int used = 0;
  for (const Item& item : items_) {
    if (item.widget->isHidden()) continue;
    const int least = LeastWidth(*item.widget);
    if (lines.empty() || used + gap_ + least > width) {
      lines.emplace_back();
      used = least;
    } else {
      used += gap_ + least;
    }
    lines.back().push_back(item);
  }
  return lines;
}

int FlowRow::leastWidthOf(const Line& line) const {
  int width = gap_ * (static_cast<int>(line.size()) - 1);
  for (const Item& item : line) width += LeastWidth(*item.widget);
  return width;
}

/// Places one line and returns its height. Widgets that can be wider take the room left over, up to their
/// preferred width; the rest goes to the first widget whose size policy expands.
int FlowRow::placeLine(const Line& line, int top, int width) const {
  int left = std::max(0, width - leastWidthOf(line));
  int height = 0;
  for (const Item& item : line) height = std::max(height, WantedSize(*item.widget).height());
  std::vector<int> widths;
  for (const Item& item : line) {
    const int least = LeastWidth(*item.widget);
    const int more = std::min(left, WantedSize(*item.widget).width() - least);
    left -= more;
    widths.push_back(std::min(least + more, width));
  }
  for (std::size_t i = 0; i < line.size(); ++i) {
    const bool expands = (line[i].widget->sizePolicy().horizontalPolicy() & QSizePolicy::ExpandFlag) != 0;
    if (expands) widths[i] += std::exchange(left, 0);
  }
  int x = 0;
  for (std::size_t i = 0; i < line.size(); ++i) {
    if (line[i].atRight) x += std::exchange(left, 0);
    const int own = WantedSize(*line[i].widget).height();
    line[i].widget->setGeometry(x, top + (height - own) / 2, widths[i], own);
    x += widths[i] + gap_;
  }
  return height;
}

int FlowRow::place(int width) {
  int bottom = 0;
  for (const Line& line : linesOf(width)) {
    if (bottom > 0) bottom += gap_;
    bottom += placeLine(line, bottom, width);
  }
  return bottom;
}

}  // namespace zelvane
