// A table record as a table view.
#pragma once

#include <QAbstractTableModel>
#include <QTableView>
#include <set>

#include "screen/screen.h"

namespace zelvane {

/// The cells of a table record; passes an edited cell to the dispatcher.
class TableRecordModel : public QAbstractTableModel {
  Q_OBJECT
 public:
  TableRecordModel(Table& table, QObject* parent);

  /// Reads what the record holds now.
  void refresh();

  /// Sets the significant digits that a cell shows; 0 = all that the record holds.
  void setDigits(int digits) { digits_ = digits; }

  /// Sets the test of whether a row, from 1, holds anything. An empty row shows only its first column.
  void setFilled(bool (*filled)(int row)) { filled_ = filled; }

  /// Sets a column, from 1, of flags that one ticks.
  void setTickColumn(int column) { tickColumn_ = column; }

  /// Sets the columns, from 1, that one only reads.
  void setReadColumns(std::set<int> columns) { readColumns_ = std::move(columns); }

  /// Returns the text of a cell, rows and columns from 1, with all its digits.
  QString text(int row, int column) const;

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;
  bool setData(const QModelIndex& index, const QVariant& value, int role) override;

 private:
  bool hasChanged();
  QString shown(int row, int column) const;
  QString doubt(const QModelIndex& cell) const;

  Table& table_;
  int rows_;           // the number that the view knows
  QStringList texts_;  // of the cells of a small table, with the row that was marked
  int digits_ = 0;
  int tickColumn_ = 0;  // 0 = no column
  std::set<int> readColumns_;
  bool (*filled_)(int row) = nullptr;
};

/// Ctrl+C copies the selected block with tabulators between columns; a right click shows the help. The record
/// receives a click on a cell of a table that is only read, and a double click on one that can be edited.
class TableWidget : public QTableView {
  Q_OBJECT
 public:
  explicit TableWidget(Table& table, QWidget* parent = nullptr);

  void refresh();

  /// Sets the digits of the model.
  void setDigits(int digits);
  void setFilled(bool (*filled)(int row)) { model_->setFilled(filled); }
  void setTickColumn(int column) { model_->setTickColumn(column); }
  void setReadColumns(std::set<int> columns) { model_->setReadColumns(std::move(columns)); }

 protected:
  void contextMenuEvent(QContextMenuEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void copy();
  void follow();

  Table& table_;
  TableRecordModel* model_;
  QPoint corner_{1, 1};  // column and row at which the record last wanted the view to begin
  int marked_ = 0;       // row that the record last marked
};

}  // namespace zelvane
