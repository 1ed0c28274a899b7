// The scroll bar of an axis: a thumb that shows where the view lies in the full range.
#pragma once

#include <QTimer>
#include <QWidget>
#include <optional>

#include "screen/screen.h"
#include "screen/zoom_graph.h"

namespace zelvane {

inline constexpr int ZoomBarThickness = 15;  // pixels

/// A drag of the thumb scrolls; a press beside it pages, and repeats while it is held.
class ZoomBar : public QWidget {
  Q_OBJECT
 public:
  ZoomBar(Graph& graph, char axis, QWidget* parent);

  /// Returns the thumb as drawn, in widget coordinates.
  QRectF thumb() const;

 signals:
  void scrolled();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;

 private:
  void page();
  double along(const QPointF& position) const { return axis_ == 'x' ? position.x() : position.y(); }
  double length() const { return axis_ == 'x' ? width() : height(); }
  PlotArea area() const { return {static_cast<double>(width()), static_cast<double>(height())}; }

  /// A drag of the thumb, in pixels from where it began.
  struct Grip {
    double least = 0.0;  // with the thumb at the start of the bar
    double most = 0.0;   // with the thumb at the end of the bar
    double moved = 0.0;
  };

  Graph& graph_;
  char axis_;
  std::optional<Grip> grip_;
  int pages_ = 0;  // direction of the paging under way, 0 = none
  double pressedAt_ = 0.0;
  QTimer repeat_;
};

}  // namespace zelvane
