// The small buttons of a zoom graph: four that halve or double a span, four that scroll.
#pragma once

#include <QAbstractButton>
#include <string>

#include "screen/screen.h"

namespace zelvane {

/// A press of a scroll button shifts the view, and repeats while it is held; a span button acts on a click.
/// `name` is that of ZoomButton ("xexpand" ... "down").
class ZoomGraphButton : public QAbstractButton {
  Q_OBJECT
 public:
  ZoomGraphButton(Graph& graph, std::string name, QWidget* parent);
  QSize sizeHint() const override;

 signals:
  void zoomed();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;

 private:
  void act();

  Graph& graph_;
  std::string name_;
  QString help_;
};

}  // namespace zelvane
