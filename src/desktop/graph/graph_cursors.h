// The cursors of a graph: lines that the user can drag.
#pragma once

#include <qcustomplot.h>

#include <optional>
#include <utility>
#include <vector>

#include "desktop/graph/graph_colours.h"
#include "screen/screen.h"

namespace zelvane {

/// Draws the enabled cursors of a graph over its plots, and finds the one under the mouse. A dragged cursor
/// shows at the mouse; the record keeps the old place until the drag ends.
class GraphCursors : public QCPLayerable {
  Q_OBJECT
 public:
  GraphCursors(Graph& graph, QCustomPlot* plot);

  void setColours(const GraphColours& colours) { colours_ = colours; }

  /// Sets pairs of cursors; the stretch between them is shaded in the colour of the first.
  void setBands(std::vector<std::pair<int, int>> bands) { bands_ = std::move(bands); }

  /// Returns the number of the cursor whose line or tag is within reach of a pixel, the nearest of several; 0
  /// = no cursor.
  int at(const QPointF& pixel) const;

  /// Shows the dragged cursor at a pixel. `follows` puts it at the height of the plot that is nearest to the
  /// mouse.
  void drag(int cursor, const QPointF& pixel, bool follows);

  /// Ends a drag with MoveCursor to the place shown. Returns the reason when the cursor may not move now.
  Refusal drop();
  void cancel() { dragged_ = 0; }
  bool dragging() const { return dragged_ != 0; }

  /// Returns all cursors at the places where they show.
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
  double x_ = 0.0;   // where it shows, in coordinates of the plot
  double y_ = 0.0;
};

}  // namespace zelvane
