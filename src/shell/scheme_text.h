// The kinetic scheme in short words, for a drawing and its tool tips.
#pragma once

#include <string>

#include "model/model_store.h"

namespace zelvane {

/// What a rate depends on: the labels of its drugs ("drug 2" without one) and "V" for voltage, with commas;
/// empty for a rate that depends on nothing.
std::string DependenceText(const DependenceTables& tables, int from, int to);

/// A rate in at most seven characters, or eight with a sign: "880", "12345", "0.727", "4.59e6".
std::string RateText(double rate);

/// Name of a state of the grid: its label, else "state 7".
std::string StateName(int state);

/// A state of the grid in a few lines: name, number, on or off, conductance, start occupancy, monitored.
std::string StateTip(int state);

/// One rate of a link of the grid in two lines: direction, value with its unit, and what it depends on.
std::string RateTip(int link, bool forward);

}  // namespace zelvane
