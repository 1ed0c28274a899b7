#include "desktop/widgets/control_widget.h"

#include <QCheckBox>
#include <QComboBox>
#include <QContextMenuEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalBlocker>
#include <QStyle>
#include <QToolButton>
#include <algorithm>

#include "desktop/widgets/elided_label.h"
#include "desktop/widgets/style_property.h"
#include "desktop/widgets/text.h"
#include "screen/entry.h"
#include "screen/number_entry.h"

namespace zelvane {
namespace {

constexpr char NotOffered[] = "NOT AVAILABLE";  // a word that only a file can choose
constexpr int FieldDigits = 7;                  // the digits of a 32-bit float
constexpr QSize ChipSize(22, 20);               // pixels
constexpr int UnitMargin = 7;                   // between unit and the field's right edge
constexpr int WidestField = 210;

/// Returns whether the two words of a switch mean only off and on.
bool IsOnOff(const Control& control) {
  return control.choices.empty() || ToQt(control.choices.front()).compare("off", Qt::CaseInsensitive) == 0;
}

/// Returns a help text as a tool tip: with its own line breaks, and wrapped.
QString TipOf(const std::string& help) {
  return help.empty() ? QString() : "<p>" + ToQt(help).toHtmlEscaped().replace('\n', "<br>") + "</p>";
}

/// A field that takes undo and redo while something is typed; otherwise the window gets them.
class EntryField : public QLineEdit {
 public:
  using QLineEdit::QLineEdit;

 protected:
  bool event(QEvent* event) override {
    if (event->type() == QEvent::ShortcutOverride && !isModified()) {
      const auto* key = static_cast<QKeyEvent*>(event);
      if (key->matches(QKeySequence::Undo) || key->matches(QKeySequence::Redo)) return false;
    }
    return QLineEdit::event(event);
  }
};

QToolButton* Segment(const QString& text, QWidget* parent) {
  auto* segment = new QToolButton(parent);
  segment->setText(text);
  segment->setCheckable(true);
  segment->setFocusPolicy(Qt::TabFocus);
  segment->setProperty("role", "segment");
  return segment;
}

}  // namespace

ControlWidget::Look LookOf(const Control& control) {
  return control.kind == ControlKind::Switch && !IsOnOff(control) ? ControlWidget::Look::Segmented
                                                                  : ControlWidget::Look::Standard;
}

ControlWidget::ControlWidget(Control& control, QWidget* parent, Look look)
    : QWidget(parent), control_(control) {
  setObjectName(ToQt(control.name));
  auto* layout = new QHBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  if (look == Look::Segmented)
    makeSegments();
  else if (look == Look::Chip)
    makeChip();
  else if (look == Look::Toggle)
    makeToggle();
  else if (control.kind == ControlKind::Number || control.kind == ControlKind::Text)
    makeField();
  else if (control.kind == ControlKind::Switch)
    makeCheck(look == Look::Bare);
  else if (control.kind == ControlKind::Choice)
    makeList();
  else if (control.kind == ControlKind::Button)
    makeButton();
  else
    makeReadout();
  refresh();
}

void ControlWidget::place(QWidget* widget) {
  widget->setContextMenuPolicy(Qt::NoContextMenu);  // the right click belongs to this widget
  static_cast<QHBoxLayout*>(layout())->addWidget(widget);
  if (focusProxy() == nullptr) setFocusProxy(widget);
}

void ControlWidget::makeField() {
  field_ = new EntryField(this);
  field_->setAcceptDrops(false);  // a dropped file belongs to the window
  place(field_);
  if (control_.kind == ControlKind::Number) {
    field_->setMaximumWidth(WidestField);
    static_cast<QHBoxLayout*>(layout())->addStretch();
    static_cast<QHBoxLayout*>(layout())->setStretch(0, 100);  // room that the field may not use
  }
  connect(field_, &QLineEdit::editingFinished, this, &ControlWidget::enterTyped);
  connect(field_, &QLineEdit::textEdited, this, [this](const QString& text) {
    if (refused_) markRefused(CheckTyped(control_, text.toStdString()));
  });
  field_->installEventFilter(this);
  if (control_.unit.empty()) return;
  unit_ = new QLabel(ToQt(control_.unit), field_);
  unit_->setProperty("role", "unit");
  unit_->setAttribute(Qt::WA_TransparentForMouseEvents);
  unit_->ensurePolished();
  field_->setTextMargins(0, 0, unit_->sizeHint().width(), 0);
}

void ControlWidget::makeCheck(bool bare) {
  check_ = new QCheckBox(bare ? QString() : ToQt(control_.label), this);
  check_->setAccessibleName(ToQt(control_.label));
  place(check_);
  connect(check_, &QCheckBox::clicked, this, [this](bool on) { enterNumber(on ? 1.0 : 0.0); });
}

void ControlWidget::makeList() {
  list_ = new QComboBox(this);
  for (const std::string& choice : control_.choices) list_->addItem(ToQt(choice));
  list_->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  list_->setMinimumContentsLength(8);
  list_->installEventFilter(this);  // the wheel scrolls the page, not the choice
  list_->setFocusPolicy(Qt::StrongFocus);
  place(list_);
  connect(list_, &QComboBox::activated, this,
          [this](int index) { enterNumber(control_.choiceBase + static_cast<double>(index)); });
}

void ControlWidget::makeSegments() {
  segments_ = new QButtonGroup(this);
  for (std::size_t i = 0; i < control_.choices.size(); ++i) {
    QToolButton* segment = Segment(ToQt(control_.choices[i]), this);
    segments_->addButton(segment, static_cast<int>(i));
    place(segment);
  }
  static_cast<QHBoxLayout*>(layout())->addStretch();
  connect(segments_, &QButtonGroup::idClicked, this,
          [this](int id) { enterNumber(control_.choiceBase + static_cast<double>(id)); });
}

void ControlWidget::makeChip() {
  auto* chip = new QToolButton(this);
  chip->setText(QString::number(control_.index));
  chip->setCheckable(true);
  chip->setFocusPolicy(Qt::TabFocus);
  chip->setFixedSize(ChipSize);
  chip->setProperty("role", "chip");
  chip_ = chip;
  place(chip);
  connect(chip, &QToolButton::clicked, this, [this](bool on) { enterNumber(on ? 1.0 : 0.0); });
}

void ControlWidget::makeToggle() {
  toggle_ = new QPushButton(this);
  toggle_->setCheckable(true);
  place(toggle_);
  connect(toggle_, &QAbstractButton::clicked, this, [this](bool on) { enterNumber(on ? 1.0 : 0.0); });
}

void ControlWidget::makeButton() {
  button_ = new QPushButton(this);
  place(button_);
  connect(button_, &QAbstractButton::clicked, this, [this] { Press(control_); });
}

void ControlWidget::makeReadout() {
  readout_ = new ElidedLabel(this);
  readout_->setTextFormat(Qt::PlainText);
  readout_->setTextInteractionFlags(Qt::TextSelectableByMouse);
  place(readout_);
}

void ControlWidget::adopt(QLabel* label) {
  label->setToolTip(toolTip());
  if (!label->text().contains('&')) label->setBuddy(this);  // a buddy's & would be taken for a key
  label->setContextMenuPolicy(Qt::CustomContextMenu);
  connect(label, &QLabel::customContextMenuRequested, this, [this] { RightClick(control_); });
}

QString ControlWidget::shown() const {
  const bool general = control_.kind == ControlKind::Number && control_.format == "%g";
  return ToQt(general ? CompactNumber(control_.number, FieldDigits) : ShownText(control_));
}

/// Returns what a press of the toggle means: its name, and while it is down the second of its own words.
QString ControlWidget::toggleText() const {
  if (control_.number == 0.0 || IsOnOff(control_)) return ToQt(control_.label);
  return ToQt(control_.choices.back()).remove('_');
}

/// Shows the help, and why the control is dimmed.
void ControlWidget::showTip() {
  const bool why = control_.dimmed && !control_.whyDimmed.empty();
  const QString tip = TipOf(control_.help) + (why ? TipOf(control_.whyDimmed) : QString());
  if (toolTip() != tip) setToolTip(tip);
}

void ControlWidget::refresh() {
  showTip();
  if (const bool shows = control_.visible && !folded_; isHidden() == shows) setVisible(shows);
  const bool open = !control_.dimmed;
  const int word = static_cast<int>(control_.number) - control_.choiceBase;
  if (field_ != nullptr) {
    const bool typing = field_->isModified() && (field_->hasFocus() || refused_);
    if (!typing && field_->text() != shown()) {
      field_->setText(shown());
      if (!field_->hasFocus()) field_->setCursorPosition(0);  // a long text shows its beginning
    }
    field_->setEnabled(open);
    if (unit_ != nullptr) unit_->setEnabled(open);
  } else if (check_ != nullptr) {
    check_->setChecked(control_.number != 0.0);
    check_->setEnabled(open);
  } else if (list_ != nullptr) {
    list_->setCurrentIndex(word);
    list_->setEnabled(open);
  } else if (segments_ != nullptr) {
    for (QAbstractButton* segment : segments_->buttons()) {
      segment->setChecked(segments_->id(segment) == word);
      if (segment->text() == NotOffered) segment->setVisible(segments_->id(segment) == word);
      segment->setEnabled(open);
    }
  } else if (chip_ != nullptr) {
    chip_->setChecked(control_.number != 0.0);
    chip_->setEnabled(open);
  } else if (toggle_ != nullptr) {
    toggle_->setText(toggleText());
    toggle_->setChecked(control_.number != 0.0);
    toggle_->setEnabled(open);
  } else if (button_ != nullptr) {
    if (button_->text() != ToQt(control_.label)) button_->setText(ToQt(control_.label));
    button_->setEnabled(open);
  } else {
    const QString text = ToQt(ShownText(control_)).trimmed();
    readout_->showText(text.isEmpty() || control_.unit.empty() ? text : text + ' ' + ToQt(control_.unit));
    readout_->setEnabled(open);
    SetStyleProperty(readout_, "tone", ToQt(control_.colour));
  }
}

Refusal ControlWidget::enter(const std::string& text) {
  if (!typesOnly_ || control_.whileBusy) return EnterTyped(control_, text);
  const Refusal refusal = CheckTyped(control_, text);
  if (!refusal.empty() || control_.kind != ControlKind::Number) {
    return refusal.empty() ? TypeInto(control_, text) : refusal;
  }
  return TypeInto(control_, EntryText(ParseEntry(text, control_.unit).value_or(0.0)));
}

void ControlWidget::enterTyped() {
  if (!field_->isModified() || entering_) return;  // a message box takes the focus: must not enter twice
  entering_ = true;
  const Refusal refusal = enter(field_->text().toStdString());
  if (refusal.empty()) {
    field_->setModified(false);
    field_->setText(shown());
  }
  markRefused(refusal);
  entering_ = false;
}

void ControlWidget::enterNumber(double value) {
  enter(FormatText("%.0f", value));
  refresh();  // a refusal restores the text that was there
}

void ControlWidget::restore() {
  field_->setText(shown());
  field_->setModified(false);
  markRefused({});
  field_->selectAll();
}

void ControlWidget::markRefused(const Refusal& refusal) {
  refused_ = !refusal.empty();
  SetStyleProperty(field_, "refused", refused_);
  field_->setToolTip(refused_ ? ToQt(refusal) : QString());
}

void ControlWidget::placeUnit() {
  if (unit_ == nullptr) return;
  const QSize size = unit_->sizeHint();
  unit_->setGeometry(field_->width() - size.width() - UnitMargin, (field_->height() - size.height()) / 2,
                     size.width(), size.height());
}

void ControlWidget::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  placeUnit();
}

void ControlWidget::contextMenuEvent(QContextMenuEvent* event) {
  RightClick(control_);
  event->accept();
}

bool ControlWidget::eventFilter(QObject* watched, QEvent* event) {
  if (watched == list_ && event->type() == QEvent::Wheel) {
    event->ignore();
    return true;
  }
  if (watched == field_ && event->type() == QEvent::Resize) placeUnit();
  if (watched == field_ && event->type() == QEvent::KeyPress) {
    const auto* key = static_cast<QKeyEvent*>(event);
    if (key->key() == Qt::Key_Escape && (field_->isModified() || refused_)) {
      restore();
      return true;
    }
  }
  return QWidget::eventFilter(watched, event);
}

}  // namespace zelvane
