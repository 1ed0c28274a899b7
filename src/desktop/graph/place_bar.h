// A bar that shows where a part lies in a whole.
#pragma once

#include <QWidget>

#include "screen/screen.h"

namespace zelvane {

/// Draws a small graph record as a bar with a filled part. The x axis of the record is as long as the whole,
/// and its one line runs from the beginning to the end of the part.
class PlaceBar : public QWidget {
  Q_OBJECT
 public:
  explicit PlaceBar(const Graph& graph, QWidget* parent = nullptr);

  /// Returns the part as drawn, in widget coordinates; empty when there is no part.
  QRectF part() const;

  QSize sizeHint() const override { return {320, 18}; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  const Graph& graph_;
};

}  // namespace zelvane
