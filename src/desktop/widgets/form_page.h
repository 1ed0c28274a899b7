// Groups of controls as an aligned form.
#pragma once

#include <QWidget>
#include <vector>

#include "desktop/widgets/panel_layout.h"

class QGridLayout;
class QLabel;

namespace zelvane {

class ControlWidget;
class FoldButton;
class Settings;

/// Shows sections under titles, with lines of a label and its field; all labels and all fields of the form
/// are aligned.
class FormPage : public QWidget {
  Q_OBJECT
 public:
  explicit FormPage(QWidget* parent = nullptr);

  void addSection(const FormSection& section);

  /// Makes the sections that are added after this call fold by a click on their title. The settings keep
  /// under `key` which are folded.
  void setFolds(Settings& settings, const QString& key);

  /// Sets whether a section in which everything is dimmed is hidden.
  void setHidesDimmed(bool hides) { hidesDimmed_ = hides; }

  /// Shows what the records hold.
  void refresh();

 private:
  struct Line {
    QLabel* label = nullptr;  // nullptr where the first control names itself
    std::vector<ControlWidget*> fields;
  };
  struct Section {
    QWidget* title = nullptr;
    FoldButton* fold = nullptr;  // the title, where the section folds
    std::vector<Line> lines;
  };

  void addHeads(const QString& heads);
  static void narrowNumbers(const Line& line);
  Line addLine(const FormRow& row, int gridRow, int gridColumn);
  FoldButton* newFold(const QString& title);
  void keepFolds();
  static bool isOpen(const Section& section);

  QGridLayout* grid_;
  std::vector<Section> sections_;
  int nextRow_ = 0;
  bool hidesDimmed_ = false;
  Settings* settings_ = nullptr;  // nullptr where nothing folds
  QString key_;
};

}  // namespace zelvane
