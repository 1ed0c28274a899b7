#include "fit/fit_fields.h"

#include "fit/fit_store.h"
#include "parameters/parameters_fields.h"
#include "screen/fields.h"

namespace zelvane {

void RegisterFitFields() {
  RegisterLimits(SavedSetting, "WaveFitLimits", Fit.WaveFitLimits);
  RegisterSavedSettings({
      ArrayField("WaveFitFixed[]", Fit.WaveFitFixed),
      ArrayField("WaveFitSeed[]", Fit.WaveFitSeed),
      ScalarField("WaveFitLimitsOn", Fit.WaveFitLimitsOn),
      ScalarField("WaveFitAutoSeed", Fit.WaveFitAutoSeed),
      ScalarField("WaveFitFixOn", Fit.WaveFitFixOn),
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
      ScalarField("FitFilterFc", Fit.FitFilterFc, "kHz"),
      ScalarField("FitNumIterations", Fit.FitNumIterations),
      ScalarField("FitNumRestarts", Fit.FitNumRestarts),
      ScalarField("FitStepSize", Fit.FitStepSize),
      ScalarField("FitSeedSpread", Fit.FitSeedSpread),
      RowField("DataBaselineStart[]", Fit.Waveform, &FitWindow::DataBaselineStart, "ms"),
      RowField("DataFitStart[]", Fit.Waveform, &FitWindow::DataFitStart, "ms"),
      RowField("SimBaselineStart[]", Fit.Waveform, &FitWindow::SimBaselineStart, "ms"),
      RowField("SimFitStart[]", Fit.Waveform, &FitWindow::SimFitStart, "ms"),
      RowField("NumBaselinePts[]", Fit.Waveform, &FitWindow::NumBaselinePts),
      RowField("NumAlignPts[]", Fit.Waveform, &FitWindow::NumAlignPts),
      RowField("NumFitPts[]", Fit.Waveform, &FitWindow::NumFitPts),
  });
  RegisterResults({
      RowField("WaveLoaded[]", Fit.Wave, &FitWaveform::WaveLoaded),
      RowField("FitDataOn[]", Fit.Wave, &FitWaveform::DataOn),
      RowField("FitStimOn[]", Fit.Wave, &FitWaveform::StimOn),
      RowField("WaveDataLength[]", Fit.Wave, &FitWaveform::DataLength),
      RowField("WaveStimLength[]", Fit.Wave, &FitWaveform::StimLength),
      RowField("WaveDataInterval[]", Fit.Wave, &FitWaveform::WaveDataInterval, "ms"),
      RowField("WaveStimInterval[]", Fit.Wave, &FitWaveform::WaveStimInterval, "ms"),
      RowField("WaveDataName[]", Fit.Wave, &FitWaveform::DataName),
      RowField("WaveStimName[]", Fit.Wave, &FitWaveform::StimName),
      ScalarField("FitWaveCount", Fit.FitWaveCount),
      ScalarField("FitListOn", Fit.FitListOn),
      ScalarField("FitListName", Fit.FitListName),
  });
}

}  // namespace zelvane
