// The plots of a graph record, drawn from a minimum and maximum per pixel column.
#pragma once

#include <qcustomplot.h>

#include <cstdint>
#include <span>
#include <vector>

#include "desktop/graph/graph_colours.h"
#include "screen/pyramid.h"
#include "screen/screen.h"

namespace zelvane {

/// Draws all plots of one graph. Millions of samples draw fast because each plot has a pyramid of minima and
/// maxima, built when the plot is added and kept for all later pans and zooms.
class GraphPicture : public QCPAbstractPlottable {
  Q_OBJECT
 public:
  GraphPicture(const Graph& graph, QCPAxis* keyAxis, QCPAxis* valueAxis);

  void setColours(const GraphColours& colours) { colours_ = colours; }

  /// Reads the plots that the record holds now. Call before every replot: draw() uses what sync() has read.
  void sync();

  double selectTest(const QPointF& pos, bool onlySelectable, QVariant* details) const override;
  QCPRange getKeyRange(bool& foundRange, QCP::SignDomain inSignDomain) const override;
  QCPRange getValueRange(bool& foundRange, QCP::SignDomain inSignDomain,
                         const QCPRange& inKeyRange) const override;

 protected:
  void draw(QCPPainter* painter) override;
  void drawLegendIcon(QCPPainter* painter, const QRectF& rect) const override;

 private:
  /// The data kept for each plot.
  struct Trace {
    Pyramid pyramid;
    bool rising = false;  // x never falls, so a stretch of x is a stretch of samples
  };
  /// Samples first..last - 1.
  struct Stretch {
    std::size_t first = 0;
    std::size_t last = 0;
    std::size_t count() const { return last - first; }
  };

  /// The drawing of a plot within one pixel column.
  struct Column {
    QLineF extent;  // vertical, from its largest value to its smallest
    QPointF end;    // the last sample
  };

  void drawPlot(QCPPainter* painter, const Plot& plot, const Trace& trace) const;
  void drawEach(QCPPainter* painter, const Plot& plot, Stretch samples) const;
  void drawMarks(QCPPainter* painter, const Plot& plot, Stretch samples) const;
  void drawColumns(QCPPainter* painter, const Plot& plot, const Trace& trace) const;
  void drawDense(QCPPainter* painter, const std::vector<Column>& columns) const;
  void drawCalm(QCPPainter* painter, const std::vector<Column>& columns) const;
  std::vector<Column> columnsOf(const Plot& plot, const Trace& trace) const;
  QPointF pointOf(const Plot& plot, std::size_t i) const;
  Stretch inView(const Plot& plot, const Trace& trace) const;

  const Graph& graph_;
  GraphColours colours_;
  std::vector<Trace> traces_;
  std::uint64_t syncedRevision_ = 0;
  double columnsPerPixel_ = 1.0;  // of the painter in use
};

}  // namespace zelvane
