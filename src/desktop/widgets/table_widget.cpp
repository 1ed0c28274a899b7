#include "desktop/widgets/table_widget.h"

#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QHeaderView>
#include <QKeyEvent>

#include "desktop/widgets/text.h"
#include "desktop/window/theme.h"
#include "platform/index.h"
#include "screen/entry.h"
#include "screen/number_entry.h"

namespace zelvane {
namespace {

constexpr int FewColumns = 4;             // this many or fewer share the width
constexpr int MaxCopiedRows = 1'000'000;  // a longer copy blocks the programs that paste it

constexpr int MostCompared = 600;  // cells

/// Returns the ground of the current row.
QColor MarkColour() {
  QColor colour = AccentColour();
  colour.setAlpha(60);
  return colour;
}

}  // namespace

TableRecordModel::TableRecordModel(Table& table, QObject* parent)
    : QAbstractTableModel(parent), table_(table), rows_(table.rows) {}

void TableRecordModel::refresh() {
  if (rows_ != table_.rows) {
    beginResetModel();
    rows_ = table_.rows;
    endResetModel();
  } else if (rows_ > 0 && hasChanged()) {
    emit dataChanged(index(0, 0), index(rows_ - 1, table_.columns - 1));
  }
}

/// Returns whether a small table shows something else than at the last call. A large one counts as changed: its view
/// asks for the cells in sight only.
bool TableRecordModel::hasChanged() {
  if (rows_ * table_.columns > MostCompared) return true;
  QStringList texts{QString::number(table_.markedRow)};
  for (int row = 1; row <= rows_; ++row) {
    for (int column = 1; column <= table_.columns; ++column) {
      texts << text(row, column) << doubt(index(row - 1, column - 1));
    }
  }
  if (texts == texts_) return false;
  texts_ = std::move(texts);
  return true;
}

int TableRecordModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : rows_;
}

int TableRecordModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : table_.columns;
}

QString TableRecordModel::text(int row, int column) const {
  if (column > 1 && filled_ != nullptr && !filled_(row)) return {};
  return ToQt(CellText(table_, row, column));
}

QString TableRecordModel::shown(int row, int column) const {
  const QString full = text(row, column);
  const auto number = digits_ > 0 ? ParseNumber(full.toStdString()) : std::nullopt;
  return number ? ToQt(CompactNumber(*number, digits_)) : full;
}

/// Returns why a cell shows in grey, or an empty text.
QString TableRecordModel::doubt(const QModelIndex& cell) const {
  return table_.doubt != nullptr ? ToQt(table_.doubt(cell.row() + 1, cell.column() + 1)) : QString();
}

QVariant TableRecordModel::data(const QModelIndex& index, int role) const {
  if (index.row() >= table_.rows) return {};  // the record has shrunk and the view has not heard of it yet
  switch (role) {
    case Qt::CheckStateRole:
      if (index.column() + 1 != tickColumn_) return {};
      return text(index.row() + 1, tickColumn_) == "0" ? Qt::Unchecked : Qt::Checked;
    case Qt::DisplayRole:
      if (index.column() + 1 == tickColumn_) return {};
      return shown(index.row() + 1, index.column() + 1);
    case Qt::EditRole:
      return text(index.row() + 1, index.column() + 1);
    case Qt::ForegroundRole:
      return doubt(index).isEmpty() ? QVariant()
                                    : QApplication::palette().color(QPalette::Disabled, QPalette::Text);
    case Qt::ToolTipRole:
      return doubt(index).isEmpty() ? QVariant() : doubt(index);
    case Qt::BackgroundRole:
      return index.row() + 1 == table_.markedRow ? QVariant(MarkColour()) : QVariant();
    case Qt::TextAlignmentRole:
      return QVariant(ParseNumber(CellText(table_, index.row() + 1, index.column() + 1))
                          ? Qt::AlignRight | Qt::AlignVCenter
                          : Qt::AlignLeft | Qt::AlignVCenter);
    default:
      return {};
  }
}

QVariant TableRecordModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (role != Qt::DisplayRole) return {};
  const auto& titles = orientation == Qt::Horizontal ? table_.columnTitles : table_.rowTitles;
  if (Index(section) < titles.size()) return ToQt(titles[Index(section)]);
  return section + 1;
}

Qt::ItemFlags TableRecordModel::flags(const QModelIndex& index) const {
  const Qt::ItemFlags flags = QAbstractTableModel::flags(index);
  if (index.column() + 1 == tickColumn_) return flags | Qt::ItemIsUserCheckable;
  if (readColumns_.contains(index.column() + 1)) return flags;
  return table_.editable ? flags | Qt::ItemIsEditable : flags;
}

bool TableRecordModel::setData(const QModelIndex& index, const QVariant& value, int role) {
  if (role == Qt::CheckStateRole)
    return EnterCell(table_, index.row() + 1, index.column() + 1, value.toBool() ? "1" : "0").empty();
  if (role != Qt::EditRole) return false;
  std::string typed = value.toString().toStdString();
  if (table_.numeric) {
    if (const auto number = ParseEntry(typed, "")) typed = EntryText(*number);  // a comma is a decimal mark
  }
  return EnterCell(table_, index.row() + 1, index.column() + 1, typed).empty();
}

TableWidget::TableWidget(Table& table, QWidget* parent)
    : QTableView(parent), table_(table), model_(new TableRecordModel(table, this)) {
  setObjectName(ToQt(table.name));
  setModel(model_);
  setAlternatingRowColors(true);
  verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 8);
  verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);  // millions of rows are not measured
  horizontalHeader()->setHighlightSections(false);
  if (table.columns <= FewColumns) horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
  setToolTip(ToQt(table.help));
  connect(this, table.editable ? &QTableView::doubleClicked : &QTableView::clicked, this,
          [this](const QModelIndex& cell) {
            if (QApplication::keyboardModifiers() == Qt::NoModifier)  // with one it extends the selection
              ClickCell(table_, cell.row() + 1, cell.column() + 1);
          });
}

void TableWidget::setDigits(int digits) {
  constexpr int signPointAndMargin = 4;  // characters
  model_->setDigits(digits);
  const int number = fontMetrics().horizontalAdvance(QString(digits + signPointAndMargin, '0'));
  for (int column = 0; column < table_.columns; ++column) {
    setColumnWidth(column, std::max(number, horizontalHeader()->sectionSizeHint(column)));
  }
}

void TableWidget::refresh() {
  model_->refresh();
  follow();
}

/// Scrolls to where the record wants the view to begin, and brings a new current row into view. Otherwise
/// keeps the place to which the user has scrolled.
void TableWidget::follow() {
  const bool marks = table_.markedRow != marked_ && table_.markedRow > 0;
  const bool scrolls = table_.topRow != corner_.y();
  const bool shifts = table_.leftColumn != corner_.x();
  marked_ = table_.markedRow;
  corner_ = {table_.leftColumn, table_.topRow};
  if (!marks && !scrolls && !shifts) return;
  const int row = marks ? marked_ - 1 : scrolls ? table_.topRow - 1 : rowAt(0);
  scrollTo(model_->index(row, table_.leftColumn - 1), scrolls && !marks ? PositionAtTop : EnsureVisible);
}

void TableWidget::contextMenuEvent(QContextMenuEvent* event) {
  MessagePopup(HelpTitle, table_.help);
  event->accept();
}

void TableWidget::keyPressEvent(QKeyEvent* event) {
  if (event->matches(QKeySequence::Copy))
    copy();
  else
    QTableView::keyPressEvent(event);
}

void TableWidget::copy() {
  QString text;
  for (const QItemSelectionRange& range : selectionModel()->selection()) {
    const int last = std::min(range.bottom(), range.top() + MaxCopiedRows - 1);
    for (int row = range.top(); row <= last; ++row) {
      for (int column = range.left(); column <= range.right(); ++column) {
        if (column > range.left()) text += '\t';
        text += model_->text(row + 1, column + 1);
      }
      text += '\n';
    }
  }
  if (!text.isEmpty()) QApplication::clipboard()->setText(text);
}

}  // namespace zelvane
