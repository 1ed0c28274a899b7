#include "desktop/widgets/fold_button.h"

namespace zelvane {

FoldButton::FoldButton(const QString& title, QWidget* parent) : QToolButton(parent) {
  setText(title);
  setToolButtonStyle(title.isEmpty() ? Qt::ToolButtonIconOnly : Qt::ToolButtonTextBesideIcon);
  setCheckable(true);
  setChecked(true);
  setFocusPolicy(Qt::TabFocus);
  setProperty("role", "fold");
  setToolTip("Fold away or open");
  setAccessibleName(title.isEmpty() ? toolTip() : title);
  turnArrow();
}

void FoldButton::nextCheckState() {
  QToolButton::nextCheckState();
  turnArrow();
}

}  // namespace zelvane
