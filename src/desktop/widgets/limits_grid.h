// The rows of FitLimitsPanel as an aligned table that scrolls.
#pragma once

#include <QScrollArea>
#include <vector>

#include "screen/screen.h"

class QGridLayout;

namespace zelvane {

class ControlWidget;

/// Shows one line for each row of a fit: label, lower and upper limit, fixed flag, seed. The tables of all fits share
/// the lines; the controls of the present fit are visible.
class LimitsGrid : public QScrollArea {
  Q_OBJECT
 public:
  explicit LimitsGrid(const zelvane::Panel& panel, QWidget* parent = nullptr);

  /// Returns whether a control belongs to the grid of its panel.
  static bool holds(const Control& control);

  /// Shows what the records hold.
  void refresh();

  QSize sizeHint() const override;

 private:
  QGridLayout* grid_ = nullptr;
  std::vector<ControlWidget*> fields_;
};

}  // namespace zelvane
