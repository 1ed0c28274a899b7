#include "desktop/widgets/inline_editor.h"

#include <QKeyEvent>
#include <QToolTip>
#include <algorithm>

#include "desktop/widgets/text.h"
#include "desktop/window/theme.h"
#include "screen/entry.h"
#include "screen/number_entry.h"

namespace zelvane {
namespace {

constexpr int LeastNumberWidth = 76;  // pixels; "1.234567e-05" fits
constexpr int LeastTextWidth = 120;   // a state's label fits

QString ValueOf(const Control& control) {
  return ToQt(control.kind == ControlKind::Number ? EntryText(control.number) : control.text);
}

}  // namespace

InlineEditor::InlineEditor(QWidget* parent) : QLineEdit(parent) {
  setObjectName(QStringLiteral("inlineEditor"));
  setFrame(true);
  setAcceptDrops(false);  // a dropped file belongs to the window
  hide();
  connect(this, &QLineEdit::textEdited, this, [this] { mark({}); });
}

void InlineEditor::open(Control& control, const QRect& place, const QString& typed) {
  if (isVisible() && control_ != nullptr && control_ != &control && !take(0))
    return;  // the user must correct that text first
  control_ = &control;
  const bool number = control.kind == ControlKind::Number;
  QRect area = place;
  area.setSize(area.size().expandedTo({number ? LeastNumberWidth : LeastTextWidth, sizeHint().height()}));
  area.moveCenter(place.center());
  const QRect room = parentWidget()->rect();
  area.moveLeft(std::clamp(area.left(), room.left(), std::max(room.left(), room.right() - area.width())));
  area.moveTop(std::clamp(area.top(), room.top(), std::max(room.top(), room.bottom() - area.height())));
  setGeometry(area);
  setAlignment(number ? Qt::AlignRight : Qt::AlignLeft);
  setAccessibleName(ToQt(control.label));
  mark({});
  setText(ValueOf(control));
  selectAll();
  show();
  raise();
  setFocus();
  if (typed.isEmpty()) return;
  setText(typed);
  setModified(true);
}

void InlineEditor::mark(const Refusal& refusal) {
  const bool refused = !refusal.empty();
  setProperty("refused", refused);
  setToolTip(ToQt(refusal));
  setStyleSheet(
      refused ? QStringLiteral("QLineEdit { border: 2px solid %1; color: %1; }").arg(RefusedColour().name())
              : QString());
  if (refused && isVisible()) QToolTip::showText(mapToGlobal(QPoint(0, height())), toolTip(), this);
}

/// Enters the text. Returns false when it is refused. Does not enter an unchanged text again.
bool InlineEditor::take(int step) {
  if (control_ == nullptr) return true;
  if (isModified()) {
    const Refusal refusal = EnterTyped(*control_, text().toStdString());
    mark(refusal);
    if (!refusal.empty()) return false;
  }
  close();
  emit taken(step);
  return true;
}

/// Hides the field. If the field has the focus, passes it to the widget below.
void InlineEditor::close() {
  control_ = nullptr;
  if (hasFocus()) parentWidget()->setFocus();
  hide();
}

bool InlineEditor::event(QEvent* event) {
  // Tab belongs to this field before the window gets it.
  if (event->type() == QEvent::KeyPress) {
    const int key = static_cast<QKeyEvent*>(event)->key();
    if (key == Qt::Key_Tab || key == Qt::Key_Backtab) {
      take(key == Qt::Key_Tab ? 1 : -1);
      return true;
    }
  }
  return QLineEdit::event(event);
}

void InlineEditor::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
    take(0);
  } else if (event->key() == Qt::Key_Escape) {
    close();
    emit letBe();
  } else {
    QLineEdit::keyPressEvent(event);
  }
}

void InlineEditor::focusOutEvent(QFocusEvent* event) {
  QLineEdit::focusOutEvent(event);
  // a menu or another window only borrows the focus
  if (event->reason() != Qt::PopupFocusReason && event->reason() != Qt::ActiveWindowFocusReason) take(0);
}

void InlineEditor::contextMenuEvent(QContextMenuEvent* event) {
  if (control_ != nullptr) RightClick(*control_);
  event->accept();
}

}  // namespace zelvane
