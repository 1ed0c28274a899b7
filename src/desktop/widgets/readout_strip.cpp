#include "desktop/widgets/readout_strip.h"

#include <QBoxLayout>
#include <QLabel>
#include <algorithm>
#include <iterator>

#include "desktop/widgets/style_property.h"
#include "desktop/widgets/text.h"
#include "platform/index.h"

namespace zelvane {
namespace {

constexpr int CellMargin = 8;  // pixels
constexpr int CellGap = 6;
constexpr int CompactMargin = 5;
constexpr int CompactRowGap = 1;
constexpr char16_t NotThere = u'\u2013';

/// Returns whether the name includes the unit, as in "Peak (pA)", "Integral(pAms)" and "Tau (ms)".
bool NamesUnit(const Control& control) {
  return control.label.find('(') != std::string::npos;
}

QString NameOf(const Control& control) {
  QString name = ToQt(control.label);
  if (!NamesUnit(control) && !control.unit.empty()) name += " (" + ToQt(control.unit) + ')';
  return name;
}

QString ValueOf(const Control& control) {
  const QString value = ToQt(ShownText(control)).trimmed();
  return value.isEmpty() ? QString(QChar(NotThere)) : value;
}

}  // namespace

ReadoutStrip::ReadoutStrip(std::span<const char* const> controls, QWidget* parent) : WrappingWidget(parent) {
  for (const char* name : controls) {
    Control& control = ControlNamed(name);
    auto* frame = new QWidget(this);
    frame->setProperty("role", "readout");
    frame->setAttribute(Qt::WA_StyledBackground);
    frame->setToolTip(ToQt(control.help));
    frame->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(frame, &QWidget::customContextMenuRequested, this, [&control] { RightClick(control); });
    auto* column = new QBoxLayout(QBoxLayout::TopToBottom, frame);
    auto* title = new QLabel(frame);
    title->setProperty("role", "muted");
    auto* value = new QLabel(frame);
    value->setObjectName(ToQt(control.name) + "Value");
    column->addWidget(title);
    column->addWidget(value, 1);
    cells_.push_back({&control, frame, title, value});
  }
  dress();
  refresh();
}

void ReadoutStrip::refresh() {
  for (const Cell& cell : cells_) {
    const QString value = ValueOf(*cell.control);
    cell.name->setText(NameOf(*cell.control));
    cell.value->setText(value);
    cell.value->setEnabled(value != QString(QChar(NotThere)));
    SetStyleProperty(cell.value, "tone", ToQt(cell.control->colour));
  }
}

void ReadoutStrip::setCompact(bool compact) {
  if (compact == compact_) return;
  compact_ = compact;
  dress();
}

void ReadoutStrip::dress() {
  for (const Cell& cell : cells_) {
    auto* box = static_cast<QBoxLayout*>(cell.frame->layout());
    box->setDirection(compact_ ? QBoxLayout::LeftToRight : QBoxLayout::TopToBottom);
    if (compact_)
      box->setContentsMargins(CompactMargin, 0, CompactMargin, 0);
    else
      box->setContentsMargins(CellMargin, 3, CellMargin, 4);
    box->setSpacing(compact_ ? CompactMargin : 0);
    cell.value->setAlignment(compact_ ? Qt::AlignRight | Qt::AlignVCenter : Qt::AlignLeft | Qt::AlignVCenter);
    SetStyleProperty(cell.value, "role", compact_ ? "value" : "figure");
  }
  updateGeometry();
  arrange();
}

void ReadoutStrip::showFrom(int first, bool shown) {
  for (std::size_t i = Index(first); i < cells_.size(); ++i) cells_[i].frame->setVisible(shown);
  arrange();
}

std::vector<ReadoutStrip::Cell> ReadoutStrip::shownCells() const {
  std::vector<Cell> shown;
  std::copy_if(cells_.begin(), cells_.end(), std::back_inserter(shown),
               [](const Cell& cell) { return !cell.frame->isHidden(); });
  return shown;
}

/// Returns the room that the longest name and value need.
QSize ReadoutStrip::cellSize() const {
  QSize size;
  for (const Cell& cell : shownCells()) size = size.expandedTo(cell.frame->sizeHint());
  return size;
}

QSize ReadoutStrip::sizeHint() const {
  const QSize cell = cellSize();
  return {(cell.width() + CellGap) * static_cast<int>(cells_.size()), cell.height()};
}

QSize ReadoutStrip::minimumSizeHint() const {
  return cellSize();
}

/// Places cells of one width in as few rows as they fit in.
int ReadoutStrip::place(int width) {
  const std::vector<Cell> shown = shownCells();
  const int count = static_cast<int>(shown.size());
  if (count == 0) return 0;
  const QSize cell = cellSize();
  const int most = std::max(1, (width + CellGap) / (cell.width() + CellGap));
  const int rows = (count + most - 1) / most;
  const int columns = (count + rows - 1) / rows;
  const int own = (width + CellGap) / columns - CellGap;
  const int rowHeight = cell.height() + (compact_ ? CompactRowGap : CellGap);
  for (int i = 0; i < count; ++i) {
    const int left = i % columns * (width + CellGap) / columns;
    shown[Index(i)].frame->setGeometry(left, i / columns * rowHeight, own, cell.height());
  }
  return rows * rowHeight - (rowHeight - cell.height());
}

}  // namespace zelvane
