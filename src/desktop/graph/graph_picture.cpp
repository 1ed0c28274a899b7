#include "desktop/graph/graph_picture.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "platform/index.h"

namespace zelvane {
namespace {

constexpr double LineWidth = 1.25;           // pixels; a line that is drawn smoothly
constexpr double DraftWidth = 1.0;           // the widest that Qt draws without an outline
constexpr double VectorColumnsPerPixel = 4;  // columns of a picture for print
constexpr std::size_t MostMarks = 20'000;    // points or crosses; more are drawn as columns
constexpr double MarkRadius = 2.0;           // pixels
constexpr std::size_t FewPoints = 3;         // a plot with no more points marks places, and is drawn larger
constexpr double FewRadius = 5.0;            // pixels
constexpr double FewWidth = 2.5;
constexpr double SmoothTravel = 12.0;  // heights of the plot that a smooth line may run up and down
constexpr double Excursion = 0.5;      // pixels; a smaller excursion beyond the ends of a column is not drawn
constexpr double Beyond = 10.0;        // pixels outside the plot area where lines are cut

double XOf(const Plot& plot, std::size_t i) {
  return plot.x.empty() ? plot.start + plot.step * static_cast<double>(i) : plot.x[i];
}

/// Returns the index of the first sample at or beyond `x`.
std::size_t FirstFrom(const Plot& plot, double x) {
  if (!plot.x.empty()) {
    return Index(std::lower_bound(plot.x.begin(), plot.x.end(), x) - plot.x.begin());
  }
  const double place = std::ceil((x - plot.start) / plot.step);
  return static_cast<std::size_t>(std::clamp(place, 0.0, static_cast<double>(plot.y.size())));
}

bool IsRising(const Plot& plot) {
  if (plot.x.empty()) return plot.step > 0.0;
  // NaN compares false, so a plot with NaN does not count as rising
  return std::adjacent_find(plot.x.begin(), plot.x.end(), [](double a, double b) { return !(a <= b); }) ==
         plot.x.end();
}

/// Returns the part of a line within a rectangle (Liang and Barsky 1984); nullopt when the line misses it.
std::optional<QLineF> Cut(const QLineF& line, const QRectF& rect) {
  double enter = 0.0;
  double leave = 1.0;
  const auto side = [&](double direction, double room) {
    if (direction == 0.0) return room >= 0.0;
    const double at = room / direction;
    if (direction < 0.0)
      enter = std::max(enter, at);
    else
      leave = std::min(leave, at);
    return enter <= leave;
  };
  const bool meets = side(-line.dx(), line.x1() - rect.left()) && side(line.dx(), rect.right() - line.x1()) &&
                     side(-line.dy(), line.y1() - rect.top()) && side(line.dy(), rect.bottom() - line.y1());
  if (!meets) return std::nullopt;
  return QLineF(line.pointAt(enter), line.pointAt(leave));
}

/// A line through points, cut at the borders of a rectangle: large numbers never reach the painter.
class CutLine {
 public:
  CutLine(QCPPainter* painter, const QRectF& rect)
      : painter_(painter),
        rect_(rect),
        oneStroke_(painter->modes().testFlag(QCPPainter::pmVectorized) ||
                   painter->pen().style() != Qt::SolidLine) {}
  ~CutLine() { lift(); }
  CutLine(const CutLine&) = delete;
  CutLine& operator=(const CutLine&) = delete;

  void to(const QPointF& point) {
    if (!std::isfinite(point.x()) || !std::isfinite(point.y())) {
      lift();
      return;
    }
    if (begun_) add(QLineF(last_, point));
    begun_ = true;
    last_ = point;
  }

  /// Begins a new line with the next point.
  void lift() {
    flush();
    begun_ = false;
  }

 private:
  /// Draws line by line. This is several times as fast as a smooth stroke of the whole, and looks the same in
  /// one colour.
  void flush() {
    if (oneStroke_ && points_.size() > 1) painter_->drawPolyline(points_);
    if (!oneStroke_) {
      std::vector<QLineF> lines;
      for (qsizetype i = 1; i < points_.size(); ++i) lines.emplace_back(points_[i - 1], points_[i]);
      painter_->drawLines(lines.data(), static_cast<int>(lines.size()));
    }
    points_.clear();
  }

  void add(const QLineF& line) {
    const auto seen = Cut(line, rect_);
    if (!seen) return;
    if (points_.isEmpty() || points_.last() != seen->p1()) {
      flush();
      points_ = {seen->p1()};
    }
    points_.append(seen->p2());
  }

  QCPPainter* painter_;
  QRectF rect_;
  bool oneStroke_;
  QPolygonF points_;
  QPointF last_;
  bool begun_ = false;
};

}  // namespace

GraphPicture::GraphPicture(const Graph& graph, QCPAxis* keyAxis, QCPAxis* valueAxis)
    : QCPAbstractPlottable(keyAxis, valueAxis), graph_(graph) {
  setSelectable(QCP::stNone);
}

void GraphPicture::sync() {
  if (graph_.revision == syncedRevision_) return;
  // Every change of the plots raises the revision by one. When it rose by the number of new plots, plots were
  // only added at the end.
  const bool addedOnly = graph_.plots.size() >= traces_.size() &&
                         graph_.revision - syncedRevision_ == graph_.plots.size() - traces_.size();
  if (!addedOnly) traces_.clear();
  for (std::size_t i = traces_.size(); i < graph_.plots.size(); ++i) {
    const Plot& plot = graph_.plots[i];
    traces_.push_back({BuildPyramid(plot.y), IsRising(plot)});
  }
  syncedRevision_ = graph_.revision;
}

double GraphPicture::selectTest(const QPointF& /*pos*/, bool /*onlySelectable*/,
                                QVariant* /*details*/) const {
  return -1.0;  // nothing here is selected by a click
}

QCPRange GraphPicture::getKeyRange(bool& foundRange, QCP::SignDomain /*inSignDomain*/) const {
  const auto range = DataRangeOf(graph_, 'x');
  foundRange = range.has_value();
  return range ? QCPRange(range->min, range->max) : QCPRange();
}

QCPRange GraphPicture::getValueRange(bool& foundRange, QCP::SignDomain /*inSignDomain*/,
                                     const QCPRange& /*inKeyRange*/) const {
  const auto range = DataRangeOf(graph_, 'y');
  foundRange = range.has_value();
  return range ? QCPRange(range->min, range->max) : QCPRange();
}

void GraphPicture::draw(QCPPainter* painter) {
  columnsPerPixel_ = painter->modes().testFlag(QCPPainter::pmVectorized)
                         ? VectorColumnsPerPixel
                         : painter->device()->devicePixelRatioF();
  for (std::size_t i = 0; i < traces_.size(); ++i) drawPlot(painter, graph_.plots[i], traces_[i]);
}

void GraphPicture::drawLegendIcon(QCPPainter* /*painter*/, const QRectF& /*rect*/) const {}

QPointF GraphPicture::pointOf(const Plot& plot, std::size_t i) const {
  return {mKeyAxis->coordToPixel(XOf(plot, i)), mValueAxis->coordToPixel(static_cast<double>(plot.y[i]))};
}

/// Returns the samples in view, and the next one on each side, to which lines lead.
GraphPicture::Stretch GraphPicture::inView(const Plot& plot, const Trace& trace) const {
  if (!trace.rising) return {0, plot.y.size()};
  const QCPRange view = mKeyAxis->range();
  std::size_t first = FirstFrom(plot, view.lower);
  std::size_t last = FirstFrom(plot, view.upper);
  if (first > 0) --first;
  last = std::min(last + 1, plot.y.size());
  return {std::min(first, last), last};
}

void GraphPicture::drawPlot(QCPPainter* painter, const Plot& plot, const Trace& trace) const {
  const Stretch samples = inView(plot, trace);
  if (samples.count() == 0) return;
  const double width = graph_.draft ? DraftWidth : plot.y.size() <= FewPoints ? FewWidth : LineWidth;
  const QColor colour =
      plot.faint ? FaintColour(plot.colour, colours_) : VisibleColour(plot.colour, colours_);
  QPen pen(colour, width);
  pen.setJoinStyle(Qt::RoundJoin);
  if (plot.style == PlotStyle::Dashed) pen.setStyle(Qt::DashLine);
  painter->setPen(pen);
  painter->setBrush(Qt::NoBrush);
  const bool marks = plot.style == PlotStyle::Points || plot.style == PlotStyle::Cross;
  const double columns = mKeyAxis->axisRect()->width() * columnsPerPixel_;
  const double most = marks ? static_cast<double>(MostMarks) : 2.0 * columns;
  if (trace.rising && static_cast<double>(samples.count()) > most) {
    drawColumns(painter, plot, trace);
  } else if (marks) {
    drawMarks(painter, plot, samples);
  } else {
    drawEach(painter, plot, samples);
  }
}

void GraphPicture::drawEach(QCPPainter* painter, const Plot& plot, Stretch samples) const {
  painter->setAntialiasing(plot.style != PlotStyle::Stair && !graph_.draft);
  CutLine line(painter, QRectF(clipRect()).adjusted(-Beyond, -Beyond, Beyond, Beyond));
  QPointF former;
  for (std::size_t i = samples.first; i < samples.last; ++i) {
    const QPointF point = pointOf(plot, i);
    if (plot.style == PlotStyle::Stair && i > samples.first) line.to({point.x(), former.y()});
    line.to(point);
    former = point;
  }
}

void GraphPicture::drawMarks(QCPPainter* painter, const Plot& plot, Stretch samples) const {
  const bool cross = plot.style == PlotStyle::Cross;
  const double radius = plot.y.size() <= FewPoints ? FewRadius : MarkRadius;
  painter->setAntialiasing(!cross);
  if (!cross) {
    painter->setBrush(painter->pen().color());
    painter->setPen(Qt::NoPen);
  }
  const QRectF area = QRectF(clipRect()).adjusted(-Beyond, -Beyond, Beyond, Beyond);
  for (std::size_t i = samples.first; i < samples.last; ++i) {
    const QPointF p = pointOf(plot, i);
    if (!std::isfinite(p.x()) || !std::isfinite(p.y()) || !area.contains(p)) continue;
    if (cross) {
      painter->drawLine(QPointF(p.x() - radius, p.y()), QPointF(p.x() + radius, p.y()));
      painter->drawLine(QPointF(p.x(), p.y() - radius), QPointF(p.x(), p.y() + radius));
    } else {
      painter->drawEllipse(p, radius, radius);
    }
  }
}

/// Returns the columns of the device, each with the values that the plot takes there, from the last sample
/// before the column on. Leaves out columns without a finite sample.
std::vector<GraphPicture::Column> GraphPicture::columnsOf(const Plot& plot, const Trace& trace) const {
  const QRectF area = clipRect();
  const double width = 1.0 / columnsPerPixel_;
  const auto count = static_cast<std::size_t>(std::ceil(area.width() * columnsPerPixel_));
  const auto inside = [&](float value) {
    return std::clamp(mValueAxis->coordToPixel(static_cast<double>(value)), area.top() - Beyond,
                      area.bottom() + Beyond);
  };
  std::vector<Column> columns;
  columns.reserve(count);
  std::size_t first = FirstFrom(plot, mKeyAxis->pixelToCoord(area.left()));
  for (std::size_t c = 0; c < count; ++c) {
    const double left = area.left() + static_cast<double>(c) * width;
    const std::size_t last = std::max(first, FirstFrom(plot, mKeyAxis->pixelToCoord(left + width)));
    if (last > first) {
      const MinMax range = RangeOf(trace.pyramid, plot.y, first > 0 ? first - 1 : 0, last);
      const double middle = left + width / 2.0;
      const float end = plot.y[last - 1];
      if (!range.empty) {
        columns.push_back({QLineF(middle, inside(range.max), middle, inside(range.min)),
                           QPointF(left + width, inside(std::isfinite(end) ? end : range.min))});
      }
    }
    first = last;
  }
  return columns;
}

/// Draws smoothly where the plot is calm, else without smoothing: a dense trace looks no better when smoothed
/// and would take ten times as long.
void GraphPicture::drawColumns(QCPPainter* painter, const Plot& plot, const Trace& trace) const {
  const std::vector<Column> columns = columnsOf(plot, trace);
  double travel = 0.0;
  for (const Column& column : columns) travel += column.extent.dy();
  if (plot.style == PlotStyle::Stair || travel > SmoothTravel * clipRect().height()) {
    drawDense(painter, columns);
  } else {
    drawCalm(painter, columns);
  }
}

void GraphPicture::drawDense(QCPPainter* painter, const std::vector<Column>& columns) const {
  painter->setAntialiasing(false);
  painter->setPen(QPen(painter->pen().color(), 0.0));
  const double shortest = 1.0 / columnsPerPixel_;  // a level stretch must be visible
  std::vector<QLineF> lines;
  lines.reserve(columns.size());
  for (const Column& column : columns) {
    lines.push_back(column.extent);
    if (lines.back().dy() < shortest) lines.back().setP2(lines.back().p1() + QPointF(0.0, shortest));
  }
  painter->drawLines(lines.data(), static_cast<int>(lines.size()));
}

/// Draws one line through the last samples of the columns, and through the extremes that lie beyond them.
void GraphPicture::drawCalm(QCPPainter* painter, const std::vector<Column>& columns) const {
  painter->setAntialiasing(!graph_.draft);
  CutLine line(painter, QRectF(clipRect()).adjusted(-Beyond, -Beyond, Beyond, Beyond));
  const double gap = 1.5 / columnsPerPixel_;
  const Column* former = nullptr;
  for (const Column& column : columns) {
    if (former != nullptr && column.end.x() - former->end.x() > gap) line.lift();
    const double from = former != nullptr ? former->end.y() : column.end.y();
    const double highest = std::min(from, column.end.y());
    const double lowest = std::max(from, column.end.y());
    if (column.extent.y1() < highest - Excursion) line.to(column.extent.p1());
    if (column.extent.y2() > lowest + Excursion) line.to(column.extent.p2());
    line.to(column.end);
    former = &column;
  }
}

}  // namespace zelvane
