// A table record as a table view.
#pragma once

#include <QAbstractTableModel>
#include <QTableView>

#include "screen/screen.h"

namespace zelvane {

/// The cells of a table record; an edited cell goes to the dispatcher.
class TableRecordModel : public QAbstractTableModel {
  Q_OBJECT
 public:
  TableRecordModel(Table& table, QObject* parent);

  /// Takes up what the record holds now.
  void refresh();

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;
  bool setData(const QModelIndex& index, const QVariant& value, int role) override;

 private:
  Table& table_;
  int rows_;  // as the view knows it
};

/// Ctrl+C copies the selected block with tabulators between columns; a right click shows the help.
class TableWidget : public QTableView {
  Q_OBJECT
 public:
  explicit TableWidget(Table& table, QWidget* parent = nullptr);

  void refresh();

 protected:
  void contextMenuEvent(QContextMenuEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void copy();

  Table& table_;
  TableRecordModel* model_;
  QPoint corner_{1, 1};  // column and row at which the record last wanted the view to begin
};

}  // namespace zelvane
