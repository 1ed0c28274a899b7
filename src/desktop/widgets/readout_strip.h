// Results in large figures side by side.
#pragma once

#include <QWidget>
#include <span>
#include <vector>

#include "screen/screen.h"

class QLabel;

namespace zelvane {

/// A row, or several, of readouts: the name small, the value large below it. A right click on one asks for
/// its help.
class ReadoutStrip : public QWidget {
  Q_OBJECT
 public:
  /// The controls by name, `columns` in a row.
  ReadoutStrip(std::span<const char* const> controls, int columns, QWidget* parent);

  /// Shows what the records hold; a value that is not there as a dash.
  void refresh();

 private:
  struct Cell {
    Control* control;
    QLabel* name;
    QLabel* value;
  };
  std::vector<Cell> cells_;
};

}  // namespace zelvane
