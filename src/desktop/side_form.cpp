#include "desktop/side_form.h"

#include <QVBoxLayout>

namespace zelvane {
namespace {

constexpr int FormWidth = 346;  // pixels, with the scroll bar

}  // namespace

SideForm::SideForm(const zelvane::Panel& panel, QWidget* parent) : QScrollArea(parent) {
  auto* content = new QWidget(this);
  auto* layout = new QVBoxLayout(content);
  layout->setContentsMargins(4, 0, 10, 4);
  form_ = new FormPage(content);
  for (const FormSection& section : NamedSections(panel)) form_->addSection(section);
  layout->addWidget(form_);
  layout->addStretch();
  setWidget(content);
  setWidgetResizable(true);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setFixedWidth(FormWidth);
  setFocusPolicy(Qt::NoFocus);
  viewport()->setAutoFillBackground(false);
  content->setAutoFillBackground(false);
}

}  // namespace zelvane
