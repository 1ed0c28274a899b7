// Clears the scheme, in one form or in both.
#include "model/model.h"

namespace zelvane {
namespace {

void ClearTableTables() {
  Model.TableRate = {};
  Model.TableDepend = {};
  Model.TableStateLabel = {};
  UpdateTableStates();
}

}  // namespace

void ClearGridModel() {
  Model.KOn = {};
  Model.KOff = {};
  Model.StateOn = {};
  Model.StateMonitored = {};
  Model.StateLabel = {};
  Model.Depend = {};
  Model.DependIsOfTable = 0;
  Model.RateMatrix = {};
  Model.StateConductance = {};
  Model.DrugLabel = {};
  Model.ModelTitle.clear();
  Model.ModelFileName.clear();
}

void ClearTableModel() {
  ClearTableTables();
  Model.StateConductance = {};
}

void ClearModel() {
  ClearGridModel();
  ClearTableTables();
}

}  // namespace zelvane
