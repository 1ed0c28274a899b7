// The grid form of the model, drawn as a kinetic scheme and edited in place.
#pragma once

#include <QWidget>
#include <optional>

#include "desktop/scheme/scheme_layout.h"

class QMenu;

namespace zelvane {

class InlineEditor;

/// Draws the 20 states as boxes, and each link between two states that are on as a pair of arrows with their
/// rates.
///
///   Mouse   A click on a box switches its state, on a rate edits it, on the mark beside a rate opens what
///           the rate depends on, and on the triangle of a box opens the menu of the state. A right click
///           shows help.
///   Keys    Tab goes through states, rates and marks, arrows from state to state. Enter or F2 edits a rate or a
///           state's label, a digit edits a rate, Space switches a state or opens a dependence, Shift+F10 opens
///           the menu of the state, F1 shows help.
class SchemeView : public QWidget {
  Q_OBJECT
 public:
  explicit SchemeView(QWidget* parent = nullptr);

  /// Shows what the controls hold now. A value being edited stays in its field.
  void refresh();

  const SchemeLayout& scheme() const { return layout_; }
  QSize sizeHint() const override { return {720, 370}; }
  QSize minimumSizeHint() const override { return {480, 200}; }

 protected:
  bool event(QEvent* event) override;
  bool focusNextPrevChild(bool next) override;
  void changeEvent(QEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void leaveEvent(QEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  void act(const SchemeItem& item);
  void edit(Control& control, const QRectF& place, const QString& typed = {});
  void editCurrent(const QString& typed = {});
  void press(Control& control);
  void openMenu(int state);
  QMenu* newStateMenu(int state);
  bool step(bool next);
  bool stepToState(int key);
  QString tipOf(const SchemeItem& item) const;

  SchemeLayout layout_;
  InlineEditor* editor_;
  std::optional<SchemeItem> hovered_;
  std::optional<SchemeItem> pressed_;
  SchemeItem current_;  // the item with the focus
};

}  // namespace zelvane
