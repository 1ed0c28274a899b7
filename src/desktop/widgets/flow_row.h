// A row of widgets that continues in further rows where the width ends.
#pragma once

#include <vector>

#include "desktop/widgets/wrapping_widget.h"

namespace zelvane {

/// Takes no room while it is empty.
class FlowRow : public WrappingWidget {
  Q_OBJECT
 public:
  explicit FlowRow(QWidget* parent);

  /// Appends a widget, which becomes a child of the row. Texts and fields that can be short are narrowed
  /// first; hidden widgets take no room. A widget whose size policy expands takes the room that its line
  /// leaves over.
  void add(QWidget* widget);

  /// Moves the widgets added after this call to the right edge of their row.
  void addStretch() { atRight_ = true; }

  void setGap(int pixels) { gap_ = pixels; }

  QSize sizeHint() const override;         // all in one row
  QSize minimumSizeHint() const override;  // the widest widget

 protected:
  int place(int width) override;

 private:
  struct Item {
    QWidget* widget;
    bool atRight;  // the spare room of its line lies to the left of all these items
  };
  using Line = std::vector<Item>;

  std::vector<Line> linesOf(int width) const;
  int leastWidthOf(const Line& line) const;
  int placeLine(const Line& line, int top, int width) const;

  std::vector<Item> items_;
  int gap_ = 6;
  bool atRight_ = false;
};

}  // namespace zelvane
