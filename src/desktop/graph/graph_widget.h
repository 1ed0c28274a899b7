// A graph record as a widget.
#pragma once

#include <QSharedPointer>
#include <QWidget>
#include <vector>

#include "screen/screen.h"

class QCustomPlot;
class QLabel;

namespace zelvane {

class GraphCursors;
class GraphPicture;
class NumberTicker;
class ZoomBar;
class ZoomGraphButton;
class ZoomStripArea;

/// Draws one graph record: plots, axes, cursors with their readout, and for a zoom graph its strips, bars and
/// buttons. The mouse zooms, pans and moves cursors; the keys do the same:
///
///   arrows            scroll by a tenth      + -          zoom x
///   Shift Page Up, Down   scroll by a page   Ctrl + -     zoom y
///   Home              show all               Ctrl arrow   move the cursor last moved
///   Escape            return a dragged cursor
class GraphWidget : public QWidget {
  Q_OBJECT
 public:
  explicit GraphWidget(Graph& graph, QWidget* parent = nullptr);

  /// Shows what the record holds now, at the next turn of the event loop. Cheap when little has changed:
  /// plots are read again only when the record's revision rose.
  void refresh();

  Graph& graph() { return graph_; }
  const Graph& graph() const { return graph_; }
  QCustomPlot& plot() { return *plot_; }
  GraphCursors& cursors() { return *cursors_; }

  /// Returns whether a moved cursor takes the height of the trace.
  bool cursorsFollow() const { return cursorsFollow_; }
  void setCursorsFollow(bool follow) { cursorsFollow_ = follow; }

  /// Sets the cursors whose places show above the plot; empty = all.
  void setReadoutCursors(std::vector<int> cursors) { readoutCursors_ = std::move(cursors); }

  /// Sets the least size, in place of the usual one.
  void setLeastSize(QSize size) { least_ = size; }

  /// Shows or hides numbers and title of x.
  void setShowsX(bool shows);

  /// Stacks this graph on another one: the plots begin and end at the same place, and only the lower one shows
  /// numbers and title of x.
  void standOn(GraphWidget& below);

  // -- What mouse, keys and menu do --
  void showAll();
  void openMenu(const QPoint& globalPosition);
  void zoomAt(const QPointF& pixel, double factor, bool x, bool y);
  void dragCursor(int cursor, const QPointF& pixel);
  void dropCursor();
  void placeCorner(bool opposite, const QPointF& pixel);  // of the area that the user chooses
  void endAreaChoice();
  void bringCursors();
  void copyPicture();
  void copyData();
  void saveAs(const QString& ending);

  QSize sizeHint() const override { return {720, 320}; }
  QSize minimumSizeHint() const override { return least_; }

 protected:
  void changeEvent(QEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;
  void showEvent(QShowEvent* event) override;

 private:
  void addZoomControls();
  void applyColours(bool forPaper);
  void applyAxes();
  void showYTitle();
  void placePlot();
  void limitTicks();
  void keepMargin();
  void matchMargin(GraphWidget& other);
  void placeZoomControls();
  void showReadout();
  void tellDragged(int cursor);
  bool scrollKey(int key);
  bool zoomKey(int key, bool y);
  void shiftCursor(int key);
  template <typename Function>
  auto onPaper(Function&& function);

  Graph& graph_;
  QCustomPlot* plot_;
  GraphPicture* picture_;
  GraphCursors* cursors_;
  QLabel* readout_;
  QSharedPointer<NumberTicker> xTicker_;
  QSharedPointer<NumberTicker> yTicker_;
  bool cursorsFollow_ = true;
  std::vector<int> readoutCursors_;
  int lastCursor_ = 0;  // moved by the keys
  QSize least_{240, 120};
  bool showsX_ = true;  // numbers and title

  // -- of a zoom graph --
  std::vector<ZoomGraphButton*> buttons_;
  ZoomStripArea* xStrip_ = nullptr;
  ZoomStripArea* yStrip_ = nullptr;
  ZoomBar* xBar_ = nullptr;
  ZoomBar* yBar_ = nullptr;
};

}  // namespace zelvane
