// Results in large figures side by side.
#pragma once

#include <span>
#include <vector>

#include "desktop/widgets/wrapping_widget.h"
#include "screen/screen.h"

class QLabel;

namespace zelvane {

/// Shows readouts of one width in as many rows as the strip's width needs: the name small, the value large
/// below it. A right click on a readout asks for its help.
class ReadoutStrip : public WrappingWidget {
  Q_OBJECT
 public:
  /// Takes the names of the controls.
  ReadoutStrip(std::span<const char* const> controls, QWidget* parent);

  /// Shows what the records hold; a missing value as a dash.
  void refresh();

  /// Shows or hides the readouts from place `first`, counted from 0, to the last.
  void showFrom(int first, bool shown);

  /// Shows name and value in one line without a frame, for a low page.
  void setCompact(bool compact);

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 protected:
  int place(int width) override;

 private:
  struct Cell {
    Control* control;
    QWidget* frame;
    QLabel* name;
    QLabel* value;
  };

  void dress();
  QSize cellSize() const;
  std::vector<Cell> shownCells() const;

  std::vector<Cell> cells_;
  bool compact_ = false;
};

}  // namespace zelvane
