#include "screen/fields.h"

#include <cassert>
#include <charconv>
#include <cmath>
#include <limits>
#include <map>

#include "platform/index.h"

namespace zelvane {
namespace {

using FieldMap = std::map<std::string, Field, std::less<>>;

FieldMap& Registry() {
  static FieldMap fields;
  return fields;
}

std::map<std::string, std::string, std::less<>>& Aliases() {
  static std::map<std::string, std::string, std::less<>> aliases;
  return aliases;
}

const Field* FieldByKey(std::string_view key) {
  auto it = Registry().find(key);
  if (it == Registry().end()) it = Registry().find(MeantName(key));
  return it != Registry().end() ? &it->second : nullptr;
}

/// Returns the address for the given indices, or nullptr when an index is out of range.
std::byte* Walk(const Field& field, std::span<const int> indices) {
  std::byte* address = field.base;
  for (std::size_t k = 0; k < indices.size(); ++k) {
    const FieldIndex& dimension = field.index[k];
    if (indices[k] < dimension.first || indices[k] > dimension.last) return nullptr;
    address += dimension.step * indices[k];
  }
  return address;
}

}  // namespace

Field SpanField(std::string name, std::span<float> values, std::string_view unit) {
  return {.name = std::move(name),
          .type = FieldType::Float,
          .base = reinterpret_cast<std::byte*>(values.data()),
          .rank = 1,
          .index = {{{0, static_cast<int>(values.size()) - 1, sizeof(float)}}},
          .unit = unit};
}

void RegisterFields(FieldKind kind, std::vector<Field> fields) {
  for (Field& field : fields) {
    field.kind = kind;
    std::string name = field.name;
    Registry().insert_or_assign(std::move(name), std::move(field));
  }
}

void RegisterSavedSettings(std::vector<Field> fields) {
  RegisterFields(SavedSetting, std::move(fields));
}

void RegisterSettings(std::vector<Field> fields) {
  RegisterFields(UnsavedSetting, std::move(fields));
}

void RegisterResults(std::vector<Field> fields) {
  RegisterFields({FieldRole::ResultValue, false}, std::move(fields));
}

void RegisterWorkingFields(std::vector<Field> fields) {
  RegisterFields({FieldRole::Working, false}, std::move(fields));
}

void RegisterAlias(std::string alias, std::string field) {
  Aliases().insert_or_assign(std::move(alias), std::move(field));
}

std::string_view MeantName(std::string_view name) {
  const auto it = Aliases().find(name);
  return it != Aliases().end() ? std::string_view(it->second) : name;
}

const std::map<std::string, Field, std::less<>>& AllFields() {
  return Registry();
}

std::optional<FieldName> ParseFieldName(std::string_view name) {
  FieldName parsed;
  for (std::size_t i = 0; i < name.size(); ++i) {
    parsed.key += name[i];
    if (name[i] != '[') continue;
    int value = 0;
    const auto [end, error] = std::from_chars(name.data() + i + 1, name.data() + name.size(), value);
    if (error != std::errc{} || end == name.data() + name.size() || *end != ']') return std::nullopt;
    parsed.indices.push_back(value);
    parsed.key += ']';
    i = Index(end - name.data());
  }
  return parsed;
}

FieldRef FindField(std::string_view name) {
  const auto parsed = ParseFieldName(name);
  if (!parsed) return {};
  const Field* field = FieldByKey(parsed->key);
  if (field == nullptr || static_cast<int>(parsed->indices.size()) != field->rank) return {};
  std::byte* address = Walk(*field, parsed->indices);
  return address != nullptr ? FieldRef{field, address} : FieldRef{};
}

FieldRun FindFieldRun(std::string_view name) {
  const auto parsed = ParseFieldName(name);
  if (!parsed) return {};
  // The free index may be the last of several ("TableRate[2]"), and its bracket is not written. A member can
  // follow it ("RateConstraint.value" means all rows). So every field with one more index is tried.
  for (const auto& [fieldName, field] : Registry()) {
    if (field.rank != static_cast<int>(parsed->indices.size()) + 1) continue;
    const std::size_t bracket = fieldName.rfind("[]");
    std::string key = fieldName;
    key.erase(bracket, 2);
    if (key != parsed->key) continue;
    std::byte* base = Walk(field, parsed->indices);
    if (base == nullptr) return {};
    return {&field, base, field.index[Index(field.rank) - 1]};
  }
  return {};
}

std::string NameOfElement(FieldRef ref) {
  const Field& field = *ref.field;
  std::array<int, MaxFieldRank> indices{};
  std::ptrdiff_t rest = ref.address - field.base;
  std::string name;
  std::size_t at = 0;
  for (std::size_t k = 0; k < Index(field.rank); ++k) {  // the steps fall from index to index
    indices[k] = static_cast<int>(rest / field.index[k].step);
    rest %= field.index[k].step;
    const std::size_t bracket = field.name.find("[]", at) + 1;
    name.append(field.name, at, bracket - at).append(std::to_string(indices[k]));
    at = bracket;
  }
  return name.append(field.name, at);
}

FieldRef RunElement(const FieldRun& run, int index) {
  return {run.field, run.base + run.index.step * index};
}

FieldElements::FieldElements(std::string_view description) : field_(FieldByKey(description)) {
  assert(field_ != nullptr);
}

FieldRef FieldElements::Element(std::span<const int> indices) const {
  assert(static_cast<int>(indices.size()) == field_->rank);
  std::byte* address = Walk(*field_, indices);
  assert(address != nullptr);
  return {field_, address};
}

int FieldElements::Last() const {
  return field_->index[0].last;
}

double FieldNumber(FieldRef ref) {
  switch (ref.field->type) {
    case FieldType::Int:
      return *reinterpret_cast<const int*>(ref.address);
    case FieldType::Float:
      return static_cast<double>(*reinterpret_cast<const float*>(ref.address));
    case FieldType::Double:
      return *reinterpret_cast<const double*>(ref.address);
    case FieldType::Text:
      break;
  }
  return 0.0;
}

bool NumberSuits(FieldType type, double value) {
  if (!std::isfinite(value)) return false;
  switch (type) {
    case FieldType::Int:
      return value == std::trunc(value) &&
             std::abs(value) <= static_cast<double>(std::numeric_limits<int>::max());
    case FieldType::Float:
      return std::abs(value) <= static_cast<double>(std::numeric_limits<float>::max());
    case FieldType::Double:
    case FieldType::Text:
      break;
  }
  return true;
}

bool NumberSuits(const Field& field, double value) {
  return NumberSuits(field.isNarrowed ? FieldType::Float : field.type, value);
}

void SetFieldNumber(FieldRef ref, double value) {
  switch (ref.field->type) {
    case FieldType::Int:
      *reinterpret_cast<int*>(ref.address) = static_cast<int>(value);
      break;
    case FieldType::Float:
      *reinterpret_cast<float*>(ref.address) = static_cast<float>(value);
      break;
    case FieldType::Double:
      *reinterpret_cast<double*>(ref.address) = value;
      break;
    case FieldType::Text:
      break;
  }
}

std::string FieldText(FieldRef ref) {
  if (ref.field->type == FieldType::Text) return *reinterpret_cast<const std::string*>(ref.address);
  char buffer[32];
  const double value = FieldNumber(ref);
  std::to_chars_result result{};
  if (ref.field->type == FieldType::Float) {
    result = std::to_chars(buffer, buffer + sizeof buffer, static_cast<float>(value),
                           std::chars_format::general, 9);
  } else {
    result = std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::general, 17);
  }
  return {buffer, result.ptr};
}

bool SetFieldText(FieldRef ref, std::string_view text) {
  if (ref.field->type == FieldType::Text) {
    text = CutToRoom(text.substr(0, text.find_first_of("\r\n")), ref.field->textBytes);
    *reinterpret_cast<std::string*>(ref.address) = text;
    return true;
  }
  const auto value = ParseNumber(text);
  if (!value || !NumberSuits(*ref.field, *value)) return false;
  SetFieldNumber(ref, *value);
  return true;
}

std::string_view CutToRoom(std::string_view text, int bytes) {
  if (bytes < 1 || text.size() < Index(bytes)) return text;
  constexpr std::size_t LongestCharacter = 4;
  const std::size_t size = Index(bytes) - 1;
  const auto topBits = [text](std::size_t i) { return static_cast<unsigned char>(text[i]) & 0xC0U; };
  std::size_t start = size;
  while (start > 0 && topBits(start) == 0x80U) --start;
  const bool inCharacter = topBits(start) == 0xC0U && size - start < LongestCharacter;
  return text.substr(0, inCharacter ? start : size);
}

std::optional<double> ParseNumber(std::string_view text) {
  const auto begin = text.find_first_not_of(" \t");
  if (begin == std::string_view::npos) return std::nullopt;
  text = text.substr(begin, text.find_last_not_of(" \t") - begin + 1);
  if (text.size() > 1 && text.front() == '+' && text[1] != '-') text.remove_prefix(1);
  double value = 0.0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (end != text.data() + text.size()) return std::nullopt;
  if (error == std::errc::result_out_of_range) {
    // from_chars does not set the value here: a huge number is infinite, a tiny one 0.
    const auto exponent = text.find_first_of("eE");
    const bool tiny =
        exponent != std::string_view::npos && text.find('-', exponent) != std::string_view::npos;
    return tiny ? 0.0 : std::numeric_limits<double>::infinity();
  }
  if (error != std::errc{}) return std::nullopt;
  return value;
}

}  // namespace zelvane
