#include "model/saved_fields.h"

#include <algorithm>
#include <map>
#include <random>
#include <set>

#include "model/model_store.h"

namespace zelvane {
namespace {

/// Tables that the file holds only for the links of the grid.
const std::set<std::string> OfLinks{"DrugDepend[][][]", "VoltDepend[][]", "VoltSteepness[][]",
                                    "VoltRange[][]"};

struct Range {
  double least;
  double most;
};

/// Ranges to which a file's reader limits fields.
// clang-format off
const std::map<std::string, Range> Ranges{
    {"StateOn[]", {0, 1}}, {"NumPoints", {100'000, 5'000'001}}, {"Autosave", {0, 1}},
    {"AutosaveFormat", {0, 1}}, {"Precision", {0.125, 1000}}, {"AutoGenFitLims", {0, 1}},
    {"WaveFitFixOn", {0, 1}}, {"WaveFitLimitsOn", {0, 1}}, {"WaveFitAutoSeed", {0, 1}},
    {"FitLimsXFold", {2, 100}}, {"FitPeakSearchPts", {500, 5000}}, {"FitNumIterations", {10, 500}},
    {"FitNumRestarts", {1, 50}}, {"FitPeakAve", {1, 50}}, {"FitDualSpeed", {0, 50}},
    {"FitStepSize", {0.5, 8}}, {"StartAtEquilibrium", {0, 1}}, {"FitStartAtEquilibrium", {0, 1}},
    {"AutoFilterFc", {0, 50}}, {"StepRamp", {0, 1}}, {"TrainExpFlag", {0, 1}}, {"TrainRiseFlag", {0, 1}},
    {"TrainCount", {0, 1'000'000}}, {"AutoDrugOrVolt", {0, 1}}, {"AutoSaveMeasures", {0, 1}},
    {"VerifyMeasures", {0, 1}}, {"AnalysisDisplay[]", {0, 1}}, {"RsCmAuto", {0, 1}},
    {"LatencyFrac", {0, 1}}, {"FitFilterFc", {0.125, 20}}, {"FitAlignRange", {-9, 1}},
    {"AnalysisTolerance", {0.125, 8}}, {"FitAlignChoice", {0, 1}}};
// clang-format on

/// Returns whether reading or writing a model sets the field from others.
bool IsDerived(const Field& field) {
  return field.name == "TableStateOn[]" || field.name == "DependIsOfTable";
}

constexpr std::ptrdiff_t LargeArray = 100'000;

bool AreNeighbours(int a, int b) {
  return std::any_of(LinkTable.begin() + 1, LinkTable.end(), [a, b](const Link& link) {
    return (link.low == a && link.high == b) || (link.low == b && link.high == a);
  });
}

void AddElements(const Field& field, std::vector<StoreElement>& elements, std::vector<int>& indices) {
  const auto depth = indices.size();
  if (static_cast<int>(depth) < field.rank) {
    for (int i = field.index[depth].first; i <= field.index[depth].last; ++i) {
      indices.push_back(i);
      AddElements(field, elements, indices);
      indices.pop_back();
    }
    return;
  }
  std::string name;
  auto index = indices.begin();
  for (const char c : field.name) {
    name += c;
    if (c == '[') name += std::to_string(*index++);
  }
  bool inFile = field.kind.saved;
  if (OfLinks.contains(field.name)) inFile = AreNeighbours(indices[depth - 2], indices[depth - 1]);
  elements.push_back({name, FindField(name), inFile});
}

std::string RandomText(std::mt19937& random, int bytes) {
  constexpr std::string_view Letters = "abcXYZ 019[]%.,-+";
  std::string text(random() % static_cast<unsigned>(bytes > 0 ? bytes : 80), ' ');
  for (char& c : text) c = Letters[random() % Letters.size()];
  return text;
}

double RandomNumber(std::mt19937& random, const Field& field) {
  const auto range = Ranges.find(field.name);
  // Eighths up to a few thousand need at most six decimals and seven digits.
  const auto [least, most] =
      range != Ranges.end() ? range->second : Range{field.type == FieldType::Int ? -900.0 : 0.125, 900};
  const double step = field.type == FieldType::Int ? 1.0 : 0.125;
  const auto steps = static_cast<std::uint32_t>((most - least) / step) + 1;
  return least + step * static_cast<double>(random() % steps);
}

}  // namespace

std::vector<StoreElement> StoreElements() {
  std::vector<StoreElement> elements;
  for (const auto& [name, field] : AllFields()) {
    const auto isLarge = [](const FieldIndex& index) { return index.last - index.first > LargeArray; };
    if (IsDerived(field) || std::any_of(field.index.begin(), field.index.end(), isLarge)) continue;
    std::vector<int> indices;
    AddElements(field, elements, indices);
  }
  return elements;
}

void FillAtRandom(const std::vector<StoreElement>& elements, std::uint32_t seed) {
  std::mt19937 random(seed);
  for (const StoreElement& element : elements) {
    const Field& field = *element.ref.field;
    if (field.type == FieldType::Text) {
      SetFieldText(element.ref, RandomText(random, field.textBytes));
    } else {
      SetFieldNumber(element.ref, RandomNumber(random, field));
    }
  }
}

std::vector<StoreValue> ValuesOf(const std::vector<StoreElement>& elements) {
  std::vector<StoreValue> values;
  values.reserve(elements.size());
  for (const StoreElement& element : elements) {
    if (element.ref.field->type == FieldType::Text) {
      values.emplace_back(FieldText(element.ref));
    } else {
      values.emplace_back(FieldNumber(element.ref));
    }
  }
  return values;
}

}  // namespace zelvane
