#include "desktop/scheme/scheme_layout.h"

#include <QFontMetricsF>
#include <algorithm>

#include "desktop/widgets/text.h"
#include "model/model.h"
#include "model/scheme_text.h"

namespace zelvane {
namespace {

// Lengths in pixels at scale 1.
constexpr QSizeF DesignPitch(138.0, 72.0);  // least distance from state to state
constexpr double LeastScale = 0.75;
constexpr double LargestScale = 1.9;
constexpr QSizeF BoxSize(58.0, 38.0);
constexpr double LargestBoxShare = 0.44;  // share of the height from state to state
constexpr double BesideBox = 4.0;         // between a box and the numbers of a horizontal link
constexpr double LabelPixels = 13.0;
constexpr double NumberPixels = 11.5;
constexpr double SmallPixels = 9.5;
constexpr double Gap = 2.0;        // between a number and its badge, and beside arrows
constexpr double ArrowAway = 6.0;  // from the middle of a link to the numbers beside its arrows
constexpr double BadgePadding = 6.0;
constexpr double DotSize = 8.0;  // badge of a rate that depends on nothing
constexpr double MenuSize = 14.0;

int RowOf(int state) {
  return (state - 1) / GridColumns;
}
int ColumnOf(int state) {
  return (state - 1) % GridColumns;
}

QFont FontOfSize(QFont font, double pixels) {
  font.setPixelSize(std::max(7, static_cast<int>(pixels + 0.5)));
  return font;
}

}  // namespace

SchemeLayout::SchemeLayout() {
  for (int s = 1; s <= MaxStates; ++s) {
    const std::string index = FormatText("[%d]", s);
    states_[s] = {&ControlNamed("StateOn" + index), &ControlNamed("StateLabel" + index),
                  &ControlNamed("StateConductance" + index), &ControlNamed("StartOccupancy" + index),
                  FindControl("StateMonitored" + index)};
  }
  for (int n = 1; n <= MaxLinks; ++n) {
    const std::string index = FormatText("[%d]", n);
    links_[n] = {&ControlNamed("KOn" + index), &ControlNamed("KOff" + index), &ControlNamed("Kd" + index),
                 &ControlNamed("DependOn" + index), &ControlNamed("DependOff" + index)};
  }
}

QString SchemeLayout::rateText(const Control& rate) {
  return ToQt(RateText(rate.number));
}

QString SchemeLayout::badgeText(int link, bool forward) {
  const auto [low, high] = LinkTable[link];
  return ToQt(DependenceText(GridDependences(), forward ? low : high, forward ? high : low));
}

void SchemeLayout::place(const QSizeF& size, const QFont& font) {
  constexpr int rows = MaxStates / GridColumns;
  pitch_ = {size.width() / GridColumns, size.height() / rows};
  scale_ = std::clamp(std::min(pitch_.width() / DesignPitch.width(), pitch_.height() / DesignPitch.height()),
                      LeastScale, LargestScale);
  labelFont_ = FontOfSize(font, LabelPixels * scale_);
  labelFont_.setBold(true);
  numberFont_ = FontOfSize(font, NumberPixels * scale_);
  smallFont_ = FontOfSize(font, SmallPixels * scale_);
  items_.clear();
  for (int s = 1; s <= MaxStates; ++s) {
    const QRectF area = box(s);
    items_.push_back({SchemeItem::Kind::State, s, area, &stateOn(s)});
    const double menu = MenuSize * scale_;
    items_.push_back(
        {SchemeItem::Kind::Menu, s, QRectF(area.right() - menu, area.top(), menu, menu), &stateOn(s)});
    for (int n = 1; n <= MaxLinks; ++n) {
      if (LinkTable[n].low == s && rate(n, true).visible) placeLink(n);
    }
  }
}

QRectF SchemeLayout::box(int state) const {
  const QSizeF size(BoxSize.width() * scale_,
                    std::min(BoxSize.height() * scale_, pitch_.height() * LargestBoxShare));
  const QPointF centre((ColumnOf(state) + 0.5) * pitch_.width(), (RowOf(state) + 0.5) * pitch_.height());
  return {centre - QPointF(size.width() / 2.0, size.height() / 2.0), size};
}

bool SchemeLayout::horizontal(int link) const {
  const auto [low, high] = LinkTable[link];
  return RowOf(low) == RowOf(high);
}

/// Places the rates of a horizontal link above and below its arrows, those of an upright one beside them.
void SchemeLayout::placeLink(int link) {
  const auto [low, high] = LinkTable[link];
  const QRectF from = box(low);
  const QRectF to = box(high);
  const double line = QFontMetricsF(numberFont_).height();
  const double smallLine = QFontMetricsF(smallFont_).height();
  const double away = ArrowAway * scale_;
  QRectF kdRoom;
  if (horizontal(link)) {
    const double y = from.center().y();
    const double left = from.right() + BesideBox * scale_;
    const double width = to.left() - BesideBox * scale_ - left;
    const QRectF above(left, y - away - line, width, line);
    const QRectF below(left, y + away, width, line);
    placeRate(link, true, above, Qt::AlignHCenter);
    placeRate(link, false, below, Qt::AlignHCenter);
    kdRoom = QRectF(below.left(), below.bottom(), below.width(), smallLine);
  } else {
    const double x = from.center().x();
    const double y = (from.bottom() + to.top()) / 2.0;
    const double width = pitch_.width() / 2.0 - away - Gap * scale_;
    const bool withKd = !kd(link).text.empty();
    const double top = y - (withKd ? line + smallLine : line) / 2.0;
    placeRate(link, true, QRectF(x + away, top, width, line), Qt::AlignLeft);
    placeRate(link, false, QRectF(x - away - width, top, width, line), Qt::AlignRight);
    kdRoom = QRectF(x + away, top + line, width, smallLine);
  }
  if (!kd(link).text.empty()) items_.push_back({SchemeItem::Kind::Kd, link, kdRoom, &kd(link)});
}

/// Places a number and the badge for what it depends on side by side within `room`. The number is first, or
/// last when both are at the right edge.
void SchemeLayout::placeRate(int link, bool forward, const QRectF& room, Qt::Alignment alignment) {
  const LinkControls& controls = links_[link];
  const QString badge = badgeText(link, forward);
  const double gap = Gap * scale_;
  const double number =
      QFontMetricsF(numberFont_).horizontalAdvance(rateText(rate(link, forward))) + 2.0 * scale_;
  const double wanted = badge.isEmpty()
                            ? DotSize * scale_
                            : QFontMetricsF(smallFont_).horizontalAdvance(badge) + BadgePadding * scale_;
  const double mark = std::clamp(room.width() - number - gap, DotSize * scale_, wanted);
  const double width = number + gap + mark;
  double left = room.left();
  if (alignment == Qt::AlignHCenter) left = room.center().x() - width / 2.0;
  if (alignment == Qt::AlignRight) left = room.right() - width;
  const bool markFirst = alignment == Qt::AlignRight;
  const QRectF numberRect(markFirst ? left + mark + gap : left, room.top(), number, room.height());
  const QRectF markRect(markFirst ? left : left + number + gap, room.top() + 1.0, mark, room.height() - 2.0);
  items_.push_back({forward ? SchemeItem::Kind::RateOn : SchemeItem::Kind::RateOff, link, numberRect,
                    forward ? controls.on : controls.off});
  items_.push_back({forward ? SchemeItem::Kind::DependOn : SchemeItem::Kind::DependOff, link, markRect,
                    forward ? controls.dependOn : controls.dependOff});
}

const SchemeItem* SchemeLayout::at(const QPointF& point) const {
  // the last item is on top: the menu mark is over its box
  const auto hit = std::find_if(items_.rbegin(), items_.rend(),
                                [&](const SchemeItem& item) { return item.rect.contains(point); });
  return hit != items_.rend() ? &*hit : nullptr;
}

const SchemeItem* SchemeLayout::find(const SchemeItem& item) const {
  const auto it =
      std::find_if(items_.begin(), items_.end(), [&](const SchemeItem& other) { return other.same(item); });
  return it != items_.end() ? &*it : nullptr;
}

}  // namespace zelvane
