// The two forms of the scheme, and facts about their rates.
#include <optional>

#include "model/model.h"

namespace zelvane {
namespace {

bool IsLink(int from, int to) {
  for (int n = 1; n <= MaxLinks; ++n) {
    const Link link = LinkTable[n];
    if ((link.low == from && link.high == to) || (link.low == to && link.high == from)) return true;
  }
  return false;
}

bool LinkPresent(Link link) {
  return Model.StateOn[link.low] != 0 && Model.StateOn[link.high] != 0;
}

/// Returns whether the table has a rate without a link of the grid.
bool TableLeavesTheGrid() {
  for (int from = 1; from <= MaxStates; ++from) {
    for (int to = 1; to <= MaxStates; ++to) {
      if (from != to && Model.TableRate[from][to] > 0.0F && !IsLink(from, to)) return true;
    }
  }
  return false;
}

}  // namespace

void RatesFromGrid() {
  RestoreGridDependences();
  Model.RateMatrix = {};
  for (int n = 1; n <= MaxLinks; ++n) {
    const Link link = LinkTable[n];
    if (!LinkPresent(link)) continue;
    Model.RateMatrix[link.low][link.high] = static_cast<float>(Model.KOn[n]);
    Model.RateMatrix[link.high][link.low] = static_cast<float>(Model.KOff[n]);
  }
}

void GridFromRates() {
  for (int n = 1; n <= MaxLinks; ++n) {
    const Link link = LinkTable[n];
    if (!LinkPresent(link)) continue;
    Model.KOn[n] = static_cast<double>(Model.RateMatrix[link.low][link.high]);
    Model.KOff[n] = static_cast<double>(Model.RateMatrix[link.high][link.low]);
  }
}

bool GridHasRate(int from, int to) {
  return IsLink(from, to) && LinkPresent({from, to});
}

void UpdateTableStates() {
  Model.TableStateOn = {};
  for (int from = 1; from <= MaxStates; ++from) {
    for (int to = 1; to <= MaxStates; ++to) {
      if (from != to && Model.TableRate[from][to] > 0.0F) Model.TableStateOn[to] = 1;
    }
  }
}

void ActivateTableModel() {
  UpdateTableStates();
  Model.RateMatrix = Model.TableRate;
  // A file can have values on the diagonal; a simulator would take them as transitions of a state to itself.
  for (int s = 1; s <= MaxStates; ++s) Model.RateMatrix[s][s] = 0.0F;
  if (Model.DependIsOfTable == 0) Model.GridDepend = Model.Depend;
  Model.DependIsOfTable = 1;
  Model.Depend = Model.TableDepend;
}

DependenceTables& GridDependences() {
  return Model.DependIsOfTable != 0 ? Model.GridDepend : Model.Depend;
}

void RestoreGridDependences() {
  if (Model.DependIsOfTable == 0) return;
  Model.DependIsOfTable = 0;
  Model.Depend = Model.GridDepend;
}

void CopyGridToTable() {
  RatesFromGrid();
  Model.TableRate = Model.RateMatrix;
  Model.TableDepend = Model.Depend;
  Model.TableStateLabel = Model.StateLabel;
}

bool CopyTableToGrid() {
  Model.StateLabel = Model.TableStateLabel;
  Model.Depend = Model.TableDepend;
  Model.DependIsOfTable = 0;
  Model.RateMatrix = {};
  Model.StateOn = {};
  for (int n = 1; n <= MaxLinks; ++n) {
    const auto [low, high] = LinkTable[n];
    const float on = Model.TableRate[low][high];
    const float off = Model.TableRate[high][low];
    Model.KOn[n] = static_cast<double>(on);
    Model.KOff[n] = static_cast<double>(off);
    Model.RateMatrix[low][high] = on;
    Model.RateMatrix[high][low] = off;
    if (on != 0.0F) Model.StateOn[high] = 1;
    if (off != 0.0F) Model.StateOn[low] = 1;
  }
  return TableLeavesTheGrid();
}

bool DependsOnStimulus(const DependenceTables& tables, int from, int to) {
  for (int drug = 1; drug <= MaxDrugs; ++drug) {
    if (tables.Drug[drug][from][to] != 0) return true;
  }
  return tables.Volt[from][to] != 0;
}

std::optional<double> LinkKd(int n) {
  const auto [low, high] = LinkTable[n];
  const bool forward = DependsOnStimulus(GridDependences(), low, high);
  const bool backward = DependsOnStimulus(GridDependences(), high, low);
  if ((!forward && !backward) || Model.KOn[n] == 0.0 || Model.KOff[n] == 0.0) return std::nullopt;
  return backward ? Model.KOn[n] / Model.KOff[n] : Model.KOff[n] / Model.KOn[n];
}

}  // namespace zelvane
