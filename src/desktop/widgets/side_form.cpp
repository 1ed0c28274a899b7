#include "desktop/widgets/side_form.h"

#include <QScrollBar>
#include <QToolButton>
#include <QVBoxLayout>
#include <algorithm>

#include "desktop/widgets/scroll_down.h"

namespace zelvane {
namespace {

constexpr int FormWidth = 346;  // pixels; preferred width of the form with its scroll bar
constexpr int LeastHeight = 120;
constexpr int Slack = 8;  // pixels; no more than this below the view is only margin

}  // namespace

SideForm::SideForm(const zelvane::Panel& panel, Settings& settings, const QString& key, QWidget* parent)
    : QScrollArea(parent), more_(new QToolButton(this)) {
  auto* content = new QWidget(this);
  auto* layout = new QVBoxLayout(content);
  layout->setContentsMargins(4, 0, 10, 4);
  form_ = new FormPage(content);
  form_->setFolds(settings, key + "/folded");
  for (const FormSection& section : NamedSections(panel)) form_->addSection(section);
  layout->addWidget(form_);
  layout->addStretch();
  ScrollDown(*this, content);
  more_->setText("More settings below");
  more_->setArrowType(Qt::DownArrow);
  more_->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
  more_->setFocusPolicy(Qt::NoFocus);  // the fields below take the focus and scroll into view
  more_->setProperty("role", "more");
  QScrollBar* bar = verticalScrollBar();
  connect(more_, &QToolButton::clicked, bar, [bar] { bar->setValue(bar->maximum()); });
  connect(bar, &QScrollBar::valueChanged, this, &SideForm::showMore);
  connect(bar, &QScrollBar::rangeChanged, this, &SideForm::showMore);
}

QSize SideForm::sizeHint() const {
  return {std::max(FormWidth, minimumSizeHint().width()), widget()->sizeHint().height()};
}

/// Returns the least width of the form, so that its sides are not cut.
QSize SideForm::minimumSizeHint() const {
  const int bar = style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, verticalScrollBar());
  return {widget()->minimumSizeHint().width() + bar, LeastHeight};
}

bool SideForm::eventFilter(QObject* watched, QEvent* event) {
  if (watched == widget() && event->type() == QEvent::LayoutRequest) updateGeometry();
  return QScrollArea::eventFilter(watched, event);
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
