// One control of the program as a widget.
#pragma once

#include <QButtonGroup>
#include <QWidget>

#include "screen/screen.h"

class QAbstractButton;
class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;

namespace zelvane {

class ElidedLabel;

/// Shows one control record and passes the user's actions to the dispatcher. Enter or leaving the field
/// enters a number or text; Escape restores the old one. A refused text stays in the field, marked, with the
/// reason as its tool tip, and the control keeps its value. A right click asks for the help.
class ControlWidget : public QWidget {
  Q_OBJECT
 public:
  enum class Look {
    Standard,   // a field, a check box (switch of off and on), a list (choice), a button, a text
    Segmented,  // a choice or switch as a row of buttons
    Chip,       // a switch as a small round button with its number
    Bare,       // a switch as a check box without words
    Toggle      // a switch as a button that stays down; "__Done" on it is without the bars
  };

  explicit ControlWidget(Control& control, QWidget* parent = nullptr, Look look = Look::Standard);

  /// Shows what the record holds, and keeps what the user is typing. Cheap when nothing changed.
  void refresh();

  Control& control() { return control_; }

  /// Returns whether the widget shows the name of its control, so that no label is needed beside it.
  bool namesItself() const { return check_ != nullptr || button_ != nullptr; }

  /// Sets whether a value is only typed. This is for a dialog that a running command waits for: the command
  /// reads the value afterwards.
  void setTypesOnly(bool typesOnly) { typesOnly_ = typesOnly; }

  /// Sets whether a closed section hides the widget. The next refresh() shows it.
  void setFolded(bool folded) { folded_ = folded; }

  /// Makes a right click on a label, which a form puts beside the widget, ask for the help as well.
  void adopt(QLabel* label);

 protected:
  void contextMenuEvent(QContextMenuEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  void makeField();
  void makeCheck(bool bare);
  void makeToggle();
  void makeList();
  void makeSegments();
  void makeChip();
  void makeButton();
  void makeReadout();
  void place(QWidget* widget);
  void enterTyped();
  Refusal enter(const std::string& text);
  void enterNumber(double value);
  void restore();
  void markRefused(const Refusal& refusal);
  void placeUnit();
  QString shown() const;
  QString toggleText() const;
  void showTip();

  Control& control_;
  QLineEdit* field_ = nullptr;
  QLabel* unit_ = nullptr;
  QCheckBox* check_ = nullptr;
  QComboBox* list_ = nullptr;
  QButtonGroup* segments_ = nullptr;
  QAbstractButton* chip_ = nullptr;
  QAbstractButton* toggle_ = nullptr;
  QAbstractButton* button_ = nullptr;
  ElidedLabel* readout_ = nullptr;
  bool refused_ = false;
  bool entering_ = false;
  bool typesOnly_ = false;
  bool folded_ = false;
};

/// Returns the look that suits a control, by its kind and choices.
ControlWidget::Look LookOf(const Control& control);

}  // namespace zelvane
