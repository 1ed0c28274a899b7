// The store fields as a model file sees them: which of them it holds, and values that it holds exactly.
#pragma once

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

#include "screen/fields.h"

namespace zelvane {

/// One element of a store field.
struct StoreElement {
  std::string name;
  FieldRef ref;
  bool inFile = false;  // a file of the newest format holds it
};

/// Every element of every registered field but the large arrays and what follows from other fields.
std::vector<StoreElement> StoreElements();

/// Gives each element a random value that a model file returns unchanged: within its range, of few decimals.
void FillAtRandom(const std::vector<StoreElement>& elements, std::uint32_t seed);

/// A number, or a text in its place.
using StoreValue = std::variant<double, std::string>;

std::vector<StoreValue> ValuesOf(const std::vector<StoreElement>& elements);

}  // namespace zelvane
