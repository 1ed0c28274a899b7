// The state of the whole program as one text.
#pragma once

#include <algorithm>
#include <string>

#include "screen/fields.h"

namespace zelvane {

/// Returns the element of a field with all first or all last indices.
inline FieldRef EndOf(const Field& field, int FieldIndex::*end) {
  std::byte* element = field.base;
  for (std::size_t k = 0; k < static_cast<std::size_t>(field.rank); ++k)
    element += field.index[k].step * field.index[k].*end;
  return {&field, element};
}

/// Returns every field of the registry that `counts`: its last element, and up to 200 along its last index from
/// the first one.
inline std::string StoreDigest(bool (*counts)(const Field&)) {
  std::string digest;
  for (const auto& [name, field] : AllFields()) {
    if (!counts(field)) continue;
    digest += name + '=' + FieldText(EndOf(field, &FieldIndex::last));
    const FieldIndex run =
        field.rank > 0 ? field.index[static_cast<std::size_t>(field.rank) - 1] : FieldIndex{};
    const FieldRef first = EndOf(field, &FieldIndex::first);
    for (int i = 0; i <= std::min(run.last - run.first, 200); ++i)
      digest += ' ' + FieldText({&field, first.address + run.step * i});
    digest += '\n';
  }
  return digest;
}

inline std::string StoreDigest() {
  return StoreDigest([](const Field&) { return true; });
}

}  // namespace zelvane
