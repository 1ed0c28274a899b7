// The one registry of store fields: what a panel, a script or a test may read and write by name.
//
//   Describing a field   ScalarField  ArrayField  TableField  RowField  SpanField  RegisterFields
//   Finding one          FindField  FieldElement
//   Values               FieldNumber  SetFieldNumber  FieldText  SetFieldText  ParseNumber
//
// A name carries its indices in brackets: "KOn[5]", "TableRate[1][7]", "RateConstraint[3].value". In a
// description every bracket is empty: "KOn[]", "RateConstraint[].value".
#pragma once

#include <array>
#include <cstddef>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

namespace zelvane {

enum class FieldType { Int, Float, Double, Text };

inline constexpr int MaxFieldRank = 3;

/// Where the elements of one index of a field lie.
struct FieldIndex {
  int first = 0;            // smallest index
  int last = 0;             // largest index
  std::ptrdiff_t step = 0;  // bytes from one element to the next
};

/// A store field: its name, type, dimensions and address.
struct Field {
  std::string name;  // every index an empty bracket
  FieldType type = FieldType::Int;
  std::byte* base = nullptr;  // element with all indices 0, whether or not that element is offered
  int rank = 0;
  std::array<FieldIndex, MaxFieldRank> index{};
  int textBytes = 0;  // room of a text, terminator included; 0 = no bound
};

/// One element of a field.
struct FieldRef {
  const Field* field = nullptr;
  std::byte* address = nullptr;
  explicit operator bool() const { return field != nullptr; }
};

template <typename T>
constexpr FieldType TypeOfField() {
  using V = std::remove_cv_t<T>;
  if constexpr (std::is_same_v<V, int>)
    return FieldType::Int;
  else if constexpr (std::is_same_v<V, float>)
    return FieldType::Float;
  else if constexpr (std::is_same_v<V, double>)
    return FieldType::Double;
  else {
    static_assert(std::is_same_v<V, std::string>, "a store field is an int, float, double or text");
    return FieldType::Text;
  }
}

/// Describes a plain field.
template <typename T>
Field ScalarField(std::string name, T& value, int textBytes = 0) {
  return {std::move(name), TypeOfField<T>(), reinterpret_cast<std::byte*>(&value), 0, {}, textBytes};
}

/// Describes an array whose offered indices run from `first` to its end.
template <typename T, std::size_t N>
Field ArrayField(std::string name, std::array<T, N>& values, int first = 1, int textBytes = 0) {
  return {std::move(name),
          TypeOfField<T>(),
          reinterpret_cast<std::byte*>(values.data()),
          1,
          {{{first, static_cast<int>(N) - 1, sizeof(T)}}},
          textBytes};
}

/// Describes a table of two indices, both from `first` to their ends.
template <typename T, std::size_t N, std::size_t M>
Field TableField(std::string name, std::array<std::array<T, M>, N>& values, int first = 1) {
  return {std::move(name),
          TypeOfField<T>(),
          reinterpret_cast<std::byte*>(values.data()),
          2,
          {{{first, static_cast<int>(N) - 1, sizeof(std::array<T, M>)},
            {first, static_cast<int>(M) - 1, sizeof(T)}}},
          0};
}

/// Describes a table of three indices, all from `first` to their ends.
template <typename T, std::size_t N, std::size_t M, std::size_t L>
Field CubeField(std::string name, std::array<std::array<std::array<T, L>, M>, N>& values, int first = 1) {
  using Plane = std::array<std::array<T, L>, M>;
  return {std::move(name),
          TypeOfField<T>(),
          reinterpret_cast<std::byte*>(values.data()),
          3,
          {{{first, static_cast<int>(N) - 1, sizeof(Plane)},
            {first, static_cast<int>(M) - 1, sizeof(std::array<T, L>)},
            {first, static_cast<int>(L) - 1, sizeof(T)}}},
          0};
}

/// Describes one member of an array of records, offered from index `first` to the array's end.
template <typename Row, typename T, std::size_t N>
Field RowField(std::string name, std::array<Row, N>& rows, T Row::*member, int first = 1) {
  return {std::move(name),
          TypeOfField<T>(),
          reinterpret_cast<std::byte*>(&(rows[0].*member)),
          1,
          {{{first, static_cast<int>(N) - 1, sizeof(Row)}}},
          0};
}

/// Describes a large array that lives as long as the process, offered from index `first` to its end.
Field SpanField(std::string name, std::span<float> values, int first = 0);

/// Adds fields to the registry. A name that stands there already is replaced, so that registering twice is
/// harmless.
void RegisterFields(std::vector<Field> fields);

/// All fields by name. A field's address in the map stays the same when others are added.
const std::map<std::string, Field, std::less<>>& AllFields();

/// A name split into the registry's form and its indices. Nothing when a bracket is not a whole number or not
/// closed.
struct FieldName {
  std::string key;
  std::vector<int> indices;
};
std::optional<FieldName> ParseFieldName(std::string_view name);

/// The element that a full name denotes ("KOn[5]"); empty when the name is unknown, an index is missing or
/// out of range.
FieldRef FindField(std::string_view name);

/// The field that a name denotes whose last index is left out ("KOn", "Occupancy[3]", "TableRate[2]"), as a
/// run of elements along that index. Empty when there is none.
struct FieldRun {
  const Field* field = nullptr;
  std::byte* base = nullptr;  // element with the free index 0
  FieldIndex index;
  explicit operator bool() const { return field != nullptr; }
};
FieldRun FindFieldRun(std::string_view name);
FieldRef RunElement(const FieldRun& run, int index);

/// Number in an element; texts give 0.
double FieldNumber(FieldRef ref);

/// Stores a number, narrowed to the element's type. The value must suit it: see NumberSuits.
void SetFieldNumber(FieldRef ref, double value);

/// Whether a number may be stored: finite, and whole and within range for an int, within range for a float.
bool NumberSuits(FieldType type, double value);

/// The element as text that reads back to the same value: 9 significant digits for a float, 17 for a double.
std::string FieldText(FieldRef ref);

/// Stores a typed value. False, with the element unchanged, when it is no number, not finite, or does not
/// suit the type; a text is cut to its room and at its first line break.
bool SetFieldText(FieldRef ref, std::string_view text);

/// The whole of `text` as a number with a full stop as decimal mark; blanks around it are allowed. Nothing
/// when it is no number. "nan" and "inf" are taken, so that a caller can refuse them by name.
std::optional<double> ParseNumber(std::string_view text);

}  // namespace zelvane
