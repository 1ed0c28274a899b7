// Suggestions for a name that nothing bears.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace zelvane {

/// The candidates most like `name`, best first, at most three; empty when none is near. Letter case does not
/// count. Names that differ in their indices alone are one candidate, shown with the indices of `name`.
std::vector<std::string> NearestNames(std::string_view name, const std::vector<std::string>& candidates);

/// "; did you mean A, B?", or nothing for an empty list.
std::string DidYouMean(const std::vector<std::string>& names);

/// Every name of a store field, indices as empty brackets.
std::vector<std::string> FieldNames();

}  // namespace zelvane
