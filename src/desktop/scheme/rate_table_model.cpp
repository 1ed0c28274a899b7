#include "desktop/scheme/rate_table_model.h"

#include <QBrush>
#include <QFont>

#include "desktop/widgets/text.h"
#include "model/scheme_text.h"
#include "screen/entry.h"
#include "screen/number_entry.h"

namespace zelvane {
namespace {

bool Inside(int state) {
  return state >= 1 && state <= MaxStates;
}

}  // namespace

RateTableModel::RateTableModel(QObject* parent) : QAbstractTableModel(parent) {
  for (int from = 1; from <= MaxStates; ++from) {
    labels_[from] = &ControlNamed(FormatText("TableStateLabel[%d]", from));
    for (int to = 1; to <= MaxStates; ++to) {
      if (from == to) continue;
      rates_[from][to] = &ControlNamed(FormatText("TableRate[%d][%d]", from, to));
      dependences_[from][to] = &ControlNamed(FormatText("TableDepend[%d][%d]", from, to));
    }
  }
}

int RateTableModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : MaxStates;
}

int RateTableModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : MaxStates;
}

Control* RateTableModel::rate(int from, int to) const {
  return Inside(from) && Inside(to) ? rates_[from][to] : nullptr;
}

Control* RateTableModel::dependence(int from, int to) const {
  return Inside(from) && Inside(to) ? dependences_[from][to] : nullptr;
}

QVariant RateTableModel::data(const QModelIndex& index, int role) const {
  const int from = index.row() + 1;
  const int to = index.column() + 1;
  const Control* cell = rate(from, to);
  if (cell == nullptr) return {};
  const auto refused = refused_.find({index.row(), index.column()});
  const bool isRefused = refused != refused_.end();
  switch (role) {
    case Qt::DisplayRole:
      if (isRefused) return refused->second.text;
      return cell->number == 0.0 ? QString() : ToQt(RateText(cell->number));
    case Qt::EditRole:
      return isRefused ? refused->second.text : ToQt(EntryText(cell->number));
    case Qt::ToolTipRole: {
      if (isRefused) return refused->second.reason;
      const std::string depends = DependenceText(Model.TableDepend, from, to);
      return ToQt(label(from).text + " to " + label(to).text + ": " + EntryText(cell->number) +
                  (depends.empty() ? "" : "\nDepends on " + depends));
    }
    case Qt::TextAlignmentRole:
      return static_cast<int>(Qt::AlignRight | Qt::AlignVCenter);
    case DependenceRole:
      return ToQt(DependenceText(Model.TableDepend, from, to));
    case RefusedRole:
      return isRefused;
    default:
      return {};
  }
}

QVariant RateTableModel::headerData(int section, Qt::Orientation orientation, int role) const {
  const int state = section + 1;
  const QString text = ToQt(label(state).text);
  const QString number = QString::number(state);
  switch (role) {
    case Qt::DisplayRole:
      if (text.isEmpty() || text == number) return number;
      return number + QLatin1Char(orientation == Qt::Horizontal ? '\n' : ' ') + text;
    case Qt::ToolTipRole:
      return (orientation == Qt::Horizontal ? QStringLiteral("Rates into state ")
                                            : QStringLiteral("Rates from state ")) +
             number + QStringLiteral(": ") + text + QStringLiteral("\nDouble click to change the label");
    default:
      return QAbstractTableModel::headerData(section, orientation, role);
  }
}

Qt::ItemFlags RateTableModel::flags(const QModelIndex& index) const {
  const Qt::ItemFlags place = Qt::ItemIsEnabled | Qt::ItemIsSelectable;  // a block may begin on the diagonal
  return rate(index.row() + 1, index.column() + 1) == nullptr ? place : place | Qt::ItemIsEditable;
}

bool RateTableModel::setData(const QModelIndex& index, const QVariant& value, int role) {
  Control* cell = rate(index.row() + 1, index.column() + 1);
  if (cell == nullptr || role != Qt::EditRole) return false;
  const QString text = value.toString();
  if (text == data(index, Qt::EditRole).toString()) return true;  // nothing was changed
  const Refusal refusal = EnterTyped(*cell, text.toStdString());
  if (refusal.empty())
    refused_.erase({index.row(), index.column()});
  else
    refused_[{index.row(), index.column()}] = {text, ToQt(refusal), cell->number};
  refresh();
  return refusal.empty();
}

void RateTableModel::refresh() {
  std::erase_if(refused_, [this](const auto& entry) {
    const auto& [row, column] = entry.first;
    return rate(row + 1, column + 1)->number != entry.second.number;
  });
  emit dataChanged(index(0, 0), index(MaxStates - 1, MaxStates - 1));
  emit headerDataChanged(Qt::Horizontal, 0, MaxStates - 1);
  emit headerDataChanged(Qt::Vertical, 0, MaxStates - 1);
}

}  // namespace zelvane
