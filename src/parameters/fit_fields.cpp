#include "parameters/fit_fields.h"

#include "parameters/fit_store.h"
#include "screen/fields.h"

namespace zelvane {
namespace {

void RegisterLimits(const char* table, FitLimitTable& limits) {
  RegisterFields({RowField(std::string(table) + "[].lo", limits, &FitLimit::lo),
                  RowField(std::string(table) + "[].hi", limits, &FitLimit::hi)});
}

}  // namespace

void RegisterFitFields() {
  RegisterLimits("AnalysisFitLimits", Fit.AnalysisFitLimits);
  RegisterLimits("WaveFitLimits", Fit.WaveFitLimits);
  RegisterLimits("DwellFitLimits", Fit.DwellFitLimits);
  RegisterLimits("ExpFitLimits", Fit.ExpFitLimits);
  RegisterLimits("SublevelFitLimits", Fit.SublevelFitLimits);
  RegisterLimits("VarFitLimits", Fit.VarFitLimits);
  RegisterLimits("SpecFitLimits", Fit.SpecFitLimits);
  RegisterLimits("DoseFitLimits", Fit.DoseFitLimits);
  RegisterFields({
      ScalarField("FitMode", Fit.FitMode),
      ArrayField("WaveFitFixed[]", Fit.WaveFitFixed),
      ArrayField("AnalysisFitFixed[]", Fit.AnalysisFitFixed),
      ArrayField("WaveFitSeed[]", Fit.WaveFitSeed),
      ArrayField("AnalysisFitSeed[]", Fit.AnalysisFitSeed),
      ScalarField("WaveFitLimitsOn", Fit.WaveFitLimitsOn),
      ScalarField("WaveFitAutoSeed", Fit.WaveFitAutoSeed),
      ScalarField("WaveFitFixOn", Fit.WaveFitFixOn),
      ScalarField("AnalysisLimitsOn", Fit.AnalysisLimitsOn),
      ScalarField("AnalysisAutoSeed", Fit.AnalysisAutoSeed),
      ScalarField("AnalysisFixOn", Fit.AnalysisFixOn),
      ScalarField("AutoGenFitLims", Fit.AutoGenFitLims),
      ScalarField("FitLimsXFold", Fit.FitLimsXFold),
      ScalarField("FitModelIs2D", Fit.FitModelIs2D),
      ScalarField("FitAlign", Fit.FitAlign),
      ScalarField("FitAlignChoice", Fit.FitAlignChoice),
      ScalarField("AlignRange", Fit.AlignRange),
      ScalarField("FitPeakSearchPts", Fit.FitPeakSearchPts),
      ScalarField("FitPeakAve", Fit.FitPeakAve),
      ScalarField("FitDualSpeed", Fit.FitDualSpeed),
      ScalarField("FitNormalized", Fit.FitNormalized),
      ScalarField("FitFilterOn", Fit.FitFilterOn),
      ScalarField("FitFilterFc", Fit.FitFilterFc),
      ScalarField("FitNumIterations", Fit.FitNumIterations),
      ScalarField("FitNumRestarts", Fit.FitNumRestarts),
      ScalarField("FitStepSize", Fit.FitStepSize),
      ScalarField("FitSeedSpread", Fit.FitSeedSpread),
      ScalarField("FitTolerance", Fit.FitTolerance),
      RowField("DataBaselineStart[]", Fit.Waveform, &FitWindow::DataBaselineStart),
      RowField("DataFitStart[]", Fit.Waveform, &FitWindow::DataFitStart),
      RowField("SimBaselineStart[]", Fit.Waveform, &FitWindow::SimBaselineStart),
      RowField("SimFitStart[]", Fit.Waveform, &FitWindow::SimFitStart),
      RowField("NumBaselinePts[]", Fit.Waveform, &FitWindow::NumBaselinePts),
      RowField("NumAlignPts[]", Fit.Waveform, &FitWindow::NumAlignPts),
      RowField("NumFitPts[]", Fit.Waveform, &FitWindow::NumFitPts),
      RowField("WaveLoaded[]", Fit.Wave, &FitWaveform::WaveLoaded),
      RowField("FitDataOn[]", Fit.Wave, &FitWaveform::DataOn),
      RowField("FitStimOn[]", Fit.Wave, &FitWaveform::StimOn),
      RowField("WaveDataLength[]", Fit.Wave, &FitWaveform::DataLength),
      RowField("WaveStimLength[]", Fit.Wave, &FitWaveform::StimLength),
      RowField("WaveDataInterval[]", Fit.Wave, &FitWaveform::WaveDataInterval),
      RowField("WaveStimInterval[]", Fit.Wave, &FitWaveform::WaveStimInterval),
      RowField("WaveDataName[]", Fit.Wave, &FitWaveform::DataName),
      RowField("WaveStimName[]", Fit.Wave, &FitWaveform::StimName),
      ScalarField("FitWaveCount", Fit.FitWaveCount),
      ScalarField("FitListOn", Fit.FitListOn),
      ScalarField("FitListName", Fit.FitListName),
      ScalarField("AnalysisParse", Fit.AnalysisParse),
      ScalarField("AnalysisFitPts", Fit.AnalysisFitPts),
      ScalarField("AnalysisNumIterations", Fit.AnalysisNumIterations),
      ScalarField("AnalysisNumRestarts", Fit.AnalysisNumRestarts),
      ScalarField("AnalysisTolerance", Fit.AnalysisTolerance),
      ScalarField("DualSpeedPts", Fit.DualSpeedPts),
      ScalarField("FitStartPts", Fit.FitStartPts),
      ScalarField("FitAmp1", Fit.FitAmp1),
      ScalarField("FitTau1", Fit.FitTau1),
      ScalarField("FitAmp2", Fit.FitAmp2),
      ScalarField("FitTau2", Fit.FitTau2),
      ScalarField("FitOffset", Fit.FitOffset),
      ScalarField("FitGoodness", Fit.FitGoodness),
  });
}

}  // namespace zelvane
