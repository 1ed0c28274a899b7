#include "analysis/analysis_fields.h"

#include "analysis/analysis_store.h"
#include "screen/fields.h"

namespace zelvane {

void RegisterAnalysisFields() {
  RegisterFields({
      ScalarField("BaselineStart", Analysis.BaselineStart),
      ScalarField("BaselinePts", Analysis.BaselinePts),
      ScalarField("StartAnalysis", Analysis.StartAnalysis),
      ScalarField("PeakSearchPts", Analysis.PeakSearchPts),
      ScalarField("PeakAvePts", Analysis.PeakAvePts),
      ScalarField("PeakOption", Analysis.PeakOption),
      ScalarField("RiseStartFrac", Analysis.RiseStartFrac),
      ScalarField("RiseEndFrac", Analysis.RiseEndFrac),
      ScalarField("FracDecay", Analysis.FracDecay),
      ScalarField("LatencyPos", Analysis.LatencyPos),
      ScalarField("LatencyFrac", Analysis.LatencyFrac),
      ScalarField("ViewedPoints", Analysis.ViewedPoints),
      ScalarField("AutoSaveMeasures", Analysis.AutoSaveMeasures),
      ScalarField("VerifyMeasures", Analysis.VerifyMeasures),
      ArrayField("AnalysisDisplay[]", Analysis.AnalysisDisplay),
      ScalarField("Baseline", Analysis.Measures.Baseline),
      ScalarField("BaselineVar", Analysis.Measures.BaselineVar),
      ScalarField("PeakValue", Analysis.Measures.PeakValue),
      ScalarField("PeakPos", Analysis.Measures.PeakPos),
      ScalarField("RiseTime", Analysis.Measures.RiseTime),
      ScalarField("RisePoints", Analysis.Measures.RisePoints),
      ScalarField("RiseStartPos", Analysis.Measures.RiseStartPos),
      ScalarField("RiseEndPos", Analysis.Measures.RiseEndPos),
      ScalarField("RiseSlope", Analysis.Measures.RiseSlope),
      ScalarField("DecayTime", Analysis.Measures.DecayTime),
      ScalarField("FracWidth", Analysis.Measures.FracWidth),
      ScalarField("LatencyRise", Analysis.Measures.LatencyRise),
      ScalarField("LatencyPeak", Analysis.Measures.LatencyPeak),
      ScalarField("Integral", Analysis.Measures.Integral),
      ScalarField("Coastline", Analysis.Measures.Coastline),
      ScalarField("TableRow", Analysis.TableRow),
      ScalarField("MeasuresFileName", Analysis.MeasuresFileName),
      ScalarField("MeasuresFileOpen", Analysis.MeasuresFileOpen),
      ScalarField("MeasuresCount", Analysis.MeasuresCount),
      ScalarField("StopAnalysis", Analysis.StopAnalysis),
      ScalarField("AutoRescale", Analysis.AutoRescale),
      ScalarField("YMinGain", Analysis.YMinGain),
      ScalarField("YMaxGain", Analysis.YMaxGain),
  });
}

}  // namespace zelvane
