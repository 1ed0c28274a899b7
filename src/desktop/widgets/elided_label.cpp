#include "desktop/widgets/elided_label.h"

#include <algorithm>

namespace zelvane {
namespace {

constexpr int FewestCharacters = 16;  // there is always room for these

}  // namespace

void ElidedLabel::showText(const QString& text, const QString& tip) {
  if (text == full_ && tip == tip_) return;
  full_ = text;
  tip_ = tip;
  fit();
  updateGeometry();
}

QSize ElidedLabel::sizeHint() const {
  const QMargins margins = contentsMargins();
  return {fontMetrics().horizontalAdvance(full_) + 2 + margins.left() + margins.right(),
          QLabel::sizeHint().height()};
}

QSize ElidedLabel::minimumSizeHint() const {
  return {std::min(sizeHint().width(), FewestCharacters * fontMetrics().averageCharWidth()),
          sizeHint().height()};
}

void ElidedLabel::resizeEvent(QResizeEvent* event) {
  QLabel::resizeEvent(event);
  fit();
}

void ElidedLabel::showEvent(QShowEvent* event) {
  QLabel::showEvent(event);
  fit();
}

void ElidedLabel::fit() {
  const QString shown =
      isVisible() ? fontMetrics().elidedText(full_, Qt::ElideMiddle, contentsRect().width()) : full_;
  setText(shown);
  setToolTip(!tip_.isEmpty() || shown == full_ ? tip_ : full_);
}

}  // namespace zelvane
