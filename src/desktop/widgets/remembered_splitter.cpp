#include "desktop/widgets/remembered_splitter.h"

#include <QPainter>

#include "desktop/window/settings.h"

namespace zelvane {
namespace {

constexpr int HandleWidth = 7;  // pixels
constexpr double DotRadius = 1.3;
constexpr double DotGap = 6.0;

/// Shows three dots in its middle.
class GripHandle : public QSplitterHandle {
 public:
  using QSplitterHandle::QSplitterHandle;

 protected:
  void paintEvent(QPaintEvent* event) override {
    QSplitterHandle::paintEvent(event);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(palette().color(QPalette::PlaceholderText));
    const QPointF along = orientation() == Qt::Horizontal ? QPointF(0.0, DotGap) : QPointF(DotGap, 0.0);
    const QPointF middle = QRectF(rect()).center();
    for (const int dot : {-1, 0, 1}) painter.drawEllipse(middle + dot * along, DotRadius, DotRadius);
  }
};

}  // namespace

RememberedSplitter::RememberedSplitter(Qt::Orientation orientation, Settings& settings, QString key,
                                       QWidget* parent)
    : QSplitter(orientation, parent), settings_(settings), key_(std::move(key)) {
  setChildrenCollapsible(false);
  setHandleWidth(HandleWidth);
  connect(this, &QSplitter::splitterMoved, this, [this] {
    proportions_ = sizes();
    settings_.setSizes(key_, proportions_);
  });
}

void RememberedSplitter::restore(const QList<int>& sizes) {
  const QList<int> kept = settings_.sizes(key_, count());
  proportions_ = kept.isEmpty() ? sizes : kept;
  setSizes(proportions_);
}

void RememberedSplitter::resizeEvent(QResizeEvent* event) {
  QSplitter::resizeEvent(event);
  setSizes(proportions_);
}

QSplitterHandle* RememberedSplitter::createHandle() {
  return new GripHandle(orientation(), this);
}

}  // namespace zelvane
