#include "desktop/scheme/scheme_view.h"

#include <QContextMenuEvent>
#include <QHelpEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QToolTip>

#include "desktop/scheme/scheme_painter.h"
#include "desktop/widgets/inline_editor.h"
#include "desktop/widgets/text.h"
#include "model/scheme_text.h"
#include "platform/index.h"
#include "screen/entry.h"

namespace zelvane {
namespace {

using Kind = SchemeItem::Kind;

constexpr char RateStart[] = "0123456789.,-+";  // keys that begin a number

}  // namespace

SchemeView::SchemeView(QWidget* parent) : QWidget(parent), editor_(new InlineEditor(this)) {
  setFocusPolicy(Qt::StrongFocus);
  setMouseTracking(true);
  setAccessibleName(QStringLiteral("Kinetic scheme"));
  current_ = {Kind::State, 1, {}, nullptr};
  connect(editor_, &InlineEditor::taken, this, [this](int way) {
    refresh();
    if (way != 0) step(way > 0);
  });
  connect(editor_, &InlineEditor::letBe, this, [this] { update(); });
  refresh();
}

void SchemeView::refresh() {
  layout_.place(size(), font());
  // a link that disappeared takes its marks with it
  if (hovered_ && layout_.find(*hovered_) == nullptr) hovered_.reset();
  if (layout_.find(current_) == nullptr)
    current_ = {Kind::State, LinkTable[current_.number].low, {}, nullptr};
  update();
}

void SchemeView::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.fillRect(rect(), palette().color(QPalette::Base));
  SchemeMarks marks;
  if (hovered_) marks.hovered = layout_.find(*hovered_);
  if (hasFocus()) marks.focused = layout_.find(current_);
  for (const SchemeItem& item : layout_.items()) {
    if (item.isRate() && item.control == editor_->control()) marks.edited = &item;
  }
  PaintScheme(painter, layout_, palette(), marks);
}

// -- Actions on an item --

void SchemeView::act(const SchemeItem& item) {
  switch (item.kind) {
    case Kind::State:
    case Kind::DependOn:
    case Kind::DependOff:
      press(*item.control);
      break;
    case Kind::Menu:
      openMenu(item.number);
      break;
    case Kind::RateOn:
    case Kind::RateOff:
      edit(*item.control, item.rect);
      break;
    case Kind::Kd:
      break;
  }
}

void SchemeView::press(Control& control) {
  const Refusal refusal = Press(control);
  refresh();
  if (!refusal.empty()) QToolTip::showText(QCursor::pos(), ToQt(refusal), this);
}

void SchemeView::edit(Control& control, const QRectF& place, const QString& typed) {
  editor_->open(control, place.toAlignedRect(), typed);
  update();
}

void SchemeView::editCurrent(const QString& typed) {
  const SchemeItem* item = layout_.find(current_);
  if (item == nullptr) return;
  if (item->isRate())
    edit(*item->control, item->rect, typed);
  else if (item->kind == Kind::State)
    edit(layout_.stateLabel(item->number), item->rect, typed);
}

void SchemeView::openMenu(int state) {
  current_ = {Kind::State, state, {}, nullptr};
  const QPoint corner = layout_.box(state).bottomLeft().toPoint();
  newStateMenu(state)->popup(mapToGlobal(corner));
}

QMenu* SchemeView::newStateMenu(int state) {
  auto* menu = new QMenu(this);
  menu->setAttribute(Qt::WA_DeleteOnClose);
  menu->setObjectName(QStringLiteral("stateMenu"));
  menu->addSection(ToQt("State " + std::to_string(state)));
  const auto addSwitch = [&](const char* text, Control& control) {
    QAction* action = menu->addAction(QString::fromUtf8(text), this, [this, &control] { press(control); });
    action->setCheckable(true);
    action->setChecked(control.number != 0.0);
  };
  const auto addValue = [&](const char* name, const std::string& value, Control& control) {
    const QString text = ToQt(name) + (value.empty() ? QString() : ": " + ToQt(value));
    menu->addAction(text + QStringLiteral("..."), this,
                    [this, state, &control] { edit(control, layout_.box(state)); });
  };
  Control& conductance = layout_.stateConductance(state);
  Control& start = layout_.startOccupancy(state);
  addSwitch("&On", layout_.stateOn(state));
  addValue("&Label", layout_.stateLabel(state).text, layout_.stateLabel(state));
  addValue("&Conductance", CompactNumber(conductance.number) + " pS", conductance);
  addValue("&Starting occupancy", CompactNumber(start.number), start);
  if (layout_.monitored(state) != nullptr) addSwitch("&Monitored", *layout_.monitored(state));
  menu->addSeparator();
  menu->addAction(QStringLiteral("&Help"), this, [this, state] { RightClick(layout_.stateOn(state)); });
  return menu;
}

// -- Mouse --

void SchemeView::mouseMoveEvent(QMouseEvent* event) {
  const SchemeItem* item = layout_.at(event->position());
  if (item != nullptr && item->kind == Kind::Kd) item = nullptr;
  const bool same = item == nullptr ? !hovered_ : hovered_ && hovered_->same(*item);
  if (same) return;
  hovered_ = item != nullptr ? std::optional(*item) : std::nullopt;
  setCursor(item == nullptr ? Qt::ArrowCursor : item->isRate() ? Qt::IBeamCursor : Qt::PointingHandCursor);
  update();
}

void SchemeView::leaveEvent(QEvent* event) {
  QWidget::leaveEvent(event);
  hovered_.reset();
  update();
}

void SchemeView::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  pressed_.reset();
  const SchemeItem* item = layout_.at(event->position());
  if (item == nullptr) return;
  pressed_ = *item;
  if (item->kind != Kind::Kd) {
    current_ = *item;
    if (item->kind == Kind::Menu) current_.kind = Kind::State;
  }
  update();
}

void SchemeView::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton || !pressed_) return;
  const SchemeItem* item = layout_.at(event->position());
  const bool clicked = item != nullptr && item->same(*pressed_);
  pressed_.reset();
  if (clicked) act(SchemeItem(*item));  // a copy, because the action places the items again
}

/// Shows help for the right button, as on any control; opens the menu of the state for the key for menus.
void SchemeView::contextMenuEvent(QContextMenuEvent* event) {
  if (event->reason() == QContextMenuEvent::Keyboard) {
    if (current_.kind == Kind::State) openMenu(current_.number);
    return;
  }
  const SchemeItem* item = layout_.at(event->pos());
  if (item != nullptr) RightClick(*item->control);
}

QString SchemeView::tipOf(const SchemeItem& item) const {
  if (item.kind == Kind::State) return ToQt(StateTip(item.number));
  if (item.kind == Kind::Menu) return QStringLiteral("Menu of the state");
  if (item.kind == Kind::Kd) return ToQt(item.control->help);
  const QString tip = ToQt(RateTip(item.number, item.forward()));
  return item.isBadge() ? tip + QStringLiteral("\nClick to set its dependence") : tip;
}

// -- Keys --

bool SchemeView::event(QEvent* event) {
  if (event->type() == QEvent::ToolTip) {
    const auto* help = static_cast<QHelpEvent*>(event);
    const SchemeItem* item = layout_.at(help->pos());
    if (item != nullptr)
      QToolTip::showText(help->globalPos(), tipOf(*item), this, item->rect.toAlignedRect());
    else
      QToolTip::hideText();
    return true;
  }
  return QWidget::event(event);
}

/// Moves to the next or previous item that keys can reach; returns false at either end.
bool SchemeView::step(bool next) {
  const auto reachable = [](const SchemeItem& item) {
    return item.kind != Kind::Menu && item.kind != Kind::Kd;
  };
  const std::vector<SchemeItem>& items = layout_.items();
  const SchemeItem* here = layout_.find(current_);
  const auto count = static_cast<std::ptrdiff_t>(items.size());
  std::ptrdiff_t i = here != nullptr ? here - items.data() : -1;
  do {
    i += next ? 1 : -1;
    if (i < 0 || i >= count) return false;
  } while (!reachable(items[Index(i)]));
  current_ = items[Index(i)];
  update();
  return true;
}

bool SchemeView::focusNextPrevChild(bool next) {
  if (hasFocus() && step(next)) return true;
  return QWidget::focusNextPrevChild(next);
}

bool SchemeView::stepToState(int key) {
  int state = current_.kind == Kind::State ? current_.number : LinkTable[current_.number].low;
  const int column = (state - 1) % GridColumns;
  if (key == Qt::Key_Left && column > 0)
    --state;
  else if (key == Qt::Key_Right && column < GridColumns - 1)
    ++state;
  else if (key == Qt::Key_Up && state > GridColumns)
    state -= GridColumns;
  else if (key == Qt::Key_Down && state <= MaxStates - GridColumns)
    state += GridColumns;
  else if (key < Qt::Key_Left || key > Qt::Key_Down)
    return false;
  current_ = {Kind::State, state, {}, nullptr};
  update();
  return true;
}

void SchemeView::keyPressEvent(QKeyEvent* event) {
  const SchemeItem* item = layout_.find(current_);
  const int key = event->key();
  if (item == nullptr || stepToState(key)) return;
  const bool enter = key == Qt::Key_Return || key == Qt::Key_Enter;
  const QString typed = event->text();
  if (key == Qt::Key_F1) {
    RightClick(*item->control);
  } else if (item->isBadge() && (enter || key == Qt::Key_Space)) {
    press(*item->control);
  } else if (item->kind == Kind::State && key == Qt::Key_Space) {
    press(*item->control);
  } else if (enter || key == Qt::Key_F2) {
    editCurrent();
  } else if (item->isRate() && typed.size() == 1 && QLatin1String(RateStart).contains(typed[0])) {
    editCurrent(typed);
  } else {
    QWidget::keyPressEvent(event);
  }
}

// -- Other events --

void SchemeView::focusInEvent(QFocusEvent* event) {
  QWidget::focusInEvent(event);
  if (event->reason() == Qt::TabFocusReason) current_ = layout_.items().front();
  if (event->reason() == Qt::BacktabFocusReason) {
    for (const SchemeItem& last : layout_.items()) {
      if (last.kind != Kind::Menu && last.kind != Kind::Kd) current_ = last;
    }
  }
  update();
}

void SchemeView::focusOutEvent(QFocusEvent* event) {
  QWidget::focusOutEvent(event);
  update();
}

void SchemeView::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::FontChange || event->type() == QEvent::PaletteChange) refresh();
}

void SchemeView::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  refresh();
}

}  // namespace zelvane
