#include "desktop/scheme/rate_table_view.h"

#include <QAction>
#include <QClipboard>
#include <QGuiApplication>
#include <QHeaderView>
#include <QLabel>
#include <QMouseEvent>
#include <QTableView>
#include <QToolButton>
#include <QVBoxLayout>
#include <algorithm>

#include "desktop/scheme/rate_cell_delegate.h"
#include "desktop/scheme/rate_table_model.h"
#include "desktop/widgets/inline_editor.h"
#include "desktop/widgets/text.h"
#include "platform/index.h"
#include "screen/entry.h"
#include "screen/number_entry.h"

namespace zelvane {
namespace {

constexpr int CellWidth = 70;  // pixels; "1.23e-5" and the mark fit
constexpr int CellHeight = 23;
constexpr int RowHeaderWidth = 84;
constexpr char Hint[] =
    "A rate leads from the state of its row to the state of its column. Click the mark of a rate to set "
    "its dependence.";
constexpr char NothingToPaste[] = "The clipboard holds no numbers.";

}  // namespace

RateTableView::RateTableView(QWidget* parent)
    : QWidget(parent),
      table_(new QTableView(this)),
      model_(new RateTableModel(this)),
      labelEditor_(new InlineEditor(table_)),
      notice_(new QLabel(QString::fromLatin1(Hint), this)) {
  table_->setModel(model_);
  table_->setItemDelegate(new RateCellDelegate(table_));
  table_->setSelectionMode(QAbstractItemView::ContiguousSelection);
  table_->setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed |
                          QAbstractItemView::AnyKeyPressed);
  table_->setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
  table_->horizontalHeader()->setDefaultSectionSize(CellWidth);
  table_->verticalHeader()->setDefaultSectionSize(CellHeight);
  table_->verticalHeader()->setFixedWidth(RowHeaderWidth);
  table_->setAccessibleName(QStringLiteral("Table of rates"));
  table_->viewport()->installEventFilter(this);
  setFocusProxy(table_);
  notice_->setWordWrap(true);
  auto* row = new QHBoxLayout;
  row->addWidget(notice_, 1);
  addAction(row, "Dependence...", QKeySequence(Qt::CTRL | Qt::Key_D), &RateTableView::openDependence);
  addAction(row, "Copy", QKeySequence::Copy, &RateTableView::copy);
  addAction(row, "Paste", QKeySequence::Paste, &RateTableView::paste);
  addAction(row, nullptr, QKeySequence::Delete, &RateTableView::clearCells);
  addAction(row, nullptr, QKeySequence(Qt::Key_F1), &RateTableView::showHelpOfCell);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(4);
  layout->addWidget(table_, 1);
  layout->addLayout(row);
  for (QHeaderView* header : {table_->horizontalHeader(), table_->verticalHeader()}) {
    connect(header, &QHeaderView::sectionDoubleClicked, this,
            [this, header](int section) { editLabel(section, header->orientation()); });
    header->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(header, &QWidget::customContextMenuRequested, this, [this, header](const QPoint& at) {
      const int section = header->logicalIndexAt(at);
      if (section >= 0) RightClick(model_->label(section + 1));
    });
  }
  table_->setContextMenuPolicy(Qt::CustomContextMenu);
  connect(table_, &QWidget::customContextMenuRequested, this, &RateTableView::showHelp);
  connect(labelEditor_, &InlineEditor::taken, this, &RateTableView::refresh);
  connect(model_, &QAbstractItemModel::dataChanged, this, [this] { tell(QString::fromLatin1(Hint)); });
}

/// Adds a command of the table: with a key, and with a button where `name` is given.
void RateTableView::addAction(QHBoxLayout* row, const char* name, const QKeySequence& key,
                              void (RateTableView::*command)()) {
  auto* action = new QAction(this);
  action->setShortcut(key);
  action->setShortcutContext(Qt::WidgetWithChildrenShortcut);
  connect(action, &QAction::triggered, this, command);
  QWidget::addAction(action);
  if (name == nullptr) return;
  action->setText(QString::fromLatin1(name));
  action->setIconText(action->text());  // with its three dots
  action->setToolTip(action->text() + QStringLiteral(" (%1)").arg(key.toString(QKeySequence::NativeText)));
  auto* button = new QToolButton(this);
  button->setDefaultAction(action);
  button->setFocusPolicy(Qt::TabFocus);
  row->addWidget(button);
}

void RateTableView::refresh() {
  model_->refresh();
}

void RateTableView::tell(const QString& text) {
  notice_->setText(text);
}

// -- Copy and paste --

/// Copies the selection as lines with tabulators, numbers to full precision, the diagonal empty.
void RateTableView::copy() {
  const QItemSelection selection = table_->selectionModel()->selection();
  if (selection.isEmpty()) return;
  const QItemSelectionRange block = selection.first();
  std::string text;
  for (int i = block.top(); i <= block.bottom(); ++i) {
    for (int j = block.left(); j <= block.right(); ++j) {
      const Control* cell = model_->rate(i + 1, j + 1);
      if (cell != nullptr) text += EntryText(cell->number);
      text += j < block.right() ? '\t' : '\n';
    }
  }
  QGuiApplication::clipboard()->setText(ToQt(text));
}

void RateTableView::paste() {
  const QModelIndexList selected = table_->selectionModel()->selectedIndexes();
  const QModelIndex current = table_->currentIndex();
  if (selected.isEmpty() && !current.isValid()) return;
  int row = current.row();
  int column = current.column();
  for (const QModelIndex& index : selected) {
    row = std::min(row, index.row());
    column = std::min(column, index.column());
  }
  pasteAt(row + 1, column + 1);
}

void RateTableView::pasteAt(int from, int to) {
  Refusal refusal;
  const std::string text = QGuiApplication::clipboard()->text().toStdString();
  auto block = ParseBlock(text, model_->rate(1, 2)->unit, refusal);
  if (block) {
    if (std::all_of(block->begin(), block->end(), [](const auto& row) {
          return std::none_of(row.begin(), row.end(), [](const auto& cell) { return cell.has_value(); });
        })) {
      refusal = NothingToPaste;
    } else {
      refusal = EnterBlock(*block, from, to, [this](int i, int j) { return model_->rate(i, j); });
    }
  }
  refresh();
  if (!refusal.empty()) MessagePopup(WarningTitle, "Nothing was pasted. " + refusal);
}

/// Sets the rates of the selection to 0, as one step.
void RateTableView::clearCells() {
  const QItemSelection selection = table_->selectionModel()->selection();
  if (selection.isEmpty()) return;
  const QItemSelectionRange range = selection.first();
  NumberBlock block(Index(range.height()), std::vector<std::optional<double>>(Index(range.width()), 0.0));
  for (int i = 0; i < range.height(); ++i) {
    for (int j = 0; j < range.width(); ++j) {
      if (model_->rate(range.top() + i + 1, range.left() + j + 1) == nullptr) {
        block[Index(i)][Index(j)].reset();
      }
    }
  }
  const Refusal refusal = EnterBlock(block, range.top() + 1, range.left() + 1,
                                     [this](int i, int j) { return model_->rate(i, j); });
  refresh();
  if (!refusal.empty()) tell(ToQt(refusal));
}

// -- Dependence, labels and help --

void RateTableView::openDependence() {
  const QModelIndex current = table_->currentIndex();
  Control* button = model_->dependence(current.row() + 1, current.column() + 1);
  if (button == nullptr) return;
  const Refusal refusal = Press(*button);
  refresh();
  if (!refusal.empty()) tell(ToQt(refusal));
}

void RateTableView::editLabel(int section, Qt::Orientation orientation) {
  const QHeaderView* header =
      orientation == Qt::Horizontal ? table_->horizontalHeader() : table_->verticalHeader();
  const int at = header->sectionViewportPosition(section);
  const QRect place =
      orientation == Qt::Horizontal
          ? QRect(header->x() + at, header->y(), header->sectionSize(section), header->height())
          : QRect(header->x(), header->y() + at, header->width(), header->sectionSize(section));
  labelEditor_->open(model_->label(section + 1), place);
}

void RateTableView::showHelp(const QPoint& position) {
  const QModelIndex index = table_->indexAt(position);
  Control* cell = model_->rate(index.row() + 1, index.column() + 1);
  if (cell != nullptr) RightClick(*cell);
}

void RateTableView::showHelpOfCell() {
  const QModelIndex current = table_->currentIndex();
  Control* cell = model_->rate(current.row() + 1, current.column() + 1);
  if (cell != nullptr) RightClick(*cell);
}

/// Opens what a cell's rate depends on after a click on the mark of the cell.
bool RateTableView::eventFilter(QObject* watched, QEvent* event) {
  if (watched != table_->viewport() || event->type() != QEvent::MouseButtonRelease) return false;
  const auto* mouse = static_cast<QMouseEvent*>(event);
  const QPoint at = mouse->position().toPoint();
  const QModelIndex index = table_->indexAt(at);
  const bool marked = !index.data(RateTableModel::DependenceRole).toString().isEmpty() ||
                      !index.data(Qt::DisplayRole).toString().isEmpty();
  const bool onMark = mouse->button() == Qt::LeftButton && index == table_->currentIndex() && marked &&
                      RateCellDelegate::markOf(table_->visualRect(index)).contains(at);
  if (onMark && table_->selectionModel()->selectedIndexes().size() == 1) {
    QMetaObject::invokeMethod(this, &RateTableView::openDependence, Qt::QueuedConnection);
  }
  return false;
}

}  // namespace zelvane
