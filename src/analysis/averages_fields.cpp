#include "analysis/averages_fields.h"

#include "analysis/averages_store.h"
#include "screen/fields.h"

namespace zelvane {

void RegisterAveragesFields() {
  RegisterSettings({
      ScalarField("WaveBaselineStart", Averages.WaveBaselineStart, "ms"),
      ScalarField("WaveBaselinePts", Averages.WaveBaselinePts),
      ScalarField("WaveStartAnalysis", Averages.WaveStartAnalysis, "ms"),
      ScalarField("WavePeakSearchPts", Averages.WavePeakSearchPts),
      ScalarField("WavePeakAve", Averages.WavePeakAve),
      ScalarField("WaveRiseStartFrac", Averages.WaveRiseStartFrac),
      ScalarField("WaveRiseEndFrac", Averages.WaveRiseEndFrac),
      ScalarField("WaveLatencyPos", Averages.WaveLatencyPos, "ms"),
      ScalarField("WaveLatencyFrac", Averages.WaveLatencyFrac),
      ScalarField("AlignMode", Averages.AlignMode),
      ScalarField("AlignRange", Averages.AlignRange),
      ScalarField("SlopePoints", Averages.SlopePoints),
      ScalarField("WaveBaselineCorrect", Averages.WaveBaselineCorrect),
      ScalarField("ShowAverage", Averages.ShowAverage),
      ScalarField("ManualRise", Averages.ManualRise, "ms"),
  });
  RegisterResults({
      SpanField("WaveSum[]", Averages.WaveSum),
      SpanField("WaveCount[]", Averages.WaveCount),
      SpanField("WaveNormSum[]", Averages.WaveNormSum),
      ScalarField("WaveBaseline", Averages.WaveBaseline),
      ScalarField("WavePeak", Averages.WavePeak),
      ScalarField("WavePeakPos", Averages.WavePeakPos),
      ScalarField("WaveRiseStartPos", Averages.WaveRiseStartPos),
      ScalarField("WaveRiseEndPos", Averages.WaveRiseEndPos),
      ScalarField("WaveRiseTime", Averages.WaveRiseTime, "ms"),
      ScalarField("WaveRisePoints", Averages.WaveRisePoints),
      ScalarField("SteepestPos", Averages.SteepestPos),
      ScalarField("AverageCount", Averages.AverageCount),
      ScalarField("AlignAnchor", Averages.AlignAnchor),
  });
}

}  // namespace zelvane
