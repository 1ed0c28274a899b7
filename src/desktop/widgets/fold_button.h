// The title of a group or part that folds.
#pragma once

#include <QToolButton>

namespace zelvane {

/// A title with an arrow; down (checked) while what it heads is open.
class FoldButton : public QToolButton {
  Q_OBJECT
 public:
  /// Without a title only the arrow shows.
  FoldButton(const QString& title, QWidget* parent);

 protected:
  void checkStateSet() override { turnArrow(); }
  void nextCheckState() override;

 private:
  void turnArrow() { setArrowType(isChecked() ? Qt::DownArrow : Qt::RightArrow); }
};

}  // namespace zelvane
