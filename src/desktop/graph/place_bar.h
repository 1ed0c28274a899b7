// Where a part lies in its whole.
#pragma once

#include <QWidget>

#include "screen/screen.h"

namespace zelvane {

/// Draws a small graph record whose one line runs from the beginning to the end of the part, on an x axis as
/// long as the whole: a bar with the part filled.
class PlaceBar : public QWidget {
  Q_OBJECT
 public:
  explicit PlaceBar(const Graph& graph, QWidget* parent = nullptr);

  /// The part as drawn, widget coordinates; empty without one.
  QRectF part() const;

  QSize sizeHint() const override { return {320, 18}; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  const Graph& graph_;
};

}  // namespace zelvane
