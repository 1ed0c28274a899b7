// The registry of store fields. Panels, scripts and tests read and write the fields by name.
//
//   Describing a field   ScalarField  TextField  ArrayField  TextsField  TableField  CubeField  RowField
//                        SpanField
//   Registration         RegisterSavedSettings  RegisterSettings  RegisterResults  RegisterWorkingFields
//                        RegisterFields  RegisterAlias
//   Finding one          FindField  FindFieldRun  RunElement  FieldElements  NameOfElement  AllFields
//                        ParseFieldName  MeantName
//   Values               FieldNumber  SetFieldNumber  NumberSuits  FieldText  SetFieldText  CutToRoom  ParseNumber
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

/// The kinds of contents of a field.
enum class FieldRole {
  Setting,      // a choice of the user; undo brings it back
  ResultValue,  // computed, or read from a file
  Working,      // part of an operation under way, or derived from other fields
};

struct FieldKind {
  FieldRole role = FieldRole::Working;
  bool saved = false;  // a model file holds it
};
inline constexpr FieldKind SavedSetting{FieldRole::Setting, true};
inline constexpr FieldKind UnsavedSetting{FieldRole::Setting, false};

/// The position of the elements along one index of a field.
struct FieldIndex {
  int first = 0;            // smallest index
  int last = 0;             // largest index
  std::ptrdiff_t step = 0;  // bytes from one element to the next
};

/// A store field: its name, type, dimensions, address, unit and kind.
struct Field {
  std::string name;  // with an empty bracket for every index
  FieldType type = FieldType::Int;
  std::byte* base = nullptr;  // element with all indices 0, even if `index` does not include it
  int rank = 0;
  std::array<FieldIndex, MaxFieldRank> index{};
  bool isNarrowed = false;     // a double that the simulators use as a 32-bit float
  int textBytes = 0;           // room for a text with its terminator; 0 = no limit
  std::string_view unit = {};  // empty for a pure number
  FieldKind kind = {};         // set by the registration
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

/// Describes a plain field. The unit must live as long as the process, as a literal does.
template <typename T>
Field ScalarField(std::string name, T& value, std::string_view unit = {}) {
  return {.name = std::move(name),
          .type = TypeOfField<T>(),
          .base = reinterpret_cast<std::byte*>(&value),
          .unit = unit};
}

/// Describes a text with room for `bytes` bytes, its terminator included.
inline Field TextField(std::string name, std::string& value, int bytes) {
  Field field = ScalarField(std::move(name), value);
  field.textBytes = bytes;
  return field;
}

/// Describes an array with indices from `first` to its end.
template <typename T, std::size_t N>
Field ArrayField(std::string name, std::array<T, N>& values, std::string_view unit = {}, int first = 1) {
  return {.name = std::move(name),
          .type = TypeOfField<T>(),
          .base = reinterpret_cast<std::byte*>(values.data()),
          .rank = 1,
          .index = {{{first, static_cast<int>(N) - 1, sizeof(T)}}},
          .unit = unit};
}

/// Describes an array of texts with indices from 1, each with room for `bytes` bytes, its terminator included.
template <std::size_t N>
Field TextsField(std::string name, std::array<std::string, N>& values, int bytes) {
  Field field = ArrayField(std::move(name), values);
  field.textBytes = bytes;
  return field;
}

/// Describes a table of two indices, both from `first` to their ends.
template <typename T, std::size_t N, std::size_t M>
Field TableField(std::string name, std::array<std::array<T, M>, N>& values, std::string_view unit = {},
                 int first = 1) {
  return {.name = std::move(name),
          .type = TypeOfField<T>(),
          .base = reinterpret_cast<std::byte*>(values.data()),
          .rank = 2,
          .index = {{{first, static_cast<int>(N) - 1, sizeof(std::array<T, M>)},
                     {first, static_cast<int>(M) - 1, sizeof(T)}}},
          .unit = unit};
}

/// Describes a table of three indices, all from 1 to their ends.
template <typename T, std::size_t N, std::size_t M, std::size_t L>
Field CubeField(std::string name, std::array<std::array<std::array<T, L>, M>, N>& values) {
  using Plane = std::array<std::array<T, L>, M>;
  return {.name = std::move(name),
          .type = TypeOfField<T>(),
          .base = reinterpret_cast<std::byte*>(values.data()),
          .rank = 3,
          .index = {{{1, static_cast<int>(N) - 1, sizeof(Plane)},
                     {1, static_cast<int>(M) - 1, sizeof(std::array<T, L>)},
                     {1, static_cast<int>(L) - 1, sizeof(T)}}}};
}

/// Describes one member of an array of records, with indices from 1 to the end of the array.
template <typename Row, typename T, std::size_t N>
Field RowField(std::string name, std::array<Row, N>& rows, T Row::*member, std::string_view unit = {}) {
  return {.name = std::move(name),
          .type = TypeOfField<T>(),
          .base = reinterpret_cast<std::byte*>(&(rows[0].*member)),
          .rank = 1,
          .index = {{{1, static_cast<int>(N) - 1, sizeof(Row)}}},
          .unit = unit};
}

/// Describes a large array, with indices from 0 to its end. The array must live as long as the process.
Field SpanField(std::string name, std::span<float> values, std::string_view unit = {});

/// Adds fields of one kind to the registry. A field with the same name is replaced, so a field may be
/// registered twice.
void RegisterFields(FieldKind kind, std::vector<Field> fields);
void RegisterSavedSettings(std::vector<Field> fields);
void RegisterSettings(std::vector<Field> fields);  // settings that no model file holds
void RegisterResults(std::vector<Field> fields);
void RegisterWorkingFields(std::vector<Field> fields);

/// Makes a name without indices mean a field with another name. A field or control of this name itself comes
/// first. A second call for the same name replaces the first.
void RegisterAlias(std::string alias, std::string field);

/// Returns the field that an alias means, or the name itself.
std::string_view MeantName(std::string_view name);

/// Returns all fields by name. The address of a field in the map does not change when fields are added.
const std::map<std::string, Field, std::less<>>& AllFields();

/// A name, split into its form in the registry and its indices. ParseFieldName returns an empty result when
/// a bracket has no whole number or is not closed.
struct FieldName {
  std::string key;
  std::vector<int> indices;
};
std::optional<FieldName> ParseFieldName(std::string_view name);

/// Returns the element with this full name ("KOn[5]"). The result is empty when the name is unknown, or when
/// an index is missing or out of range.
FieldRef FindField(std::string_view name);

/// Returns the full name of an element.
std::string NameOfElement(FieldRef ref);

/// The elements of a field along its last index. FindFieldRun takes a name without this index ("KOn",
/// "Occupancy[3]", "TableRate[2]"). It returns an empty run for an unknown name.
struct FieldRun {
  const Field* field = nullptr;
  std::byte* base = nullptr;  // element with the free index 0
  FieldIndex index;
  explicit operator bool() const { return field != nullptr; }
};
FieldRun FindFieldRun(std::string_view name);
FieldRef RunElement(const FieldRun& run, int index);

/// A field whose elements are reached by their indices, without a search by name for each.
class FieldElements {
 public:
  /// Finds the field of this description ("KOn[]"). The field must be registered.
  explicit FieldElements(std::string_view description);

  /// Returns the element with these indices. There must be as many as the field has, each within its range.
  template <typename... Indices>
  FieldRef operator()(Indices... indices) const {
    return Element(std::array<int, sizeof...(Indices)>{static_cast<int>(indices)...});
  }

  /// Returns the largest value of the first index.
  int Last() const;

 private:
  FieldRef Element(std::span<const int> indices) const;

  const Field* field_ = nullptr;
};

/// Returns the number in an element; 0 for a text.
double FieldNumber(FieldRef ref);

/// Stores a number, converted to the type of the element. The value must suit the type: see NumberSuits.
void SetFieldNumber(FieldRef ref, double value);

/// Returns whether a field of this type can hold the number. The number must be finite. For an int it must be
/// whole and in range; for a float it must be in range.
bool NumberSuits(FieldType type, double value);

/// Returns the same for a field. A narrowed field holds numbers in the range of a float.
bool NumberSuits(const Field& field, double value);

/// Returns the element as text: 9 significant digits for a float, 17 for a double. This text gives the same
/// value when it is read.
std::string FieldText(FieldRef ref);

/// Stores a typed value. Returns false and keeps the old value when the text is not a number, is not finite,
/// or does not suit the type. A text is cut at its first line break and to the room of its field.
bool SetFieldText(FieldRef ref, std::string_view text);

/// Returns the front of a text that fits a field of `bytes` bytes, its terminator included. Does not cut a UTF-8
/// character in two. Without a limit (0) returns the whole text.
std::string_view CutToRoom(std::string_view text, int bytes);

/// Converts the whole `text` into a number. The decimal mark is a full stop; blanks before and after the
/// number are allowed. Returns an empty result when the text is not a number. "nan" and "inf" are numbers
/// here, so a caller can refuse them by name.
std::optional<double> ParseNumber(std::string_view text);

}  // namespace zelvane
