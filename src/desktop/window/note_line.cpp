#include "desktop/window/note_line.h"

#include <QMouseEvent>

namespace zelvane {
namespace {

constexpr int ShownMs = 10'000;

}  // namespace

NoteLine::NoteLine(QWidget* parent) : ElidedLabel(parent), end_(this) {
  setObjectName("NoteLine");
  setProperty("tone", "amber");
  setContentsMargins(8, 0, 12, 0);
  setCursor(Qt::PointingHandCursor);
  hide();
  end_.setSingleShot(true);
  end_.setInterval(ShownMs);
  connect(&end_, &QTimer::timeout, this, [this] {
    hide();
    emit shown();
  });
}

void NoteLine::showNote(const QString& sentence) {
  showText(sentence, sentence + "\nClick to see all notes.");
  show();
  emit shown();
  end_.start();
}

void NoteLine::mouseReleaseEvent(QMouseEvent* event) {
  ElidedLabel::mouseReleaseEvent(event);
  if (event->button() == Qt::LeftButton) emit clicked();
}

}  // namespace zelvane
