#include "headless/nearest_names.h"

#include <algorithm>
#include <cctype>
#include <set>

#include "screen/fields.h"

namespace zelvane {
namespace {

constexpr std::size_t LongestName = 60;  // a longer word is not a typing mistake
constexpr std::size_t MaxSuggestions = 3;

/// Returns the name with empty brackets.
std::string WithoutIndices(std::string_view name) {
  std::string plain;
  bool inside = false;
  for (const char c : name) {
    if (c == ']') inside = false;
    if (!inside) plain += c;
    if (c == '[') inside = true;
  }
  return plain;
}

/// Returns the texts between the brackets of a name.
std::vector<std::string> Indices(std::string_view name) {
  std::vector<std::string> indices;
  for (std::size_t open = name.find('['); open != std::string_view::npos; open = name.find('[', open + 1)) {
    indices.emplace_back(name.substr(open + 1, name.find(']', open) - open - 1));
  }
  return indices;
}

/// Returns a name with the indices of another one in its empty brackets, if the numbers of brackets agree.
std::string WithIndices(const std::string& plain, const std::vector<std::string>& indices) {
  if (static_cast<std::size_t>(std::count(plain.begin(), plain.end(), '[')) != indices.size()) return plain;
  std::string name;
  std::size_t next = 0;
  for (const char c : plain) {
    name += c;
    if (c == '[') name += indices[next++];
  }
  return name;
}

std::string Lower(std::string text) {
  for (char& c : text) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return text;
}

/// Returns the number of insertions, deletions and replacements that turn `a` into `b` (Levenshtein 1966).
std::size_t EditDistance(std::string_view a, std::string_view b) {
  std::vector<std::size_t> row(b.size() + 1);
  for (std::size_t j = 0; j <= b.size(); ++j) row[j] = j;
  for (std::size_t i = 1; i <= a.size(); ++i) {
    std::size_t diagonal = row[0];
    row[0] = i;
    for (std::size_t j = 1; j <= b.size(); ++j) {
      const std::size_t replaced = diagonal + (a[i - 1] == b[j - 1] ? 0U : 1U);
      diagonal = row[j];
      row[j] = std::min({row[j] + 1, row[j - 1] + 1, replaced});
    }
  }
  return row[b.size()];
}

}  // namespace

std::vector<std::string> NearestNames(std::string_view name, const std::vector<std::string>& candidates) {
  if (name.empty() || name.size() > LongestName) return {};
  const std::string wanted = Lower(WithoutIndices(name));
  const std::size_t bound = std::max<std::size_t>(1, wanted.size() / 3);
  std::set<std::pair<std::size_t, std::string>> near;  // a family of names counts once
  for (const std::string& candidate : candidates) {
    std::string plain = WithoutIndices(candidate);
    const std::size_t longer = std::max(plain.size(), wanted.size());
    if (longer - std::min(plain.size(), wanted.size()) > bound) continue;
    const std::size_t distance = EditDistance(wanted, Lower(plain));
    if (distance <= bound) near.emplace(distance, std::move(plain));
  }
  std::vector<std::string> names;
  for (const auto& [distance, plain] : near) {
    if (names.size() == MaxSuggestions) break;
    std::string suggestion = WithIndices(plain, Indices(name));
    if (suggestion != name) names.push_back(std::move(suggestion));  // the mistake may be in the indices
  }
  return names;
}

std::string DidYouMean(const std::vector<std::string>& names) {
  if (names.empty()) return {};
  std::string text = "; did you mean ";
  for (std::size_t i = 0; i < names.size(); ++i) text += (i > 0 ? ", " : "") + names[i];
  return text + "?";
}

std::vector<std::string> FieldNames() {
  std::vector<std::string> names;
  for (const auto& [name, field] : AllFields()) names.push_back(name);
  return names;
}

}  // namespace zelvane
