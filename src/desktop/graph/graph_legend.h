// What the colours on a graph mean.
#pragma once

#include <QWidget>
#include <vector>

#include "screen/screen.h"

namespace zelvane {

struct LegendEntry {
  enum class Sign { Cursors, Cross, Points, Line };
  Sign sign;
  Colour colour;
  QString text;
  QString numbers;  // of the cursors
};

/// Signs with a word each, in one line.
class GraphLegend : public QWidget {
  Q_OBJECT
 public:
  GraphLegend(std::vector<LegendEntry> entries, QWidget* parent);

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return {80, sizeHint().height()}; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  std::vector<LegendEntry> entries_;
};

}  // namespace zelvane
