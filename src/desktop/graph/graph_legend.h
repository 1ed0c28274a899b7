// The legend of a graph: the meaning of its colours.
#pragma once

#include <vector>

#include "desktop/widgets/wrapping_widget.h"
#include "screen/screen.h"

namespace zelvane {

struct LegendEntry {
  enum class Sign { Cursors, Cross, Points, Line };
  Sign sign;
  Colour colour;
  QString text;
  QString numbers;  // numbers of the cursors
};

/// Shows each sign with a word, in as many lines as the width needs.
class GraphLegend : public WrappingWidget {
  Q_OBJECT
 public:
  GraphLegend(std::vector<LegendEntry> entries, QWidget* parent);

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return {LeastWidth, sizeHint().height()}; }

 protected:
  int place(int width) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  static constexpr int LeastWidth = 140;  // pixels; every entry fits

  std::vector<LegendEntry> entries_;
  std::vector<QPoint> places_;  // places of the entries
};

}  // namespace zelvane
