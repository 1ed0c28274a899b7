// A cell of the table of rates.
#pragma once

#include <QStyledItemDelegate>

namespace zelvane {

/// Draws a rate with a mark at its left that shows what the rate depends on, and edits the rate.
class RateCellDelegate : public QStyledItemDelegate {
  Q_OBJECT
 public:
  using QStyledItemDelegate::QStyledItemDelegate;

  /// Returns the place of a cell's mark, to tell a click on the mark from one on the number.
  static QRect markOf(const QRect& cell);

  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
  QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                        const QModelIndex& index) const override;
};

}  // namespace zelvane
