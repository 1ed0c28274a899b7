#include "fit/plain_objective.h"

#include <algorithm>
#include <limits>

#include "fit/fit_objective.h"
#include "fit/wave_compare.h"
#include "kinetics/plain_integrator.h"
#include "model/model.h"
#include "model/model_store.h"
#include "platform/index.h"
#include "run/active_scheme.h"
#include "run/q_matrix_analysis.h"
#include "run/result_store.h"
#include "run/run.h"
#include "stimulus/profile_builder.h"
#include "stimulus/stimulus_store.h"
#include "trace/trace.h"
#include "trace/trace_store.h"

namespace zelvane {
namespace {

/// Simulates a waveform into the trace.
void PlainRun(const FitWaveform& wave, int points) {
  for (std::size_t p = 0; p <= 3 && Fit.FitWaveCount != 1; ++p)
    std::copy_n(wave.WaveStim[p].begin(), points + 2, Stimulus.Profile[p].begin());
  Model.NumPoints = Model.RecordPoints = points;
  if (Model.FitStartAtEquilibrium != 0) {
    QMatrixAnalysis(false, RestingPoint);
    if (HasEquilibrium()) Model.StartOccupancy = Result.EquilibriumOccupancy;
  }
  if (Model.ModelIs2D != 0)
    RatesFromGrid();
  else
    ActivateTableModel();
  ClearOccupancy(points + 1);
  PlainFixedStep(ActiveTables(), ActiveStimulus(), Model.StartOccupancy, points, Model.MaxStepSize,
                 Result.Occupancy);
  std::array<int, MaxStates + 1> used{};
  used.fill(points + 2);
  RaiseOccupancyUsed(used);
  Result.ResultKind = ResultUniform;
  ConvertTrace(false, {});
}

/// The offset of the lowest sum of squares, one offset after the other.
int PlainAlign(const FitWindow& window, const FitWaveform& wave, float peak) {
  const std::int64_t data = TimeIndex(window.DataFitStart, Model.ADInterval);
  const std::int64_t first =
      std::max<std::int64_t>(1, TimeIndex(window.SimFitStart, Model.ADInterval) -
                                    std::int64_t{(Fit.FitAlignRange + 1) / 2} * window.NumAlignPts);
  float lowest = std::numeric_limits<float>::infinity();
  std::int64_t best = first;
  for (std::int64_t o = first; o < first + std::int64_t{Fit.FitAlignRange + 1} * window.NumAlignPts; ++o) {
    float sum = 0.0F;
    for (std::int64_t j = data; j < data + window.NumAlignPts; ++j) {
      const float difference =
          100.0F * wave.WaveData[Index(j)] - 100.0F * Trace.SimTrace[Index(o + j - data)] / peak;
      sum += difference * difference;
    }
    if (!(sum < lowest)) continue;
    lowest = sum;
    best = o;
  }
  return static_cast<int>(best);
}

}  // namespace

double PlainSumOfSquares(int column) {
  ApplyConstraints(column);
  double sum = 0.0;
  float scale = 1.0F;
  for (std::size_t w = 1; w <= MaxFitWaveforms; ++w) {
    const FitWaveform& wave = Fit.Wave[w];
    const FitWindow& window = Fit.Waveform[w];
    if (wave.WaveLoaded == 0) continue;
    PlainRun(wave, WaveRunPoints(window));
    const float baseline = WaveBaseline(Trace.SimTrace, TimeIndex(window.SimBaselineStart, Model.ADInterval),
                                        window.NumBaselinePts);
    if (w == 1 && Fit.FitNormalized != 0) {
      scale =
          PeakOfWave(Trace.SimTrace, wave.AlignIndex, Fit.FitPeakSearchPts, baseline, Fit.FitPeakAve).value;
      if (scale == 0.0F) scale = 1.0F;
    }
    const int start = Fit.FitAlign != 0 ? PlainAlign(window, wave, scale)
                                        : static_cast<int>(TimeIndex(window.SimFitStart, Model.ADInterval));
    int step = 1;
    for (int c = 0, d = 0; c < wave.FittedCount; ++c, d += step) {
      if (c == Fit.FitDualSpeed) step = std::max(Fit.FitParse, 1);
      float simulated = Trace.SimTrace[Index(start + d)] - baseline;
      if (Fit.FitNormalized != 0) simulated /= scale;
      const float difference = simulated - wave.FitData[Index(c)];
      sum += static_cast<double>(difference * difference);
    }
  }
  return sum;
}

}  // namespace zelvane
