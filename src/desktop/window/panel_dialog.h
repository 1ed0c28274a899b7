// Any auxiliary panel as a dialog, made from its record.
#pragma once

#include <QDialog>
#include <set>
#include <vector>

#include "screen/screen.h"

class QScrollArea;
class QVBoxLayout;

namespace zelvane {

class ControlWidget;
class FormPage;
class GraphWidget;
class LimitsGrid;
class PlaceBar;
class TableWidget;
class TextBoxWidget;

/// Shows text boxes, sections of controls, tables and graphs of a panel from top to bottom, with its buttons
/// below. Closing the dialog is the panel's own close event. A modal dialog has OK and Cancel instead of a
/// close event.
class PanelDialog : public QDialog {
  Q_OBJECT
 public:
  enum Mode { Modeless, Modal };

  PanelDialog(Panel& panel, QWidget* parent, Mode mode = Modeless, const QString& text = {});

  Panel& panel() { return panel_; }

  /// Shows what the records hold; redraws only the given graphs.
  void refresh(const std::set<Graph*>& graphs);

 protected:
  void closeEvent(QCloseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void showEvent(QShowEvent* event) override;

 private:
  void addText(QVBoxLayout* layout, const QString& text);
  void addForms(QVBoxLayout* layout);
  QScrollArea* newScrollArea(FormPage* form);
  void addRecords(QVBoxLayout* layout);
  void addButtons(QVBoxLayout* layout);
  void selectFirstField();

  Panel& panel_;
  Mode mode_;
  std::vector<FormPage*> forms_;
  std::vector<ControlWidget*> buttons_;
  std::vector<TextBoxWidget*> textBoxes_;
  std::vector<TableWidget*> tables_;
  std::vector<GraphWidget*> graphs_;
  LimitsGrid* limits_ = nullptr;  // the rows of FitLimitsPanel
  PlaceBar* place_ = nullptr;     // instead of a graph that shows where a part lies
};

}  // namespace zelvane
