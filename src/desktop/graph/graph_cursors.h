// The cursors of a graph: lines that one can grab.
#pragma once

#include <qcustomplot.h>

#include <optional>
#include <utility>
#include <vector>

#include "desktop/graph/graph_colours.h"
#include "screen/screen.h"

namespace zelvane {

/// Draws the enabled cursors of a graph over its plots, and knows which one the mouse is at. While one is
/// dragged it shows at the mouse, and the record keeps the former place until the drag ends.
class GraphCursors : public QCPLayerable {
  Q_OBJECT
 public:
  GraphCursors(Graph& graph, QCustomPlot* plot);

  void setColours(const GraphColours& colours) { colours_ = colours; }

  /// Pairs of cursors with the stretch between them shaded in the colour of the first.
  void setBands(std::vector<std::pair<int, int>> bands) { bands_ = std::move(bands); }

  /// Number of the cursor within reach of a pixel, or whose tag is there; 0 = none. Of several the nearest.
  int at(const QPointF& pixel) const;

  /// The dragged cursor shows here. `follows` puts it at the height of the plot that is nearest to the mouse.
  void drag(int cursor, const QPointF& pixel, bool follows);

  /// Ends a drag: MoveCursor to where it shows. The reason when it may not move now.
  Refusal drop();
  void cancel() { dragged_ = 0; }
  bool dragging() const { return dragged_ != 0; }

  /// All cursors as they show.
  std::vector<Cursor> shown() const;

 protected:
  void applyDefaultAntialiasingHint(QCPPainter* painter) const override;
  void draw(QCPPainter* painter) override;
  QRect clipRect() const override;

 private:
  std::vector<QRectF> tags(const std::vector<Cursor>& cursors) const;
  void drawBand(QCPPainter* painter, const Cursor& from, const Cursor& to) const;
  std::optional<double> heightNear(double x, double y) const;

  Graph& graph_;
  GraphColours colours_;
  std::vector<std::pair<int, int>> bands_;
  int dragged_ = 0;  // number of the cursor
  double x_ = 0.0;   // where it shows
  double y_ = 0.0;
};

}  // namespace zelvane
