// A cell of the table of rates.
#pragma once

#include <QStyledItemDelegate>

namespace zelvane {

/// Draws a rate with the mark of what it depends on at its left, and edits it.
class RateCellDelegate : public QStyledItemDelegate {
  Q_OBJECT
 public:
  using QStyledItemDelegate::QStyledItemDelegate;

  /// Where the mark of a cell is, so that a click on it can be told from one on the number.
  static QRect markOf(const QRect& cell);

  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
  QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                        const QModelIndex& index) const override;
};

}  // namespace zelvane
