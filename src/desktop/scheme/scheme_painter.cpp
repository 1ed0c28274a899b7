#include "desktop/scheme/scheme_painter.h"

#include <QPainter>
#include <QPainterPath>
#include <algorithm>

#include "desktop/scheme/scheme_colours.h"
#include "desktop/widgets/text.h"
#include "screen/entry.h"

namespace zelvane {
namespace {

// Lengths in pixels at scale 1.
constexpr double CornerRadius = 6.0;
constexpr double LineWidth = 1.3;
constexpr double ArrowClear = 7.0;  // from a box to the end of an arrow
constexpr double ArrowApart = 2.2;  // from the middle of a link to each of its arrows
constexpr double HeadLength = 7.0;
constexpr double HeadWidth = 4.0;
constexpr double GaugeWidth = 3.5;
constexpr double TriangleSize = 3.5;

constexpr Colour OpenTint{240, 190, 70};  // states that conduct
constexpr Colour MonitoredBlue{0, 90, 200};

QColor WithAlpha(QColor colour, int alpha) {
  colour.setAlpha(alpha);
  return colour;
}

/// Returns as much of a list of words as fits: all, or the first with "+" for the rest, cut if need be.
QString Fitting(const QString& words, const QFontMetricsF& metrics, double width) {
  if (metrics.horizontalAdvance(words) <= width) return words;
  const qsizetype comma = words.indexOf(QLatin1Char(','));
  const QString rest = comma < 0 ? QString() : QStringLiteral("+");
  QString first = words.left(comma);
  while (first.size() > 1 && metrics.horizontalAdvance(first + rest) > width) first.chop(1);
  return first.trimmed() + rest;
}

class SchemePainter {
 public:
  SchemePainter(QPainter& painter, const SchemeLayout& layout, const QPalette& palette,
                const SchemeMarks& marks)
      : painter_(painter),
        layout_(layout),
        marks_(marks),
        palette_(palette),
        colours_(ColoursOf(palette)),
        k_(layout.scale()) {}

  void paint() {
    painter_.setRenderHint(QPainter::Antialiasing);
    for (int n = 1; n <= MaxLinks; ++n) {
      if (layout_.rate(n, true).visible) arrows(n);
    }
    for (int s = 1; s <= MaxStates; ++s) state(s);
    for (const SchemeItem& item : layout_.items()) {
      if (isEdited(item)) continue;
      if (item.isRate()) rate(item);
      if (item.isBadge()) badge(item);
      if (item.kind == SchemeItem::Kind::Kd) kd(item);
    }
    focusFrame();
  }

 private:
  bool isEdited(const SchemeItem& item) const {
    return marks_.edited != nullptr && marks_.edited->same(item);
  }
  bool isHovered(const SchemeItem& item) const {
    return marks_.hovered != nullptr && marks_.hovered->same(item);
  }
  QColor faint(int alpha) const { return WithAlpha(colours_.text, alpha); }
  QColor green() const { return DependentColour(palette_); }
  QColor linkColour(int n) const { return layout_.rate(n, true).colour.empty() ? colours_.text : green(); }

  /// Draws one arrow with half a head, on its outer side, as chemists draw the steps of an equilibrium.
  void harpoon(const QPointF& from, const QPointF& to, const QPointF& outward) {
    const QPointF along = (to - from) / QLineF(from, to).length();
    QPainterPath head;
    head.moveTo(to);
    head.lineTo(to - along * HeadLength * k_ + outward * HeadWidth * k_);
    head.lineTo(to - along * HeadLength * k_ * 0.75);
    head.closeSubpath();
    painter_.drawLine(from, to - along);
    painter_.fillPath(head, painter_.pen().color());
  }

  void arrows(int n) {
    const auto [low, high] = LinkTable[n];
    const bool across = layout_.horizontal(n);
    const QRectF a = layout_.box(low);
    const QRectF b = layout_.box(high);
    const double clear = ArrowClear * k_;
    const QPointF start =
        across ? QPointF(a.right() + clear, a.center().y()) : QPointF(a.center().x(), a.bottom() + clear);
    const QPointF end =
        across ? QPointF(b.left() - clear, b.center().y()) : QPointF(b.center().x(), b.top() - clear);
    // the forward arrow is above the backward one, or to its right
    const QPointF outward = across ? QPointF(0.0, -1.0) : QPointF(1.0, 0.0);
    const QPointF apart = outward * ArrowApart * k_;
    painter_.setPen(QPen(linkColour(n), LineWidth * k_, Qt::SolidLine, Qt::FlatCap));
    harpoon(start + apart, end + apart, outward);
    harpoon(end - apart, start - apart, -outward);
  }

  void state(int s) {
    const QRectF box = layout_.box(s);
    const bool on = layout_.stateOn(s).number != 0.0;
    const bool hovered =
        marks_.hovered != nullptr && marks_.hovered->number == s &&
        (marks_.hovered->kind == SchemeItem::Kind::State || marks_.hovered->kind == SchemeItem::Kind::Menu);
    if (on) {
      frame(s, box);
      words(s, box);
      extras(s, box);
    } else {
      painter_.setPen(QPen(faint(hovered ? 170 : 70), k_, Qt::DashLine));
      painter_.setBrush(Qt::NoBrush);
      painter_.drawRoundedRect(box, CornerRadius * k_, CornerRadius * k_);
      painter_.setPen(faint(hovered ? 220 : 110));
      painter_.setFont(layout_.numberFont());
      painter_.drawText(box, Qt::AlignCenter, QString::number(s));
    }
    if (on || hovered) triangle(s, box, hovered);
  }

  void frame(int s, const QRectF& box) {
    const bool conducts = layout_.stateConductance(s).number > 0.0;
    QPainterPath outline;
    outline.addRoundedRect(box, CornerRadius * k_, CornerRadius * k_);
    painter_.fillPath(outline, colours_.background);
    if (conducts)
      painter_.fillPath(outline, WithAlpha(QColor(OpenTint.red, OpenTint.green, OpenTint.blue), 75));
    gauge(s, box, outline);
    painter_.setPen(QPen(colours_.text, LineWidth * k_));
    painter_.setBrush(Qt::NoBrush);
    painter_.drawPath(outline);
  }

  /// Draws the starting occupancy as the level at the left side of the box.
  void gauge(int s, const QRectF& box, const QPainterPath& outline) {
    const double share = std::clamp(layout_.startOccupancy(s).number, 0.0, 1.0);
    if (!(share > 0.0)) return;
    painter_.save();
    painter_.setClipPath(outline, Qt::IntersectClip);
    painter_.fillRect(QRectF(box.left(), box.bottom() - box.height() * share, (GaugeWidth + 1.0) * k_,
                             box.height() * share),
                      faint(130));
    painter_.restore();
  }

  void words(int s, const QRectF& box) {
    const QString label = ToQt(layout_.stateLabel(s).text);
    const double conductance = layout_.stateConductance(s).number;
    const QString below = conductance > 0.0 ? ToQt(FormatText("%.0fpS", conductance)) : QString();
    const QRectF inner = box.adjusted((GaugeWidth + 3.0) * k_, 2.0 * k_, -4.0 * k_, -2.0 * k_);
    const QRectF upper = below.isEmpty() ? inner : inner.adjusted(0.0, 0.0, 0.0, -inner.height() * 0.42);
    painter_.setFont(layout_.labelFont());
    painter_.setPen(colours_.text);
    const QFontMetricsF metrics(layout_.labelFont());
    painter_.drawText(
        upper, Qt::AlignCenter,
        metrics.elidedText(label.isEmpty() ? QString::number(s) : label, Qt::ElideRight, upper.width()));
    painter_.setFont(layout_.smallFont());
    if (!below.isEmpty()) {
      painter_.drawText(inner.adjusted(0.0, inner.height() * 0.55, 0.0, 0.0), Qt::AlignCenter, below);
    }
    if (label.isEmpty()) return;
    painter_.setPen(faint(130));
    painter_.drawText(QRectF(box.left() + 1.0, box.top() - 1.0 - QFontMetricsF(layout_.smallFont()).height(),
                             box.width(), box.height()),
                      Qt::AlignLeft | Qt::AlignTop, QString::number(s));
  }

  /// Draws a small wave on a monitored state.
  void extras(int s, const QRectF& box) {
    const Control* monitored = layout_.monitored(s);
    if (monitored == nullptr || monitored->number == 0.0) return;
    const QPointF at = box.topRight() + QPointF(-14.0 * k_, -6.0 * k_);
    QPainterPath wave(at);
    wave.cubicTo(at + QPointF(3.0, -7.0) * k_, at + QPointF(5.0, -7.0) * k_, at + QPointF(7.0, 0.0) * k_);
    wave.cubicTo(at + QPointF(9.0, 5.0) * k_, at + QPointF(11.0, 5.0) * k_, at + QPointF(13.0, -2.0) * k_);
    painter_.setBrush(Qt::NoBrush);
    painter_.setPen(QPen(VisibleColour(MonitoredBlue, colours_), 1.6 * k_));
    painter_.drawPath(wave);
  }

  void triangle(int s, const QRectF& box, bool hovered) {
    const bool strong = marks_.hovered != nullptr && marks_.hovered->kind == SchemeItem::Kind::Menu &&
                        marks_.hovered->number == s;
    const QPointF at = box.topRight() + QPointF(-7.0, 7.0) * k_;
    const double size = TriangleSize * k_;
    QPainterPath path(at + QPointF(-size, -size / 2.0));
    path.lineTo(at + QPointF(size, -size / 2.0));
    path.lineTo(at + QPointF(0.0, size * 0.8));
    path.closeSubpath();
    painter_.fillPath(path, faint(strong ? 255 : hovered ? 170 : 70));
  }

  void highlight(const SchemeItem& item) {
    if (!isHovered(item)) return;
    painter_.setPen(Qt::NoPen);
    painter_.setBrush(WithAlpha(palette_.color(QPalette::Highlight), 50));
    painter_.drawRoundedRect(item.rect, 3.0 * k_, 3.0 * k_);
  }

  void rate(const SchemeItem& item) {
    highlight(item);
    painter_.setFont(layout_.numberFont());
    painter_.setPen(item.control->colour.empty() ? colours_.text : green());
    painter_.drawText(item.rect, Qt::AlignCenter, SchemeLayout::rateText(*item.control));
  }

  void badge(const SchemeItem& item) {
    const QString text = SchemeLayout::badgeText(item.number, item.forward());
    const bool hovered = isHovered(item);
    if (text.isEmpty()) {  // a faint ring where a dependence could be
      const double radius = 2.4 * k_;
      painter_.setBrush(hovered ? WithAlpha(palette_.color(QPalette::Highlight), 120)
                                : QColor(Qt::transparent));
      painter_.setPen(QPen(faint(hovered ? 255 : 100), k_));
      painter_.drawEllipse(item.rect.center(), hovered ? radius * 1.4 : radius,
                           hovered ? radius * 1.4 : radius);
      return;
    }
    painter_.setPen(Qt::NoPen);
    painter_.setBrush(WithAlpha(green(), hovered ? 255 : 225));
    painter_.drawRoundedRect(item.rect, 4.0 * k_, 4.0 * k_);
    painter_.setPen(colours_.background);
    painter_.setFont(layout_.smallFont());
    const QFontMetricsF metrics(layout_.smallFont());
    painter_.drawText(item.rect, Qt::AlignCenter, Fitting(text, metrics, item.rect.width() - 3.0 * k_));
  }

  void kd(const SchemeItem& item) {
    painter_.setFont(layout_.smallFont());
    painter_.setPen(green());
    const Qt::Alignment side = layout_.horizontal(item.number) ? Qt::AlignHCenter : Qt::AlignLeft;
    painter_.drawText(item.rect, side | Qt::AlignVCenter | Qt::TextDontClip, ToQt(item.control->text));
  }

  void focusFrame() {
    if (marks_.focused == nullptr || isEdited(*marks_.focused)) return;
    painter_.setBrush(Qt::NoBrush);
    painter_.setPen(QPen(palette_.color(QPalette::Highlight), 2.0 * k_));
    painter_.drawRoundedRect(marks_.focused->rect.adjusted(-2.0, -2.0, 2.0, 2.0), CornerRadius * k_,
                             CornerRadius * k_);
  }

  QPainter& painter_;
  const SchemeLayout& layout_;
  const SchemeMarks& marks_;
  const QPalette& palette_;
  GraphColours colours_;
  double k_;
};

}  // namespace

void PaintScheme(QPainter& painter, const SchemeLayout& layout, const QPalette& palette,
                 const SchemeMarks& marks) {
  SchemePainter(painter, layout, palette, marks).paint();
}

}  // namespace zelvane
