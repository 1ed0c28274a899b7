#include "fit/fit_fields.h"

#include <cstddef>
#include <utility>

#include "fit/fit_store.h"
#include "parameters/parameters_fields.h"
#include "screen/fields.h"

namespace zelvane {

namespace {

/// Describes the samples of all waveforms. Their arrays lie at equal distances.
Field SamplesOfWaves(std::string name, std::span<float> FitWaveform::*member, std::string_view unit = {}) {
  const auto* first = (Fit.Wave[1].*member).data();
  const auto* second = (Fit.Wave[2].*member).data();
  const auto step = (second - first) * static_cast<std::ptrdiff_t>(sizeof(float));
  return {.name = std::move(name),
          .type = FieldType::Float,
          .base = reinterpret_cast<std::byte*>((Fit.Wave[1].*member).data()) - step,
          .rank = 2,
          .index = {{{1, MaxFitWaveforms, step}, {0, MaxWaveformPoints - 1, sizeof(float)}}},
          .unit = unit};
}

/// Describes the stimuli of all waveforms: profile 0 is the voltage, 1 to 6 are the drugs.
Field StimuliOfWaves() {
  constexpr auto Size = static_cast<std::ptrdiff_t>(sizeof(float));
  const auto& first = Fit.Wave[1].WaveStim;
  const auto wave = (Fit.Wave[2].WaveStim[0].data() - first[0].data()) * Size;
  const auto profile = (first[1].data() - first[0].data()) * Size;
  return {.name = "WaveStim[][][]",
          .type = FieldType::Float,
          .base = reinterpret_cast<std::byte*>(first[0].data()) - wave,
          .rank = 3,
          .index = {{{1, MaxFitWaveforms, wave},
                     {0, static_cast<int>(first.size()) - 1, profile},
                     {0, MaxWaveformPoints - 1, sizeof(float)}}}};
}

void RegisterSamples() {
  RegisterResults({
      SamplesOfWaves("WaveData[][]", &FitWaveform::WaveData),
      StimuliOfWaves(),
      SamplesOfWaves("FitX[][]", &FitWaveform::FitX),
      SamplesOfWaves("FitData[][]", &FitWaveform::FitData),
      SamplesOfWaves("FitSim[][]", &FitWaveform::FitSim),
      SamplesOfWaves("FitSqDiff[][]", &FitWaveform::FitSqDiff),
  });
}

}  // namespace

void RegisterFitFields() {
  RegisterSamples();
  RegisterLimits(SavedSetting, "WaveFitLimits", Fit.WaveFitLimits);
  RegisterSavedSettings({
      ArrayField("WaveFitOwnFixed[]", Fit.WaveFitOwnFixed),
      ArrayField("WaveFitSeed[]", Fit.WaveFitSeed),
      ScalarField("WaveFitLimitsOn", Fit.WaveFitLimitsOn),
      ScalarField("WaveFitAutoSeed", Fit.WaveFitAutoSeed),
      ScalarField("WaveFitFixOn", Fit.WaveFitFixOn),
      ScalarField("AutoGenFitLims", Fit.AutoGenFitLims),
      ScalarField("FitLimsXFold", Fit.FitLimsXFold),
      ScalarField("FitModelIs2D", Fit.FitModelIs2D),
      ScalarField("FitAlign", Fit.FitAlign),
      ScalarField("FitAlignChoice", Fit.FitAlignChoice),
      ScalarField("FitAlignRange", Fit.FitAlignRange),
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
  RegisterSettings({
      RowField("StimFitLimits[].lo", Fit.StimFitLimits, &FitLimit::lo),
      RowField("StimFitLimits[].hi", Fit.StimFitLimits, &FitLimit::hi),
      ScalarField("WaveFitTolerance", Fit.WaveFitTolerance),
      ScalarField("FitParse", Fit.FitParse),
      ScalarField("FitShowCurves", Fit.FitShowCurves),
      ScalarField("FitTotalCurves", Fit.FitTotalCurves),
      ScalarField("FitShownWave", Fit.FitShownWave),
      ScalarField("FitShownProfile", Fit.FitShownProfile),
      ScalarField("FitLogOn", Fit.FitLogOn),
      ScalarField("FitLogFile", Fit.FitLogFile),
  });
  RegisterWorkingFields({ArrayField("WaveFitFixed[]", Fit.WaveFitFixed)});
  RegisterResults({
      ArrayField("RowCode[]", Fit.RowCode),
      RowField("AlignIndex[]", Fit.Wave, &FitWaveform::AlignIndex),
      RowField("FittedCount[]", Fit.Wave, &FitWaveform::FittedCount),
      ScalarField("FitKind", Fit.FitKind),
      ScalarField("FitPeak", Fit.FitPeak),
      ScalarField("RestartCount", Fit.RestartCount),
      ScalarField("FitNormResidual", Fit.FitNormResidual),
      RowField("WaveLoaded[]", Fit.Wave, &FitWaveform::WaveLoaded),
      RowField("FitDataOn[]", Fit.Wave, &FitWaveform::DataOn),
      RowField("FitStimOn[]", Fit.Wave, &FitWaveform::StimOn),
      RowField("WaveDataLength[]", Fit.Wave, &FitWaveform::DataLength),
      RowField("WaveStimLength[]", Fit.Wave, &FitWaveform::StimLength),
      RowField("WaveDataInterval[]", Fit.Wave, &FitWaveform::WaveDataInterval, "ms"),
      RowField("WaveStimInterval[]", Fit.Wave, &FitWaveform::WaveStimInterval, "ms"),
      RowField("WaveDataName[]", Fit.Wave, &FitWaveform::DataName),
      RowField("WaveStimName[]", Fit.Wave, &FitWaveform::StimName),
      ScalarField("WaveDataInterval", Fit.WaveDataInterval, "ms"),
      ScalarField("WaveStimInterval", Fit.WaveStimInterval, "ms"),
      ScalarField("WavesNormalized", Fit.WavesNormalized),
      ScalarField("FitWaveCount", Fit.FitWaveCount),
      ScalarField("FitListOn", Fit.FitListOn),
      ScalarField("FitListName", Fit.FitListName),
  });
}

}  // namespace zelvane
