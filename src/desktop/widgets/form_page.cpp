#include "desktop/widgets/form_page.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <algorithm>

#include "desktop/widgets/control_widget.h"
#include "desktop/widgets/fold_button.h"
#include "desktop/widgets/section_label.h"
#include "desktop/widgets/text.h"
#include "desktop/window/settings.h"
#include "platform/index.h"

namespace zelvane {
namespace {

constexpr int GridColumnsOfLine = 3;  // label, field, gap to the next column
constexpr int ColumnGap = 18;         // pixels
constexpr int SectionGap = 10;
constexpr int NarrowField = 84;  // a number in a row of many

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
    if (settings_ != nullptr) {
      added.fold = newFold(section.title);
      added.title = added.fold;
    } else {
      added.title = NewSectionLabel(section.title, this);
      if (nextRow_ > 0)
        added.title->setContentsMargins(0, SectionGap, 0, 0);  // hidden together with its section
    }
    grid_->addWidget(added.title, nextRow_++, 0, 1, -1);
  }
  if (!section.heads.isEmpty()) addHeads(section.heads);
  const int lines = static_cast<int>(section.rows.size());
  const int perColumn = (lines + section.columns - 1) / std::max(section.columns, 1);
  for (int i = 0; i < lines; ++i) {
    const int column = i / perColumn * GridColumnsOfLine;
    added.lines.push_back(addLine(section.rows[Index(i)], nextRow_ + i % perColumn, column));
    if (!section.heads.isEmpty()) narrowNumbers(added.lines.back());
    if (column > 0) grid_->setColumnMinimumWidth(column - 1, ColumnGap);
  }
  nextRow_ += perColumn;
  sections_.push_back(std::move(added));
}

void FormPage::addHeads(const QString& heads) {
  int column = 0;
  for (const QString& head : heads.split('|')) {
    grid_->addWidget(NewSectionLabel(head, this), nextRow_, column++);
  }
  ++nextRow_;
}

void FormPage::narrowNumbers(const Line& line) {
  for (ControlWidget* field : line.fields) {
    if (field->control().kind == ControlKind::Number) field->setMaximumWidth(NarrowField);
  }
}

void FormPage::setFolds(Settings& settings, const QString& key) {
  settings_ = &settings;
  key_ = key;
}

FoldButton* FormPage::newFold(const QString& title) {
  auto* fold = new FoldButton(title, this);
  fold->setChecked(!settings_->value(key_).toStringList().contains(title));
  connect(fold, &QToolButton::clicked, this, [this] {
    keepFolds();
    refresh();
  });
  return fold;
}

void FormPage::keepFolds() {
  QStringList folded;
  for (const Section& section : sections_) {
    if (section.fold != nullptr && !section.fold->isChecked()) folded.push_back(section.fold->text());
  }
  settings_->setValue(key_, folded);
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
    // A further control on the line, such as the button that uses the number, has a column of its own.
    for (std::size_t i = 1; i < row.size(); ++i) {
      grid_->addWidget(line.fields[i], gridRow, gridColumn + 1 + static_cast<int>(i));
    }
    grid_->addWidget(first, gridRow, gridColumn + 1);
    return line;
  }
  for (std::size_t i = 1; i < row.size(); ++i) {
    grid_->addWidget(line.fields[i], gridRow, gridColumn + static_cast<int>(i));
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
    const bool inSight = !hidesDimmed_ || isOpen(section);
    const bool shown = inSight && (section.fold == nullptr || section.fold->isChecked());
    if (section.title != nullptr) section.title->setVisible(inSight);
    for (Line& line : section.lines) {
      for (ControlWidget* field : line.fields) {
        field->setFolded(!shown);
        field->refresh();
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
