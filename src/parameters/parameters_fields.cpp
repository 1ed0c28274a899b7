#include "parameters/parameters_fields.h"

#include "parameters/vertex_store.h"

namespace zelvane {

namespace {

void RegisterVertices() {
  SimplexTable& simplex = Vertices.simplex;
  RegisterResults({
      TableField("VertexTable[][]", simplex.VertexTable, {}, 0),
      ScalarField("NumParams", simplex.NumParams),
      ScalarField("NumVertices", simplex.NumVertices),
      ScalarField("BestVertex", simplex.BestVertex),
      ScalarField("NumEvals", simplex.NumEvals),
      ScalarField("FitResidual", simplex.FitResidual),
      ArrayField("VertexScale[]", simplex.VertexScale),
      ScalarField("FitResultCode", Vertices.FitResultCode),
      ArrayField("FitX[]", Vertices.FitX, {}, 0),
      ArrayField("FitData[]", Vertices.FitData, {}, 0),
      ArrayField("FitCurve[]", Vertices.FitCurve, {}, 0),
  });
}

}  // namespace

void RegisterParametersFields() {
  RegisterVertices();
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
