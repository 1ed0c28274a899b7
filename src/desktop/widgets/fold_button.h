// The title of a group or part that folds.
#pragma once

#include <QToolButton>

namespace zelvane {

/// A title with an arrow, which points down (checked) while the part below it is open.
class FoldButton : public QToolButton {
  Q_OBJECT
 public:
  /// With an empty title shows only the arrow.
  FoldButton(const QString& title, QWidget* parent);

 protected:
  void checkStateSet() override { turnArrow(); }
  void nextCheckState() override;

 private:
  void turnArrow() { setArrowType(isChecked() ? Qt::DownArrow : Qt::RightArrow); }
};

}  // namespace zelvane
