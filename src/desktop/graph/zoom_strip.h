// The band along an axis where a drag zooms.
#pragma once

#include <QWidget>
#include <optional>

#include "screen/screen.h"
#include "screen/zoom_graph.h"

namespace zelvane {

/// Lies over the numbers of an axis, as long as the plot area, and is transparent. A drag zooms the axis to
/// the stretch that the mouse passed over; a right click shows the strip's help.
class ZoomStripArea : public QWidget {
  Q_OBJECT
 public:
  ZoomStripArea(Graph& graph, char axis, QWidget* parent);

 signals:
  void zoomed();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void enterEvent(QEnterEvent* event) override;
  void leaveEvent(QEvent* event) override;

 private:
  double along(const QMouseEvent* event) const;  // position along the strip, held within it
  PlotArea area() const;

  Graph& graph_;
  char axis_;
  std::optional<double> start_;  // where the drag began, pixels
  double end_ = 0.0;
};

}  // namespace zelvane
