// Suggestions for an unknown name.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace zelvane {

/// Returns at most three candidates that are similar to `name`, the best first. Ignores letter case. Names
/// that differ only in their indices are one candidate, which gets the indices of `name`.
std::vector<std::string> NearestNames(std::string_view name, const std::vector<std::string>& candidates);

/// Returns "; did you mean A, B?", or an empty string for an empty list.
std::string DidYouMean(const std::vector<std::string>& names);

/// Returns the names of all store fields, with empty brackets for the indices.
std::vector<std::string> FieldNames();

}  // namespace zelvane
