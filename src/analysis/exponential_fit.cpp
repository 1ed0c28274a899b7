#include "analysis/exponential_fit.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <string>
#include <utility>

#include "analysis/analysis_fit_store.h"
#include "analysis/analysis_store.h"
#include "analysis/analyze.h"
#include "analysis/series.h"
#include "model/model_store.h"
#include "parameters/vertex_store.h"
#include "platform/index.h"
#include "screen/popups.h"

namespace zelvane {
namespace {

constexpr MessageTitle ReducedTitle{MessageKind::Warning, "! "};
constexpr char PointsReduced[] = "Number of fit points has been reduced.";
constexpr char NoPeak[] = "No exponential was fitted: the response has no peak.";
constexpr char NoRise[] = "No exponential was fitted: the response has no measured rise.";
constexpr char FewPoints[] =
    "No exponential was fitted: the record has fewer points after the start of the fit than the "
    "fit has parameters.";
constexpr char NotFinite[] = "No exponential was fitted: not all its points are numbers.";
constexpr char NotConverged[] = "The exponential fit did not converge; more iterations or restarts may help.";
constexpr char Stopped[] = "The exponential fit was stopped; its values are the best so far.";
constexpr char OtherMode[] =
    "Measured without an exponential fit, because another fit is the present one; choose decay, two "
    "decays or rise under Exponential fit.";

constexpr char FittingText[] = "Fitting the response";

constexpr int LastExponentialRow = 5;
constexpr int OffsetPoint = 5;  // from the end: the seed of the offset
constexpr double SmallestTau = 1e-6;
constexpr std::chrono::seconds StopsAfter{2};

void TellOnce(const char* sentence) {
  if (FirstInSeries(sentence)) Note(sentence);
}

bool IsRise() {
  return Parameters.FitMode == FitRise;
}

/// The fields of the rows of a fit, from row 1. Those of one component are amplitude, time constant and offset.
std::array<double*, LastExponentialRow + 1> FieldsOfRows() {
  AnalysisFitStore& f = AnalysisFit;
  if (Parameters.FitMode == FitTwoDecays)
    return {nullptr, &f.FitAmp1, &f.FitTau1, &f.FitAmp2, &f.FitTau2, &f.FitOffset};
  return {nullptr, &f.FitAmp1, &f.FitTau1, &f.FitOffset, nullptr, nullptr};
}

int FirstSample() {
  const ResponseMeasures& m = Analysis.Measures;
  const std::int64_t start = IsRise() ? m.RiseStartPos : m.PeakPos;
  return static_cast<int>(
      std::clamp<std::int64_t>(start + std::max(AnalysisFit.FitStartPts, 0), 0, MaxPoints));
}

int Parse() {
  return std::max(AnalysisFit.AnalysisParse, 1);
}

/// Shortens a fit that ends after the record, by whole steps.
void KeepWithinRecord(int first) {
  int& points = AnalysisFit.AnalysisFitPts;
  const std::int64_t room = std::int64_t{Model.NumPoints} - first;
  const bool tooLong = room < std::int64_t{points} * Parse();
  if (!tooLong && points >= 1 && points <= MaxFormulaPoints) return;
  const std::int64_t fitting = tooLong ? room / Parse() : std::int64_t{points};
  points = static_cast<int>(std::clamp<std::int64_t>(fitting, 1, MaxFormulaPoints));
  FitPointsReduced.Tell();
  if (FirstInSeries(PointsReduced)) MessagePopup(ReducedTitle, PointsReduced);
}

/// Puts the samples of the trace, less the baseline, into the points of the fit. Returns false when one is no number.
bool TakePoints(std::span<const int> samples) {
  const std::span<const float> trace = RecordedTrace();
  const float baseline = Analysis.Measures.Baseline;
  bool finite = true;
  for (std::size_t i = 0; i < samples.size(); ++i) {
    Vertices.FitX[i] = Model.ADInterval * static_cast<float>(samples[i]);
    Vertices.FitData[i] = trace[Index(samples[i])] - baseline;
    finite = finite && std::isfinite(Vertices.FitData[i]);
  }
  Vertices.FormulaPoints = static_cast<int>(samples.size());
  return finite;
}

/// Returns the sum of squares of the points about their mean.
float SumAboutMean(std::span<const float> data) {
  float sum = 0.0F;
  for (const float value : data) sum += value;
  const float mean = sum / static_cast<float>(data.size());
  float squares = 0.0F;
  for (const float value : data) squares += (value - mean) * (value - mean);
  return squares;
}

// -- Seeds --

void SeedFromMeasures() {
  AnalysisFitStore& f = AnalysisFit;
  const auto amplitude = static_cast<double>(Analysis.Measures.PeakValue - Analysis.Measures.Baseline);
  const auto decay = static_cast<double>(Analysis.Measures.DecayTime);
  if (Parameters.FitMode == FitDecay) {
    f.FitAmp1 = amplitude - f.FitOffset;
    f.FitTau1 = decay;
  }
  if (Parameters.FitMode == FitTwoDecays) {
    f.FitAmp1 = 0.4 * amplitude - f.FitOffset;
    f.FitAmp2 = 0.6 * amplitude - f.FitOffset;
    f.FitTau1 = decay / 4.0;
    f.FitTau2 = 2.0 * decay;
  }
  const int points = Vertices.FormulaPoints;
  const int last = points >= OffsetPoint ? points - OffsetPoint : points - 1;
  f.FitOffset = static_cast<double>(Vertices.FitData[Index(last)]);
}

/// Gives fields the seeds of their rows: all, or only the fixed ones.
void SeedFromRows(bool onlyFixed) {
  const auto fields = FieldsOfRows();
  for (int r = 1; r <= ExponentialParams(Parameters.FitMode); ++r) {
    if (onlyFixed && Parameters.AnalysisFitFixed[Index(r)] == 0) continue;
    *fields[Index(r)] = Parameters.AnalysisFitSeed[Index(r)];
  }
}

/// Replaces seeds with which no simplex can begin: zeros, and components that are equal.
void MendSeeds() {
  AnalysisFitStore& f = AnalysisFit;
  if (f.FitAmp1 == 0.0) f.FitAmp1 = 1.0;
  if (f.FitAmp2 == 0.0) f.FitAmp2 = f.FitAmp1 * 0.5;
  if (f.FitTau1 == 0.0) f.FitTau1 = 1.0;
  if (f.FitTau2 == 0.0) f.FitTau2 = f.FitTau1 * 0.5;
  if (f.FitAmp2 == f.FitAmp1) f.FitAmp1 += 0.1;
  if (f.FitTau2 == f.FitTau1) f.FitTau2 += 0.1;
}

/// Builds the starting simplex from the fields. A rise begins with its measured time.
void BuildVertices(FormulaFit& fit) {
  MendSeeds();
  const auto fields = FieldsOfRows();
  for (int r = 1; r <= fit.params; ++r) fit.seed[Index(r)] = *fields[Index(r)];
  if (IsRise()) fit.seed[2] = static_cast<double>(Analysis.Measures.RiseTime);
  AnalysisVertexBuild(fit);
}

// -- Results --

/// Replaces column 0 by the mean of all vertices.
void StoreMeans(SimplexTable& table) {
  for (int r = 1; r <= table.NumParams; ++r) {
    double sum = 0.0;
    for (int c = 0; c < table.NumVertices; ++c) sum += table.At(r, c);
    table.At(r, 0) = sum / table.NumVertices;
  }
}

/// Carries the amplitudes back from the first point of the fit to the start of the peak search.
void Extrapolate() {
  AnalysisFitStore& f = AnalysisFit;
  const auto back = static_cast<double>(Analysis.StartAnalysis - Vertices.FitX[0]);
  if (f.FitTau1 > SmallestTau) {
    f.FitAmp1Extrap = f.FitAmp1 * std::exp(-back / f.FitTau1);
    f.FitAmp2Extrap = 0.0;
  }
  if (Parameters.FitMode == FitTwoDecays && f.FitTau2 > SmallestTau)
    f.FitAmp2Extrap = f.FitAmp2 * std::exp(-back / f.FitTau2);
  if (f.FitExtrapolate == 0) return;
  f.FitAmp1 = f.FitAmp1Extrap;
  if (Parameters.FitMode == FitTwoDecays) f.FitAmp2 = f.FitAmp2Extrap;
}

/// A flat record has no goodness of fit; it gets 0.
void StoreQuality(double sumOfSquares) {
  AnalysisFitStore& f = AnalysisFit;
  f.AnalysisNormResidual = sumOfSquares / Vertices.FormulaPoints;
  const double quality = 1.0 - sumOfSquares / static_cast<double>(f.FitSStot);
  const bool varies = f.FitSStot != 0.0F && std::isfinite(f.FitSStot);
  f.FitGoodness = varies ? static_cast<float>(quality) : 0.0F;
}

void StoreCurve(std::span<const int> samples) {
  FittedCurve& curve = AnalysisFit.Curve;
  curve = {};
  const float baseline = Analysis.Measures.Baseline;
  for (std::size_t i = 0; i < samples.size(); ++i) {
    curve.sample.push_back(samples[i]);
    curve.value.push_back(baseline + Vertices.FitCurve[i]);
    curve.residual.push_back(Vertices.FitData[i] - Vertices.FitCurve[i]);
  }
}

void TellResult() {
  if (Vertices.FitResultCode == FitMaxIterations) TellOnce(NotConverged);
  if (Vertices.FitResultCode == FitUserBreak) TellOnce(Stopped);
}

std::vector<int> SamplesOfFit() {
  return FitSamples(FirstSample(), AnalysisFit.AnalysisFitPts, AnalysisFit.DualSpeedPts, Parse());
}

/// Returns a function that asks, after the time in which a fit ends as a rule, whether the user wants to stop. From
/// then on it shows the progress.
std::function<bool()> StopAfterWhile(int iterations) {
  return [begin = std::chrono::steady_clock::now(), iterations] {
    if (std::chrono::steady_clock::now() - begin < StopsAfter) return false;
    const double finished = std::min(static_cast<double>(Vertices.simplex.NumEvals) / iterations, 1.0);
    ShowProgress(finished, FittingText);
    Breathe(finished);
    return StopAsked();
  };
}

/// Runs the simplex several times, each time from the result of the run before.
void RunFit(FormulaFit& fit) {
  fit.stop = StopAfterWhile(std::max(fit.iterations, 1));
  const int runs = std::max(AnalysisFit.AnalysisNumRestarts, 0) + 1;
  Vertices.FitResultCode = 0;
  for (int run = 0; run < runs && Vertices.FitResultCode != FitUserBreak; ++run) {
    BuildVertices(fit);
    Vertices.FitResultCode = AnalysisSimplex(fit);
    AnalysisFitResult(fit);
  }
  ResetProgress();
}

}  // namespace

std::vector<int> FitSamples(int first, int points, int leading, int parse) {
  std::vector<int> samples;
  samples.reserve(Index(std::max(points, 0)));
  for (int i = 0, sample = first; i < points; ++i) {
    samples.push_back(sample);
    sample += i < leading ? 1 : parse;
  }
  return samples;
}

std::function<void(std::span<double>, std::span<const float>, std::span<float>)> ExponentialFormula(
    int fitMode, DecayTimes times) {
  std::vector<double> first(times.time.size());
  std::vector<double> second(fitMode == FitTwoDecays ? times.time.size() : 0);
  return [fitMode, times = std::move(times), first = std::move(first), second = std::move(second)](
             std::span<double> value, std::span<const float>, std::span<float> curve) mutable {
    value[2] = std::fabs(value[2]);
    DecayAt(times, value[2], first);
    if (fitMode == FitTwoDecays) {
      value[4] = std::fabs(value[4]);
      DecayAt(times, value[4], second);
      for (std::size_t i = 0; i < curve.size(); ++i)
        curve[i] = static_cast<float>(value[5] + value[1] * first[i] + value[3] * second[i]);
    } else if (fitMode == FitRise) {
      for (std::size_t i = 0; i < curve.size(); ++i)
        curve[i] = static_cast<float>(value[3] + value[1] * (1.0 - first[i]));
    } else {
      for (std::size_t i = 0; i < curve.size(); ++i)
        curve[i] = static_cast<float>(value[3] + value[1] * first[i]);
    }
  };
}

std::string ExpFitPrepare(FormulaFit& fit) {
  const unsigned measured = Analysis.Measures.measured;
  if ((measured & MeasuredPeak) == 0) return NoPeak;
  if (IsRise() && (measured & MeasuredRise) == 0) return NoRise;
  fit.params = ExponentialParams(Parameters.FitMode);
  KeepWithinRecord(FirstSample());
  if (AnalysisFit.AnalysisFitPts < fit.params) return FewPoints;
  const std::vector<int> samples = SamplesOfFit();
  if (!TakePoints(samples)) return NotFinite;
  const auto points = samples.size();
  AnalysisFit.FitSStot = SumAboutMean(std::span(Vertices.FitData).first(points));
  if (Parameters.AnalysisAutoSeed != 0) {
    SeedFromMeasures();
    if (Parameters.AnalysisFixOn != 0) SeedFromRows(true);
  } else {
    SeedFromRows(false);
  }
  const auto x = std::span<const float>(Vertices.FitX).first(points);
  fit.formula =
      ExponentialFormula(Parameters.FitMode, PrepareTimes(x, samples, static_cast<double>(Model.ADInterval)));
  fit.scale = Parameters.FitMode == FitTwoDecays ? decltype(fit.scale){0.0F, 1.5F, 1.0F, 1.5F, 1.0F, 1.0F}
                                                 : decltype(fit.scale){0.0F, 2.5F, 1.0F, 0.5F};
  fit.iterations = AnalysisFit.AnalysisNumIterations;
  BuildVertices(fit);
  return {};
}

void AnalysisFitResult(const FormulaFit& fit) {
  SimplexTable& table = Vertices.simplex;
  StoreMeans(table);
  const auto fields = FieldsOfRows();
  for (int r = 1; r <= fit.params; ++r) *fields[Index(r)] = table.At(r, 0);
  Extrapolate();
  AnalysisEval(fit, 0);
  if (Parameters.AnalysisFixOn != 0) SeedFromRows(true);
  StoreQuality(table.At(0, 0));
}

void FitResponse() {
  AnalysisFit.Curve = {};
  Analysis.FittedMode = 0;
  if (!IsExponentialFit(Parameters.FitMode)) {
    ClearFit();
    if (Parameters.FitMode != 0) TellOnce(OtherMode);
    return;
  }
  const auto rows = AnalysisFit.ExpFitLimits.begin() + 1;
  std::copy_n(rows, LastExponentialRow, Parameters.AnalysisFitLimits.begin() + 1);
  Parameters.FitTolerance = AnalysisFit.AnalysisTolerance;
  FormulaFit fit;
  if (const std::string why = ExpFitPrepare(fit); !why.empty()) {
    ClearFit();
    TellOnce(why.c_str());
    return;
  }
  RunFit(fit);
  StoreCurve(SamplesOfFit());
  Analysis.FittedMode = Parameters.FitMode;
  TellResult();
}

void ClearFit() {
  AnalysisFitStore& f = AnalysisFit;
  Analysis.FittedMode = 0;
  f.FitAmp1 = f.FitTau1 = f.FitAmp2 = f.FitTau2 = f.FitOffset = 0.0;
  f.FitAmp1Extrap = f.FitAmp2Extrap = 0.0;
  f.FitSStot = 0.0F;
  f.FitGoodness = 0.0F;
  f.AnalysisNormResidual = 0.0;
  f.Curve = {};
}

}  // namespace zelvane
