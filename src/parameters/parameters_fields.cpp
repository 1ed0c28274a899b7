#include "parameters/parameters_fields.h"

namespace zelvane {

void RegisterParametersFields() {
  RegisterLimits(SavedSetting, "AnalysisFitLimits", Parameters.AnalysisFitLimits);
  RegisterSavedSettings({
      ScalarField("FitMode", Parameters.FitMode),
      ArrayField("AnalysisFitFixed[]", Parameters.AnalysisFitFixed),
      ArrayField("AnalysisFitSeed[]", Parameters.AnalysisFitSeed),
      ScalarField("AnalysisLimitsOn", Parameters.AnalysisLimitsOn),
      ScalarField("AnalysisAutoSeed", Parameters.AnalysisAutoSeed),
      ScalarField("AnalysisFixOn", Parameters.AnalysisFixOn),
      ScalarField("FitTolerance", Parameters.FitTolerance),
  });
}

void RegisterLimits(FieldKind kind, const std::string& table, FitLimitTable& limits) {
  RegisterFields(kind, {RowField(table + "[].lo", limits, &FitLimit::lo),
                        RowField(table + "[].hi", limits, &FitLimit::hi)});
}

}  // namespace zelvane
