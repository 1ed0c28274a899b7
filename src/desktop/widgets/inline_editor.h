// A small field over a drawing or a table, in which one value is edited in place.
#pragma once

#include <QLineEdit>

#include "screen/screen.h"

namespace zelvane {

/// Edits one control: Enter, Tab or leaving the field enters the text, Escape leaves the value as it was; the
/// field then hides. A refused text stays in the field, marked, with the reason as its tool tip; the control
/// keeps its value.
class InlineEditor : public QLineEdit {
  Q_OBJECT
 public:
  explicit InlineEditor(QWidget* parent);

  /// Opens over `place` (widened to a useful width) with the control's value to full precision, selected. A
  /// `typed` text shows instead of the value, as after a first key.
  void open(Control& control, const QRect& place, const QString& typed = {});

  /// Returns the control being edited; nullptr while the field is hidden.
  Control* control() const { return isVisible() ? control_ : nullptr; }

 signals:
  void taken(int step);  // 0 with Enter or by leaving, 1 with Tab, -1 with Shift and Tab
  void letBe();

 protected:
  bool event(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;

 private:
  bool take(int step);
  void close();
  void mark(const Refusal& refusal);

  Control* control_ = nullptr;
};

}  // namespace zelvane
