// Groups of controls as an aligned form.
#pragma once

#include <QWidget>
#include <vector>

#include "desktop/widgets/panel_layout.h"

class QGridLayout;
class QLabel;

namespace zelvane {

class ControlWidget;

/// Sections under titles, in them lines of a label and its field; all labels and all fields of the form are
/// aligned.
class FormPage : public QWidget {
  Q_OBJECT
 public:
  explicit FormPage(QWidget* parent = nullptr);

  void addSection(const FormSection& section);

  /// Sections in which everything is dimmed go out of sight.
  void setHidesDimmed(bool hides) { hidesDimmed_ = hides; }

  /// Shows what the records hold.
  void refresh();

 private:
  struct Line {
    QLabel* label = nullptr;  // nullptr where the first control names itself
    std::vector<ControlWidget*> fields;
  };
  struct Section {
    QLabel* title = nullptr;
    std::vector<Line> lines;
  };

  Line addLine(const FormRow& row, int gridRow, int gridColumn);
  static bool isOpen(const Section& section);

  QGridLayout* grid_;
  std::vector<Section> sections_;
  int nextRow_ = 0;
  bool hidesDimmed_ = false;
};

}  // namespace zelvane
