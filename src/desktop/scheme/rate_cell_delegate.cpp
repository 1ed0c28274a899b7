#include "desktop/scheme/rate_cell_delegate.h"

#include <QLineEdit>
#include <QPainter>

#include "desktop/scheme/rate_table_model.h"
#include "desktop/scheme/scheme_colours.h"
#include "desktop/window/theme.h"

namespace zelvane {
namespace {

constexpr int MarkWidth = 15;      // pixels, at the left of a cell
constexpr int DiagonalAlpha = 30;  // opacity of the diagonal: there is no rate from a state to itself
constexpr int RateAlpha = 34;      // makes a rate visible among the empty cells
constexpr int Padding = 4;         // pixels, right of the number

}  // namespace

QRect RateCellDelegate::markOf(const QRect& cell) {
  return {cell.left(), cell.top(), MarkWidth, cell.height()};
}

void RateCellDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                             const QModelIndex& index) const {
  const QRect cell = option.rect;
  const QPalette& palette = option.palette;
  painter->save();
  const bool selected = option.state.testFlag(QStyle::State_Selected);
  if (!index.flags().testFlag(Qt::ItemIsEditable)) {
    QColor shade = palette.color(selected ? QPalette::Highlight : QPalette::Text);
    shade.setAlpha(selected ? 255 : DiagonalAlpha);
    painter->fillRect(cell, shade);
    painter->restore();
    return;
  }
  const QString number = index.data(Qt::DisplayRole).toString();
  const QString depends = index.data(RateTableModel::DependenceRole).toString();
  const bool refused = index.data(RateTableModel::RefusedRole).toBool();
  QColor colour = palette.color(selected ? QPalette::HighlightedText : QPalette::Text);
  if (selected) {
    painter->fillRect(cell, palette.brush(QPalette::Highlight));
  } else if (!number.isEmpty()) {
    QColor tint = palette.color(QPalette::Highlight);
    tint.setAlpha(RateAlpha);
    painter->fillRect(cell, tint);
  }
  if (!depends.isEmpty() && !selected) colour = DependentColour(palette);
  if (refused) {
    colour = selected ? colour : RefusedColour();
    painter->setPen(QPen(RefusedColour(), 2.0));
    painter->drawRect(cell.adjusted(1, 1, -1, -1));
  }
  painter->setPen(colour);
  painter->setFont(option.font);
  painter->drawText(cell.adjusted(MarkWidth - 3, 0, -Padding, 0), Qt::AlignRight | Qt::AlignVCenter, number);
  painter->setRenderHint(QPainter::Antialiasing);
  const QRectF mark = QRectF(markOf(cell)).adjusted(2.0, 4.0, -2.0, -4.0);
  if (!depends.isEmpty()) {
    painter->setPen(Qt::NoPen);
    painter->setBrush(colour);
    painter->drawRoundedRect(mark, 3.0, 3.0);
    painter->setPen(selected ? palette.color(QPalette::Highlight) : palette.color(QPalette::Base));
    QFont small = option.font;
    small.setPixelSize(10);
    painter->setFont(small);
    painter->drawText(mark, Qt::AlignCenter,
                      depends.contains(QLatin1Char(',')) ? QStringLiteral("+") : depends.left(1).toUpper());
  } else if (!number.isEmpty()) {
    colour.setAlpha(110);
    painter->setPen(colour);
    painter->setBrush(Qt::NoBrush);
    painter->drawEllipse(mark.center(), 2.4, 2.4);
  }
  painter->restore();
}

QWidget* RateCellDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem& /*option*/,
                                        const QModelIndex& /*index*/) const {
  auto* editor = new QLineEdit(parent);
  editor->setFrame(false);
  editor->setAcceptDrops(false);  // a dropped file belongs to the window
  editor->setAlignment(Qt::AlignRight);
  return editor;
}

}  // namespace zelvane
