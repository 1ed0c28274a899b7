// The store fields of a model file, and values that a file holds exactly.
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

/// Returns every element of every registered field, except the large arrays and fields that follow from
/// others.
std::vector<StoreElement> StoreElements();

/// Gives each element a random value that a model file returns unchanged: within its range, with few
/// decimals.
void FillAtRandom(const std::vector<StoreElement>& elements, std::uint32_t seed);

/// A number or a text.
using StoreValue = std::variant<double, std::string>;

std::vector<StoreValue> ValuesOf(const std::vector<StoreElement>& elements);

}  // namespace zelvane
