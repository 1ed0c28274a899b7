// The rates of the table form as cells of a table view.
#pragma once

#include <QAbstractTableModel>
#include <array>
#include <map>
#include <string>
#include <utility>

#include "model/model_store.h"
#include "screen/screen.h"

namespace zelvane {

/// Row i, column j (from 0) is the rate from state i + 1 to state j + 1; the diagonal has no cell. A refused
/// text stays in its cell, marked, until the user enters another there; the control keeps its value.
class RateTableModel : public QAbstractTableModel {
  Q_OBJECT
 public:
  static constexpr int DependenceRole = Qt::UserRole;   // what the rate depends on, "" = nothing
  static constexpr int RefusedRole = Qt::UserRole + 1;  // whether the cell shows a refused text

  /// Finds the controls of TableModelPanel, which must exist.
  explicit RateTableModel(QObject* parent);

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;
  bool setData(const QModelIndex& index, const QVariant& value, int role) override;

  /// Shows what the controls hold now. Drops a refused text when its control has changed meanwhile.
  void refresh();

  /// Returns the control of a cell or label; states count from 1. Nullptr on the diagonal and outside the
  /// table.
  Control* rate(int from, int to) const;
  Control* dependence(int from, int to) const;
  Control& label(int state) const { return *labels_[state]; }

 private:
  struct RefusedText {
    QString text;
    QString reason;
    double number = 0.0;  // the value of the control when the text was refused
  };

  StateTable<Control*> rates_{};
  StateTable<Control*> dependences_{};
  std::array<Control*, MaxStates + 1> labels_{};
  std::map<std::pair<int, int>, RefusedText> refused_;  // key: row and column
};

}  // namespace zelvane
