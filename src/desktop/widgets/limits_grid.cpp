#include "desktop/widgets/limits_grid.h"

#include <QGridLayout>
#include <QLabel>
#include <algorithm>
#include <array>
#include <string_view>

#include "desktop/widgets/control_widget.h"

namespace zelvane {
namespace {

constexpr std::string_view PanelName = "FitLimitsPanel";
constexpr int LinesInSight = 14;
constexpr int FieldWidth = 110;  // pixels
constexpr int LabelWidth = 70;

/// A group of controls is a column.
struct GridColumn {
  std::string_view group;
  const char* title;
};
constexpr std::array<GridColumn, 5> GridColumns{{{"label", "Parameter"},
                                                 {"lower", "Lower limit"},
                                                 {"upper", "Upper limit"},
                                                 {"fixed", "Fixed"},
                                                 {"seed", "Seed"}}};

/// Returns the column of a control, or -1.
int ColumnOf(const Control& control) {
  const auto* found = std::find_if(GridColumns.begin(), GridColumns.end(),
                                   [&](const GridColumn& column) { return column.group == control.group; });
  return found != GridColumns.end() ? static_cast<int>(found - GridColumns.begin()) : -1;
}

}  // namespace

LimitsGrid::LimitsGrid(const zelvane::Panel& panel, QWidget* parent) : QScrollArea(parent) {
  auto* sheet = new QWidget(this);
  grid_ = new QGridLayout(sheet);
  grid_->setContentsMargins(0, 0, 0, 0);
  grid_->setHorizontalSpacing(10);
  grid_->setVerticalSpacing(4);
  grid_->setColumnMinimumWidth(0, LabelWidth);
  for (int column = 0; column < static_cast<int>(GridColumns.size()); ++column) {
    grid_->addWidget(new QLabel(GridColumns[static_cast<std::size_t>(column)].title, sheet), 0, column);
  }
  int last = 0;
  for (Control* control : panel.controls) {
    if (!holds(*control)) continue;
    auto* field = new ControlWidget(*control, sheet);
    if (control->kind == ControlKind::Number) field->setFixedWidth(FieldWidth);
    grid_->addWidget(field, control->index, ColumnOf(*control));  // a cell has one visible field at a time
    fields_.push_back(field);
    last = std::max(last, control->index);
  }
  grid_->setRowStretch(last + 1, 1);
  grid_->setColumnStretch(static_cast<int>(GridColumns.size()), 1);
  setWidget(sheet);
  setWidgetResizable(true);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
}

bool LimitsGrid::holds(const Control& control) {
  return control.panel->name == PanelName && ColumnOf(control) >= 0;
}

void LimitsGrid::refresh() {
  for (ControlWidget* field : fields_) field->refresh();
}

QSize LimitsGrid::sizeHint() const {
  const QSize sheet = widget()->sizeHint();
  const int line = fontMetrics().height() + 14;
  return {sheet.width() + 30, std::clamp(sheet.height(), 5 * line, LinesInSight * line)};
}

}  // namespace zelvane
