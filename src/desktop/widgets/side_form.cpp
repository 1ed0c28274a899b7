#include "desktop/widgets/side_form.h"

#include <QScrollBar>
#include <QToolButton>
#include <QVBoxLayout>

namespace zelvane {
namespace {

constexpr int FormWidth = 346;  // pixels, with the scroll bar
constexpr int Slack = 8;        // pixels below the view that are no more than margin

}  // namespace

SideForm::SideForm(const zelvane::Panel& panel, QWidget* parent)
    : QScrollArea(parent), more_(new QToolButton(this)) {
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
  more_->setText("More settings below");
  more_->setArrowType(Qt::DownArrow);
  more_->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
  more_->setFocusPolicy(Qt::NoFocus);  // the fields below take the focus, and come into view
  more_->setProperty("role", "more");
  QScrollBar* bar = verticalScrollBar();
  connect(more_, &QToolButton::clicked, bar, [bar] { bar->setValue(bar->maximum()); });
  connect(bar, &QScrollBar::valueChanged, this, &SideForm::showMore);
  connect(bar, &QScrollBar::rangeChanged, this, &SideForm::showMore);
}

void SideForm::showMore() {
  const QRect area = viewport()->geometry();
  more_->setGeometry(area.left(), area.bottom() + 1 - more_->sizeHint().height(), area.width(),
                     more_->sizeHint().height());
  more_->setVisible(verticalScrollBar()->value() + Slack < verticalScrollBar()->maximum());
  more_->raise();
}

void SideForm::resizeEvent(QResizeEvent* event) {
  QScrollArea::resizeEvent(event);
  showMore();
}

}  // namespace zelvane
