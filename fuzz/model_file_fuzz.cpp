// Any bytes as a model file: reading must not fail, and the result can be written and read back.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <string>
#include <string_view>

#include "analysis/analysis_fields.h"
#include "analysis/analysis_fit_store.h"
#include "analysis/analysis_store.h"
#include "dwells/dwell_fields.h"
#include "dwells/dwell_fit_store.h"
#include "fit/fit_fields.h"
#include "fit/fit_store.h"
#include "model/constraints_store.h"
#include "model/model_fields.h"
#include "model/model_file_lines.h"
#include "model/model_store.h"
#include "model/model_text.h"
#include "noise/noise_fields.h"
#include "noise/noise_fit_store.h"
#include "parameters/parameters_fields.h"
#include "parameters/parameters_store.h"
#include "rscm/rscm_fields.h"
#include "rscm/rscm_store.h"
#include "stimulus/stimulus_fields.h"
#include "stimulus/stimulus_store.h"

namespace zelvane {
namespace {

/// Registers the fields that a model file holds.
void RegisterSavedFields() {
  RegisterModelFields();
  RegisterStimulusFields();
  RegisterAnalysisFields();
  RegisterRscmFields();
  RegisterParametersFields();
  RegisterDwellFields();
  RegisterNoiseFields();
  RegisterFitFields();
}

void ResetModelStores() {
  // One set of initial values for all runs: making it takes longer than reading a small input.
  static const ModelStore model;
  static const FitStore fit;
  Model = model;
  Fit = fit;
  Constraints = ConstraintsStore{};
  Stimulus = StimulusStore{};
  Analysis = AnalysisStore{};
  AnalysisFit = AnalysisFitStore{};
  Parameters = ParametersStore{};
  NoiseFit = NoiseFitStore{};
  DwellFit = DwellFitStore{};
  RsCm = RsCmStore{};
}

[[noreturn]] void Fault(const char* what) {
  std::fprintf(stderr, "%s\n", what);
  std::abort();
}

void CheckLineLengths(std::string_view text) {
  while (!text.empty()) {
    const std::size_t end = text.find('\n');
    if (end == std::string_view::npos) Fault("the last line has no end");
    if (end > MaxLineBytes) Fault("a line is too long to be read back");
    text.remove_prefix(end + 1);
  }
}

/// Saves the text of the stores, loads it and returns the new text.
std::string Reloaded(const std::string& text) {
  CheckLineLengths(text);
  ResetModelStores();
  if (!ReadModelText(text)) Fault("a written model is not taken as one");
  return ModelText();
}

void CheckOne(std::string_view bytes) {
  ResetModelStores();
  ModelFaults faults;
  if (!ReadModelText(bytes, &faults)) return;
  if (faults.size() > MaxModelFaults + 2) Fault("too many sentences about a file");
  // Writing takes several times as long as reading most inputs, and one input in eight finds the faults as
  // well. The input alone decides which, so that a finding can be repeated.
  if (std::hash<std::string_view>{}(bytes) % 8 != 0) return;
  // The first saving may round to six decimals, and a field without a value in the input may be outside its
  // range. After that nothing may change.
  const std::string loaded = Reloaded(ModelText());
  if (Reloaded(loaded) != loaded) Fault("a written model reads back as another one");
}

}  // namespace
}  // namespace zelvane

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const bool registered = (zelvane::RegisterSavedFields(), true);
  static_cast<void>(registered);
  zelvane::CheckOne({reinterpret_cast<const char*>(data), size});
  return 0;
}
