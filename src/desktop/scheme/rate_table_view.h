// The table form of the model: 20 by 20 rates.
#pragma once

#include <QKeySequence>
#include <QWidget>

class QHBoxLayout;
class QLabel;
class QTableView;

namespace zelvane {

class InlineEditor;
class RateTableModel;

/// The table of rates from each state (rows) to each other (columns). Typing or a double click edits a cell;
/// a double click on a header edits the label of its state. The mark at the left of a cell shows what its
/// rate depends on; a click on the mark or Ctrl+D opens that setting. Ctrl+C and Ctrl+V exchange blocks with
/// spreadsheets. A right click shows help.
class RateTableView : public QWidget {
  Q_OBJECT
 public:
  explicit RateTableView(QWidget* parent = nullptr);

  /// Shows what the controls hold now.
  void refresh();

  QTableView& table() { return *table_; }

  void copy();
  void paste();
  void clearCells();
  void openDependence();

  QSize sizeHint() const override { return {720, 420}; }
  QSize minimumSizeHint() const override { return {420, 160}; }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void addAction(QHBoxLayout* row, const char* name, const QKeySequence& key,
                 void (RateTableView::*command)());
  void pasteAt(int from, int to);
  void editLabel(int section, Qt::Orientation orientation);
  void showHelp(const QPoint& position);
  void showHelpOfCell();
  void tell(const QString& text);

  QTableView* table_;
  RateTableModel* model_;
  InlineEditor* labelEditor_;
  QLabel* notice_;
};

}  // namespace zelvane
