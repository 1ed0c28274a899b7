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

/// Shows one control record and gives what the user does to the dispatcher. A number or text is entered by
/// Enter or by leaving the field, Escape brings back what it held; a text that is refused stays to be mended,
/// marked, with the reason as its tool tip, and the control keeps its value. A right click asks for the help.
class ControlWidget : public QWidget {
  Q_OBJECT
 public:
  enum class Look {
    Standard,   // a field, a check box (switch of off and on), a list (choice), a button, a text
    Segmented,  // a choice or switch as a row of buttons
    Chip        // a switch as a small round button with its number
  };

  explicit ControlWidget(Control& control, QWidget* parent = nullptr, Look look = Look::Standard);

  /// Shows what the record holds. What the user is typing stays. Cheap when nothing changed.
  void refresh();

  Control& control() { return control_; }

  /// Whether the widget names its control itself, so that no label is needed beside it.
  bool namesItself() const { return check_ != nullptr || button_ != nullptr; }

  /// In a dialog that a running command waits for, a value is only typed: the command reads it afterwards.
  void setTypesOnly(bool typesOnly) { typesOnly_ = typesOnly; }

  /// A label that a form puts beside it: its right click asks for the help as well.
  void adopt(QLabel* label);

 protected:
  void contextMenuEvent(QContextMenuEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  void makeField();
  void makeCheck();
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

  Control& control_;
  QLineEdit* field_ = nullptr;
  QLabel* unit_ = nullptr;
  QCheckBox* check_ = nullptr;
  QComboBox* list_ = nullptr;
  QButtonGroup* segments_ = nullptr;
  QAbstractButton* chip_ = nullptr;
  QAbstractButton* button_ = nullptr;
  ElidedLabel* readout_ = nullptr;
  bool refused_ = false;
  bool entering_ = false;
  bool typesOnly_ = false;
};

/// The control as it is best shown, by its kind and choices.
ControlWidget::Look LookOf(const Control& control);

}  // namespace zelvane
