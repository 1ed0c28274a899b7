#include "desktop/widgets/form_page.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <algorithm>

#include "desktop/widgets/control_widget.h"
#include "desktop/widgets/text.h"

namespace zelvane {
namespace {

constexpr int GridColumnsOfLine = 3;  // label, field, gap to the next column
constexpr int ColumnGap = 18;         // pixels
constexpr int SectionGap = 10;

bool HasWidgetOfItsOwnWidth(const Control& control) {
  return control.kind == ControlKind::Readout && control.label.empty();
}

}  // namespace

FormPage::FormPage(QWidget* parent) : QWidget(parent), grid_(new QGridLayout(this)) {
  grid_->setContentsMargins(0, 0, 0, 0);
  grid_->setHorizontalSpacing(8);
  grid_->setVerticalSpacing(5);
  grid_->setColumnStretch(1, 1);
}

void FormPage::addSection(const FormSection& section) {
  Section added;
  if (nextRow_ > 0 && section.title.isEmpty()) grid_->setRowMinimumHeight(nextRow_++, SectionGap);
  if (!section.title.isEmpty()) {
    added.title = new QLabel(section.title, this);
    added.title->setProperty("role", "section");
    added.title->setIndent(0);
    if (nextRow_ > 0)
      added.title->setContentsMargins(0, SectionGap, 0, 0);  // goes with a section out of sight
    grid_->addWidget(added.title, nextRow_++, 0, 1, -1);
  }
  const int lines = static_cast<int>(section.rows.size());
  const int perColumn = (lines + section.columns - 1) / std::max(section.columns, 1);
  for (int i = 0; i < lines; ++i) {
    const int column = i / perColumn * GridColumnsOfLine;
    added.lines.push_back(
        addLine(section.rows[static_cast<std::size_t>(i)], nextRow_ + i % perColumn, column));
    if (column > 0) grid_->setColumnMinimumWidth(column - 1, ColumnGap);
  }
  nextRow_ += perColumn;
  sections_.push_back(std::move(added));
}

FormPage::Line FormPage::addLine(const FormRow& row, int gridRow, int gridColumn) {
  Line line;
  for (Control* control : row) line.fields.push_back(new ControlWidget(*control, this, LookOf(*control)));
  ControlWidget* first = line.fields.front();
  const Control& control = first->control();
  if (first->namesItself() || HasWidgetOfItsOwnWidth(control)) {
    const bool alone = row.size() == 1;
    grid_->addWidget(first, gridRow, gridColumn, 1, alone ? 2 : 1);
  } else {
    line.label = new QLabel(ToQt(control.label), this);
    line.label->setTextFormat(Qt::PlainText);
    first->adopt(line.label);
    grid_->addWidget(line.label, gridRow, gridColumn);
    // What stands beside, such as the button that uses the number, has a column of its own.
    for (std::size_t i = 1; i < row.size(); ++i) {
      grid_->addWidget(line.fields[i], gridRow, gridColumn + 1 + static_cast<int>(i));
    }
    grid_->addWidget(first, gridRow, gridColumn + 1);
    return line;
  }
  for (std::size_t i = 1; i < row.size(); ++i) {
    grid_->addWidget(line.fields[i], gridRow, gridColumn + 1, i == 1 ? Qt::Alignment() : Qt::AlignRight);
  }
  return line;
}

bool FormPage::isOpen(const Section& section) {
  return std::any_of(section.lines.begin(), section.lines.end(), [](const Line& line) {
    return std::any_of(line.fields.begin(), line.fields.end(), [](ControlWidget* field) {
      const Control& control = field->control();
      return control.visible && !control.dimmed && control.kind != ControlKind::Readout;
    });
  });
}

void FormPage::refresh() {
  for (Section& section : sections_) {
    const bool shown = !hidesDimmed_ || isOpen(section);
    if (section.title != nullptr) section.title->setVisible(shown);
    for (Line& line : section.lines) {
      for (ControlWidget* field : line.fields) {
        field->refresh();
        if (!shown) field->hide();
      }
      if (line.label == nullptr) continue;
      const Control& control = line.fields.front()->control();
      line.label->setVisible(shown && control.visible);
      line.label->setEnabled(!control.dimmed);
      if (line.label->text() != ToQt(control.label)) line.label->setText(ToQt(control.label));
    }
  }
}

}  // namespace zelvane
