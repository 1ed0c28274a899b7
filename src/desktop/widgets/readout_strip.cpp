#include "desktop/widgets/readout_strip.h"

#include <QGridLayout>
#include <QLabel>
#include <QVBoxLayout>

#include "desktop/widgets/text.h"

namespace zelvane {
namespace {

constexpr int CellMargin = 8;  // pixels
constexpr int CellGap = 6;
constexpr char16_t NotThere = u'\u2013';

/// "Peak (pA)" and its like name their unit already, as do "Integral(pAms)" and "Tau (ms)".
bool NamesUnit(const Control& control) {
  return control.label.find('(') != std::string::npos;
}

QString NameOf(const Control& control) {
  QString name = ToQt(control.label);
  if (!NamesUnit(control) && !control.unit.empty()) name += " (" + ToQt(control.unit) + ')';
  return name;
}

}  // namespace

ReadoutStrip::ReadoutStrip(std::span<const char* const> controls, int columns, QWidget* parent)
    : QWidget(parent) {
  auto* grid = new QGridLayout(this);
  grid->setContentsMargins(0, 0, 0, 0);
  grid->setSpacing(CellGap);
  int place = 0;
  for (const char* name : controls) {
    Control& control = ControlNamed(name);
    auto* frame = new QWidget(this);
    frame->setProperty("role", "readout");
    frame->setAttribute(Qt::WA_StyledBackground);
    frame->setToolTip(ToQt(control.help));
    frame->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(frame, &QWidget::customContextMenuRequested, this, [&control] { RightClick(control); });
    auto* column = new QVBoxLayout(frame);
    column->setContentsMargins(CellMargin, 3, CellMargin, 4);
    column->setSpacing(0);
    auto* title = new QLabel(frame);
    title->setProperty("role", "muted");
    auto* value = new QLabel(frame);
    value->setObjectName(ToQt(control.name) + "Value");
    value->setProperty("role", "figure");
    column->addWidget(title);
    column->addWidget(value);
    grid->addWidget(frame, place / columns, place % columns);
    grid->setColumnStretch(place % columns, 1);
    grid->setColumnMinimumWidth(place % columns, 1);
    ++place;
    cells_.push_back({&control, title, value});
  }
  refresh();
}

void ReadoutStrip::refresh() {
  for (const Cell& cell : cells_) {
    const QString value = ToQt(ShownText(*cell.control)).trimmed();
    cell.name->setText(NameOf(*cell.control));
    cell.value->setText(value.isEmpty() ? QString(QChar(NotThere)) : value);
    cell.value->setEnabled(!value.isEmpty());
  }
}

}  // namespace zelvane
