// The actions of the mouse on the plot area of a graph.
#pragma once

#include <qcustomplot.h>

#include <QObject>
#include <optional>

#include "screen/screen.h"

namespace zelvane {

class GraphWidget;

/// The wheel zooms at the pointer (with Ctrl x alone, with Shift y alone), a drag pans, a drag of a cursor
/// moves it, a double click shows all, and the right button opens the menu. While the user chooses an area, a
/// drag goes from corner to corner, and a click beside the plot ends the choice.
class GraphMouse : public QObject {
  Q_OBJECT
 public:
  explicit GraphMouse(GraphWidget& widget);
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  bool press(const QMouseEvent& event);
  bool move(const QMouseEvent& event);
  bool release(const QMouseEvent& event);
  bool wheel(const QWheelEvent& event);
  void showPointer(const QPointF& position);

  /// A pan under way: where it began and what the graph showed then.
  struct Pan {
    QPointF from;
    DataRange x;
    DataRange y;
    bool moved = false;
  };

  GraphWidget& widget_;
  QCustomPlot& plot_;
  std::optional<Pan> pan_;
  int cursor_ = 0;  // number of the cursor being dragged
  bool dragged_ = false;
  bool chooses_ = false;  // the button is down between the corners of an area
  QPointF pressed_;
};

}  // namespace zelvane
