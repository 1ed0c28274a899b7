#include "fit/fit_objective.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>

#include "fit/fit_progress.h"
#include "fit/fit_rows.h"
#include "fit/wave_compare.h"
#include "fit/wave_set_panels.h"
#include "model/constraints.h"
#include "model/model_store.h"
#include "parameters/parameters_store.h"
#include "parameters/vertex_store.h"
#include "platform/index.h"
#include "run/run.h"
#include "screen/popups.h"
#include "stimulus/gaussian_filter.h"
#include "stimulus/stimulus_store.h"
#include "trace/trace_store.h"

namespace zelvane {
namespace {

constexpr std::size_t AlignedBetweenStops = 64;  // samples
constexpr char NoPeak[] = "! WARNING: No peak found";
constexpr char BaselineMisleads[] =
    "The baseline of a simulation is above 1 percent of its peak, and a normalised simulation is divided by the "
    "whole peak: the fitted curve ends below 1.";
constexpr char NoRun[] = "A simulation of this fit gave no trace; its waveform was compared with zeros.";
constexpr char EvaluationLine[] = "eval#%d, low(%d): ssq=%.2e current-ssq=%.2e align=%d pk=%f";

constexpr double SpareOfRun = 1.1;  // a run covers 1.1 times the fitted stretch
constexpr double SmallBaseline = 0.01;
constexpr double PenaltyOfLimits = 1000.0;
constexpr int LastDrugOfSet = 3;  // a set of several waveforms has voltage and three drugs

SimplexTable& Table() {
  return Vertices.simplex;
}

int IndexOfTime(float timeMs) {
  return static_cast<int>(std::min<std::int64_t>(SampleAtTime(timeMs), MaxWaveformPoints));
}

bool InFit(const FitWaveform& wave) {
  return wave.WaveLoaded != 0;
}

/// Copies the stimulus of a waveform to the profiles, two samples further than the run: its last step looks ahead.
void CopyStimulus(const FitWaveform& wave, int points) {
  const auto samples = std::min(Index(points) + 2, std::size_t{MaxWaveformPoints});
  for (std::size_t p = 0; p <= LastDrugOfSet; ++p) {
    if (p == 1 && Fit.FitKind == FitOfStimulus) continue;  // just built
    std::copy_n(wave.WaveStim[p].begin(), samples, Stimulus.Profile[p].begin());
  }
}

RunReporter& FitReporter() {
  static RunReporter reporter = [] {
    RunReporter silent;  // without messages, but a long run repaints and stops
    silent.breathe = [](double /*fraction*/) { return StopOfEvaluation(); };
    return silent;
  }();
  return reporter;
}

/// Simulates waveform `w` into the trace. Returns false after a stop.
bool SimulateWave(int w, int points) {
  const FitWaveform& wave = Fit.Wave[Index(w)];
  if (Fit.FitWaveCount != 1) CopyStimulus(wave, points);
  const RunStart start = Model.FitStartAtEquilibrium != 0 ? RunStart::AtEquilibrium : RunStart::AsSet;
  const Outcome outcome = RunSimulation(points, start, FitReporter(), &FitSession.memory[Index(w)]);
  if (outcome == Outcome::Stopped) {
    FitSession.stopped = true;
    return false;
  }
  if (Trace.TraceValid == 0 && !FitSession.told.noTrace) {
    FitSession.told.noTrace = true;
    Note(NoRun);
  }
  if (Fit.FitFilterOn != 0) {
    GaussianFilter(Trace.SimTrace.first(Index(std::clamp(points, 0, MaxStimPoints))), Fit.FitFilterFc, {});
  }
  return true;
}

/// Finds the peak of the simulation of waveform 1, by which all waveforms are scaled.
void FindFitPeak(const FitWindow& window, float baseline) {
  Fit.FitPeak = 1.0F;
  if (Fit.FitNormalized == 0) return;
  const WavePeak peak =
      PeakOfWave(Trace.SimTrace, Fit.Wave[1].AlignIndex, Fit.FitPeakSearchPts, baseline, Fit.FitPeakAve);
  if (peak.value == 0.0F) {
    AddFitLogLine(NoPeak);
    return;
  }
  Fit.FitPeak = peak.value;
  const bool high =
      window.NumBaselinePts > 0 &&
      std::fabs(static_cast<double>(baseline)) > SmallBaseline * std::fabs(static_cast<double>(Fit.FitPeak));
  if (!high || FitSession.told.simulatedBaseline) return;
  FitSession.told.simulatedBaseline = true;
  Note(BaselineMisleads);
}

/// Fills the simulated samples of a waveform: as many as the data side has, and half an alignment window more.
void FillSimulated(const FitWindow& window, FitWaveform& wave, float baseline) {
  const float scale = Fit.FitPeak;
  const bool scaled = Fit.FitNormalized != 0;
  const std::span<const float> trace = Trace.SimTrace;
  const int samples = window.NumFitPts + window.NumAlignPts / 2;
  ForComparedSamples(samples, CompareSteps(), [&](std::size_t c, int offset) {
    const auto at = static_cast<std::int64_t>(wave.AlignIndex) + offset;
    const float sample = at < static_cast<std::int64_t>(trace.size()) ? trace[Index(at)] : 0.0F;
    const float simulated = sample - baseline;
    wave.FitSim[c] = scaled ? simulated / scale : simulated;
  });
}

/// Runs waveform `w` and fills its `FitSim`. Returns false after a stop.
bool RunWave(int w) {
  FitWaveform& wave = Fit.Wave[Index(w)];
  const FitWindow& window = Fit.Waveform[Index(w)];
  const int points = WaveRunPoints(window);
  if (w == 1) Model.NumPoints = points;
  if (!SimulateWave(w, std::min(points, MaxWaveformPoints - 1))) return false;
  const float baseline =
      WaveBaseline(Trace.SimTrace, IndexOfTime(window.SimBaselineStart), window.NumBaselinePts);
  if (w == 1) FindFitPeak(window, baseline);
  wave.AlignIndex = Fit.FitAlign != 0
                        ? WaveAlign(window, Trace.SimTrace, Fit.FitPeak, FitSession.aligned[Index(w)])
                        : IndexOfTime(window.SimFitStart);
  if (window.NumFitPts > 0) FillSimulated(window, wave, baseline);
  return true;
}

void RunAllWaves() {
  for (int w = 1; w <= MaxFitWaveforms; ++w) {
    if (!InFit(Fit.Wave[Index(w)])) continue;
    if (!RunWave(w)) break;
  }
  Model.NumPoints = WaveRunPoints(Fit.Waveform[1]);
}

/// Returns the sum of the squared differences of all waveforms: 32-bit floats, added in double.
double SumOfSquares() {
  double sum = 0.0;
  for (FitWaveform& wave : Fit.Wave) {
    if (!InFit(wave)) continue;
    for (std::size_t j = 0; j < Index(wave.FittedCount); ++j) {
      const float difference = wave.FitSim[j] - wave.FitData[j];
      wave.FitSqDiff[j] = difference * difference;
      sum += static_cast<double>(wave.FitSqDiff[j]);
    }
  }
  return sum;
}

FitLimit LimitOf(int param) {
  const int row = FitSession.param[Index(param)].row;
  return Fit.FitKind == FitOfRates ? Fit.WaveFitLimits[Index(row)] : Fit.StimFitLimits[Index(row)];
}

/// Returns the sum with a penalty for each parameter outside its limits. The distance counts from the upper limit.
double WithPenalties(double sum, int column) {
  if (Fit.WaveFitLimitsOn == 0) return sum;
  for (int i = 1; i <= Table().NumParams; ++i) {
    const double value = Table().At(i, column);
    const FitLimit limit = LimitOf(i);
    if (!(value > limit.hi || value < limit.lo)) continue;
    const auto distance = static_cast<float>(std::fabs(value - limit.hi));
    sum += PenaltyOfLimits * static_cast<double>(distance) * sum;
  }
  return sum;
}

void KeepBestColumn() {
  for (int c = 0; c <= Table().NumParams; ++c) {
    if (Table().At(0, c) < Table().At(0, Table().BestVertex) && Table().At(0, c) != 0.0)
      Table().BestVertex = c;
  }
}

template <typename Run>
void Evaluate(int column, Run run) {
  if (FitSession.stopped) {
    Table().At(0, column) = std::numeric_limits<double>::infinity();
    return;
  }
  run(column);
  if (FitSession.stopped) {  // a part of a simulation says nothing about the column
    Table().At(0, column) = std::numeric_limits<double>::infinity();
    return;
  }
  ++FitSession.evaluations;
  FitSession.lastColumn = column;
  Table().At(0, column) = WithPenalties(SumOfSquares(), column);
  KeepBestColumn();
  AddFitLogLine(EvaluationText(column));
}

// -- Stimulus --

/// Returns the stimulus of a column at `t` ms.
struct ExponentialStimulus {
  double amp1 = 0.0;
  double tau1 = 0.0;
  double amp2 = 0.0;
  double tau2 = 0.0;
  double rise = 0.0;

  bool Empty() const {
    const bool two = Stimulus.ExpComponents == 2;
    if (two && Stimulus.ExpRiseFlag != 0) return true;
    return tau1 == 0.0 || (two && tau2 == 0.0) || (Stimulus.ExpRiseFlag != 0 && rise == 0.0);
  }
  float operator()(float t) const {
    const auto time = static_cast<double>(t);
    const double first = amp1 * std::exp(-time / tau1);
    if (Stimulus.ExpComponents == 2) return static_cast<float>(first + amp2 * std::exp(-time / tau2));
    if (Stimulus.ExpRiseFlag != 0) return static_cast<float>(first - amp1 * std::exp(-time / rise));
    return static_cast<float>(first);
  }
};

ExponentialStimulus StimulusOf(int column) {
  const SimplexTable& table = Table();
  ExponentialStimulus stimulus{table.At(1, column), table.At(2, column)};
  if (Stimulus.ExpComponents == 2) {
    stimulus.amp2 = table.At(3, column);
    stimulus.tau2 = table.At(4, column);
  } else if (Stimulus.ExpRiseFlag != 0) {
    stimulus.rise = table.At(3, column);
  }
  return stimulus;
}

/// Builds Drug1 of the profiles and of the waveforms: the samples that runs use, or all of them for the result.
void BuildDrug(int column) {
  int longest = 0;
  for (std::size_t w = 1; w <= MaxFitWaveforms; ++w) {
    if (InFit(Fit.Wave[w])) longest = std::max(longest, WaveRunPoints(Fit.Waveform[w]) + 2);
  }
  const int samples = FitSession.finalRun ? MaxWaveformPoints : std::min(longest, MaxWaveformPoints);
  const auto drug = Stimulus.Profile[1].first(Index(samples));
  std::fill(drug.begin(), drug.end(), 0.0F);
  const FitWindow& window = Fit.Waveform[1];
  const auto start = static_cast<int>(
      std::clamp(static_cast<double>(window.SimFitStart) / static_cast<double>(Model.ADInterval) +
                     0.5 * window.NumAlignPts,
                 0.0, static_cast<double>(MaxWaveformPoints)));
  const ExponentialStimulus stimulus = StimulusOf(column);
  const int end = std::min(samples, MaxWaveformPoints - 1 - start);
  float t = 0.0F;
  for (int i = start; i < end && !stimulus.Empty(); ++i) {
    drug[Index(i)] += stimulus(t);
    t += Model.ADInterval;
  }
  for (std::size_t w = 1; w <= MaxFitWaveforms; ++w) {
    if (FitSession.finalRun || InFit(Fit.Wave[w]))
      std::copy(drug.begin(), drug.end(), Fit.Wave[w].WaveStim[1].begin());
  }
  for (RunMemory& memory : FitSession.memory) ClearBook(memory.scheme.book, 0);  // of the stimulus before
}

}  // namespace

std::string EvaluationText(int column) {
  const SimplexTable& table = Table();
  return FormatText(EvaluationLine, table.NumEvals, table.BestVertex, table.At(0, table.BestVertex),
                    table.At(0, column), Fit.Wave[1].AlignIndex, static_cast<double>(Fit.FitPeak));
}

int WaveRunPoints(const FitWindow& window) {
  const double points =
      SpareOfRun * static_cast<double>(window.SimFitStart) / static_cast<double>(Model.ADInterval) +
      SpareOfRun * window.NumFitPts + window.NumAlignPts;
  constexpr double Most = 2e9;
  return points > 0.0 ? static_cast<int>(std::min(points, Most)) : 0;
}

void PrepareObjective() {
  FitSession.points = 0;
  for (RunMemory& memory : FitSession.memory) memory.scheme.prepared = false;
  for (std::size_t w = 1; w <= MaxFitWaveforms; ++w) {
    const FitWaveform& wave = Fit.Wave[w];
    AlignedData& aligned = FitSession.aligned[w];
    aligned = {};
    if (!InFit(wave)) continue;
    FitSession.points += wave.FittedCount;
    const FitWindow& window = Fit.Waveform[w];
    const auto first = Index(IndexOfTime(window.DataFitStart));
    const auto count = Index(std::clamp(window.NumAlignPts, 0, MaxWaveformPoints));
    aligned.hundredfold.assign(count, 0.0F);  // samples behind the recording are 0
    for (std::size_t j = 0; j < count && first + j < wave.WaveData.size(); ++j)
      aligned.hundredfold[j] = 100.0F * wave.WaveData[first + j];
    const std::size_t offsets = count * Index(std::max(0, Fit.FitAlignRange) + 1);
    aligned.sums.resize(offsets);
    aligned.simulated.resize(offsets + count);
  }
}

int WaveAlign(const FitWindow& window, std::span<const float> simulated, float peak, AlignedData& room) {
  const int half = (Fit.FitAlignRange + 1) / 2;
  const std::int64_t wanted =
      IndexOfTime(window.SimFitStart) - static_cast<std::int64_t>(half) * window.NumAlignPts;
  const std::int64_t first = std::max<std::int64_t>(1, wanted);
  if (room.sums.empty()) return static_cast<int>(first);
  for (std::size_t k = 0; k < room.simulated.size(); ++k) {
    const std::size_t at = Index(first) + k;
    room.simulated[k] = at < simulated.size() ? 100.0F * simulated[at] / peak : 0.0F;
  }
  // All offsets advance together. The order of the sum of each one is that of the samples.
  std::fill(room.sums.begin(), room.sums.end(), 0.0F);
  const std::size_t offsets = room.sums.size();
  float* sums = room.sums.data();
  for (std::size_t j = 0; j < room.hundredfold.size(); ++j) {
    if (j % AlignedBetweenStops == AlignedBetweenStops - 1 && StopOfEvaluation()) {
      FitSession.stopped = true;  // drops this evaluation
      break;
    }
    const float data = room.hundredfold[j];
    const float* shifted = room.simulated.data() + j;
    for (std::size_t o = 0; o < offsets; ++o) {
      const float difference = data - shifted[o];
      sums[o] += difference * difference;
    }
  }
  const auto lowest = std::min_element(room.sums.begin(), room.sums.end());
  return static_cast<int>(first + (lowest - room.sums.begin()));
}

void ApplyConstraints(int column) {
  for (int i = 1; i <= Table().NumParams; ++i) {
    PutRate(FitSession.param[Index(i)].code, std::fabs(Table().At(i, column)));
  }
  ApplyRateAndLoopConstraints(FitSession.told.constraints);
  if (FitSession.told.constraints.untold) TellConstraintFaults(FitSession.told.constraints);
}

void RateVertexRun(int column) {
  ApplyConstraints(column);
  RunAllWaves();
}

void StimVertexRun(int column) {
  BuildDrug(column);
  RunAllWaves();
}

void RateVertexEval(int column) {
  Evaluate(column, RateVertexRun);
}

void StimVertexEval(int column) {
  Evaluate(column, StimVertexRun);
}

}  // namespace zelvane
