// Short texts about the kinetic scheme, for a drawing and its tool tips.
#pragma once

#include <string>

#include "model/model_store.h"

namespace zelvane {

/// Returns the dependence of a rate: the labels of its drugs ("drug 2" without a label) and "V" for
/// voltage, with commas. Returns an empty string for a constant rate.
std::string DependenceText(const DependenceTables& tables, int from, int to);

/// Returns a rate in at most seven characters, or eight with a sign: "880", "12345", "0.727", "4.59e6".
std::string RateText(double rate);

/// Returns the name of a state of the grid: its label, else "state 7".
std::string StateName(int state);

/// Describes a state of the grid in a few lines: name, number, on or off, conductance, start occupancy,
/// monitored.
std::string StateTip(int state);

/// Describes one rate of a link of the grid in two lines: direction, value with unit, and dependence.
std::string RateTip(int link, bool forward);

}  // namespace zelvane
