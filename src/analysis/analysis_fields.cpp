#include "analysis/analysis_fields.h"

#include "analysis/analysis_fit_store.h"
#include "analysis/analysis_store.h"
#include "parameters/fit_modes.h"
#include "parameters/parameters_fields.h"
#include "screen/fields.h"

namespace zelvane {
namespace {

void RegisterFitOfResponse() {
  RegisterLimits(SavedSetting, "ExpFitLimits", AnalysisFit.ExpFitLimits);
  for (const int mode : {FitDecay, FitTwoDecays, FitRise}) {
    const bool two = mode == FitTwoDecays;
    RegisterFitMode({.mode = mode,
                     .labels = two ? std::vector<const char*>{"Amp1", "Tau1", "Amp2", "Tau2", "Offset"}
                                   : std::vector<const char*>{"Amp1", "Tau1", "Offset"},
                     .limits = "ExpFitLimits",
                     .limitTable = &AnalysisFit.ExpFitLimits});
  }
  RegisterSavedSettings({
      ScalarField("AnalysisParse", AnalysisFit.AnalysisParse),
      ScalarField("AnalysisFitPts", AnalysisFit.AnalysisFitPts),
      ScalarField("AnalysisNumIterations", AnalysisFit.AnalysisNumIterations),
      ScalarField("AnalysisNumRestarts", AnalysisFit.AnalysisNumRestarts),
      ScalarField("AnalysisTolerance", AnalysisFit.AnalysisTolerance),
      ScalarField("DualSpeedPts", AnalysisFit.DualSpeedPts),
      ScalarField("FitStartPts", AnalysisFit.FitStartPts),
  });
  RegisterSettings({
      ScalarField("FitExtrapolate", AnalysisFit.FitExtrapolate),
      ScalarField("ShowFitResidual", Analysis.ShowFitResidual),
  });
  RegisterResults({
      ScalarField("FitAmp1", AnalysisFit.FitAmp1),
      ScalarField("FitTau1", AnalysisFit.FitTau1, "ms"),
      ScalarField("FitAmp2", AnalysisFit.FitAmp2),
      ScalarField("FitTau2", AnalysisFit.FitTau2, "ms"),
      ScalarField("FitOffset", AnalysisFit.FitOffset),
      ScalarField("FitAmp1Extrap", AnalysisFit.FitAmp1Extrap),
      ScalarField("FitAmp2Extrap", AnalysisFit.FitAmp2Extrap),
      ScalarField("FitSStot", AnalysisFit.FitSStot),
      ScalarField("FitGoodness", AnalysisFit.FitGoodness),
      ScalarField("AnalysisNormResidual", AnalysisFit.AnalysisNormResidual),
  });
}

}  // namespace

void RegisterAnalysisFields() {
  RegisterFitOfResponse();
  RegisterSavedSettings({
      ScalarField("BaselineStart", Analysis.BaselineStart, "ms"),
      ScalarField("BaselinePts", Analysis.BaselinePts),
      ScalarField("StartAnalysis", Analysis.StartAnalysis, "ms"),
      ScalarField("PeakSearchPts", Analysis.PeakSearchPts),
      ScalarField("PeakAvePts", Analysis.PeakAvePts),
      ScalarField("RiseStartFrac", Analysis.RiseStartFrac),
      ScalarField("RiseEndFrac", Analysis.RiseEndFrac),
      ScalarField("LatencyPos", Analysis.LatencyPos, "ms"),
      ScalarField("LatencyFrac", Analysis.LatencyFrac),
      ScalarField("AutoSaveMeasures", Analysis.AutoSaveMeasures),
      ScalarField("VerifyMeasures", Analysis.VerifyMeasures),
      ArrayField("AnalysisDisplay[]", Analysis.AnalysisDisplay),
  });
  RegisterSettings({
      ScalarField("PeakOption", Analysis.PeakOption),
      ScalarField("FracDecay", Analysis.FracDecay),
      ScalarField("AutoRescale", Analysis.AutoRescale),
      ScalarField("YMinGain", Analysis.YMinGain),
      ScalarField("YMaxGain", Analysis.YMaxGain),
      ScalarField("MeasureWhileMoving", Analysis.MeasureWhileMoving),
  });
  RegisterResults({
      ScalarField("Baseline", Analysis.Measures.Baseline),
      ScalarField("BaselineVar", Analysis.Measures.BaselineVar),
      ScalarField("PeakValue", Analysis.Measures.PeakValue),
      ScalarField("PeakPos", Analysis.Measures.PeakPos),
      ScalarField("RiseTime", Analysis.Measures.RiseTime, "ms"),
      ScalarField("RisePoints", Analysis.Measures.RisePoints),
      ScalarField("RiseStartPos", Analysis.Measures.RiseStartPos),
      ScalarField("RiseEndPos", Analysis.Measures.RiseEndPos),
      ScalarField("RiseSlope", Analysis.Measures.RiseSlope),
      ScalarField("DecayTime", Analysis.Measures.DecayTime, "ms"),
      ScalarField("FracWidth", Analysis.Measures.FracWidth, "ms"),
      ScalarField("LatencyRise", Analysis.Measures.LatencyRise, "ms"),
      ScalarField("LatencyPeak", Analysis.Measures.LatencyPeak, "ms"),
      ScalarField("Integral", Analysis.Measures.Integral),
      ScalarField("Coastline", Analysis.Measures.Coastline),
      ScalarField("TableRow", Analysis.TableRow),
      ScalarField("MeasuresFileName", Analysis.MeasuresFileName),
      ScalarField("MeasuresCount", Analysis.MeasuresCount),
  });
  RegisterWorkingFields({
      ScalarField("ViewedPoints", Analysis.ViewedPoints),
      ScalarField("MeasuresFileOpen", Analysis.MeasuresFileOpen),
      ScalarField("StopAnalysis", Analysis.StopAnalysis),
  });
}

}  // namespace zelvane
