#include "analysis/dose_response.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>
#include <utility>

#include "analysis/analysis_fit_store.h"
#include "analysis/analyze.h"
#include "analysis/dose_store.h"
#include "numerics/least_squares.h"
#include "parameters/fit_modes.h"
#include "parameters/formula_fit.h"
#include "parameters/parameters_store.h"
#include "parameters/vertex_store.h"
#include "platform/index.h"
#include "screen/popups.h"

namespace zelvane {
namespace {

constexpr char NoPairs[] = "No curve was fitted: the table has no response other than 0.";
constexpr char NotFinite[] = "No curve was fitted: not all pairs of the table are numbers.";
constexpr char NegativeResponses[] =
    "The responses are negative: limits of the maximum that are ordered by size need its sign turned, or limits of your own.";
constexpr char OutsideRecord[] =
    "A stretch of the template lies outside the record; it has only the samples inside.";

constexpr int DoseIterations = 1000;
constexpr double SmallestPart = 1e-4;    // of its range: a parameter so near to a limit is at it
constexpr double SmallestRatio = 1.001;  // the same for EC50, which spans decades
constexpr double NoError = std::numeric_limits<double>::quiet_NaN();

using HillValues = std::array<double, HillParameters + 1>;

HillValues StoredValues() {
  return {0.0, Dose.DoseEC50, Dose.DoseSlope, Dose.DoseMax, Dose.DoseMin};
}

void StoreValues(const HillValues& value) {
  Dose.DoseEC50 = value[1];
  Dose.DoseSlope = value[2];
  Dose.DoseMax = value[3];
  Dose.DoseMin = value[4];
}

int Pairs() {
  return std::clamp(static_cast<int>(Dose.DoseCount), 0, MaxDosePairs);
}

double HillOfQuotient(std::span<const double> value, double quotient) {
  return value[4] + std::fabs(value[3] - value[4]) / (1.0 + std::pow(quotient, value[2]));
}

// -- Standard errors --

/// Adds the derivatives of the curve to a Jacobian, at a quotient EC50 / x; without one, of the minimum alone.
void AddDerivatives(std::vector<double>& jacobian, const HillValues& value, std::optional<double> quotient) {
  if (!quotient) {
    jacobian.insert(jacobian.end(), {0.0, 0.0, 0.0, 1.0});
    return;
  }
  const double height = std::fabs(value[3] - value[4]);
  const double sign = value[3] < value[4] ? -1.0 : 1.0;
  const double power = std::pow(*quotient, value[2]);
  const double part = 1.0 / (1.0 + power);
  const double steepness = -height * power * part * part;
  jacobian.insert(jacobian.end(), {steepness * value[2] / value[1], steepness * std::log(*quotient),
                                   sign * part, 1.0 - sign * part});
}

bool AtLimit(const HillValues& value) {
  if (Parameters.AnalysisLimitsOn == 0) return false;
  for (int r = 1; r <= HillParameters; ++r) {
    const FitLimit& limit = Parameters.AnalysisFitLimits[Index(r)];
    const double v = value[Index(r)];
    const double margin = SmallestPart * (limit.hi - limit.lo);
    const bool near = r == 1 ? v < limit.lo * SmallestRatio || v > limit.hi / SmallestRatio
                             : v < limit.lo + margin || v > limit.hi - margin;
    if (near) return true;
  }
  return false;
}

/// Stores the standard errors at the best vertex.
void StoreErrors(const HillValues& value, std::span<const float> conc, double sumOfSquares) {
  Dose.DoseError.fill(NoError);
  const bool held =
      Parameters.AnalysisFixOn != 0 &&
      std::any_of(Parameters.AnalysisFitFixed.begin() + 1,
                  Parameters.AnalysisFitFixed.begin() + 1 + HillParameters, [](int f) { return f != 0; });
  if (held || AtLimit(value)) return;
  std::vector<double> jacobian;
  std::optional<double> quotient;
  for (const float x : conc) {
    if (x != 0.0F) quotient = value[1] / static_cast<double>(x);
    AddDerivatives(jacobian, value, quotient);
  }
  const auto errors = StandardErrors(jacobian, HillParameters, sumOfSquares);
  if (errors) std::copy(errors->begin(), errors->end(), Dose.DoseError.begin() + 1);
}

// -- The fit --

/// Puts the pairs into the points of the fit. Returns false when one is not a number.
bool TakePairs(int pairs) {
  Vertices.FormulaPoints = pairs;
  std::copy_n(Dose.DoseConc.begin(), pairs, Vertices.FitX.begin());
  std::copy_n(Dose.DoseResponse.begin(), pairs, Vertices.FitData.begin());
  const auto finite = [](float v) { return std::isfinite(v); };
  return std::all_of(Dose.DoseConc.begin(), Dose.DoseConc.begin() + pairs, finite) &&
         std::all_of(Dose.DoseResponse.begin(), Dose.DoseResponse.begin() + pairs, finite);
}

/// Replaces seeds with which no simplex can begin.
void MendSeeds() {
  if (Dose.DoseEC50 == 0.0) Dose.DoseEC50 = 0.1;
  if (Dose.DoseSlope == 0.0) Dose.DoseSlope = 1.0;
  if (Dose.DoseMax == 0.0) Dose.DoseMax = 1.0;
}

FormulaFit HillFit() {
  FormulaFit fit;
  fit.params = HillParameters;
  fit.formula = HillCurve;
  fit.scale = {0.0F, 2.5F, 1.0F, 0.5F, 0.5F};
  fit.iterations = DoseIterations;
  fit.stop = [] {
    Breathe(0.0);
    return StopAsked();
  };
  return fit;
}

/// Returns the values of the best vertex.
HillValues BestValues() {
  HillValues value{};
  for (int r = 1; r <= HillParameters; ++r)
    value[Index(r)] = Vertices.simplex.At(r, Vertices.simplex.BestVertex);
  return value;
}

double PlainSum(std::span<const float> curve, std::span<const float> data) {
  double sum = 0.0;
  for (std::size_t i = 0; i < curve.size(); ++i) {
    const double difference = static_cast<double>(curve[i]) - static_cast<double>(data[i]);
    sum += difference * difference;
  }
  return sum;
}

void StoreFit(int pairs) {
  HillValues value = BestValues();
  const auto conc = std::span<const float>(Dose.DoseConc).first(Index(pairs));
  const auto curve = std::span(Dose.DoseCurve).first(Index(pairs));
  HillCurve(value, conc, curve);
  StoreValues(value);
  Dose.DoseFitted = Dose.FittedCount = pairs;
  Dose.FittedConc = Dose.DoseConc;
  Dose.FittedResponse = Dose.DoseResponse;
  Dose.DoseEvals = Vertices.simplex.NumEvals;
  Dose.DoseResultCode = Vertices.FitResultCode;
  Dose.DoseResidual = Vertices.simplex.At(0, Vertices.simplex.BestVertex) / pairs;
  StoreErrors(value, conc, PlainSum(curve, std::span<const float>(Dose.DoseResponse).first(Index(pairs))));
}

void TellOfSign(int pairs) {
  const auto response = std::span<const float>(Dose.DoseResponse).first(Index(pairs));
  const auto below = [](float r) { return r <= 0.0F; };
  if (Parameters.AnalysisLimitsOn != 0 && std::all_of(response.begin(), response.end(), below))
    Note(NegativeResponses);
}

void SetLimits(const FitLimitTable& limits) {
  Dose.DoseFitLimits = limits;
  Parameters.FitMode = FitDoseResponse;
  TakeFitLimits(FitDoseResponse);
  Parameters.AnalysisLimitsOn = 1;
}

/// Returns the mean of a stretch of the trace.
float MeanOf(const DoseStretch& stretch, bool& outside) {
  const std::span<const float> trace = RecordedTrace();
  const auto size = static_cast<int>(trace.size());
  const int first = std::clamp(stretch.start, 0, size);
  const int last = std::clamp(stretch.stop, first, size);
  outside = outside || (stretch.stop > stretch.start && (first != stretch.start || last != stretch.stop));
  double sum = 0.0;
  for (int i = first; i < last; ++i) sum += static_cast<double>(trace[Index(i)]);
  return last > first ? static_cast<float>(sum / (last - first)) : 0.0F;
}

}  // namespace

double HillAt(std::span<const double> value, double concentration) {
  return HillOfQuotient(value, value[1] / concentration);
}

void HillCurve(std::span<double> value, std::span<const float> x, std::span<float> curve) {
  value[1] = std::fabs(value[1]);
  std::optional<double> quotient;
  for (std::size_t i = 0; i < x.size(); ++i) {
    if (x[i] != 0.0F) quotient = value[1] / static_cast<double>(x[i]);
    curve[i] = static_cast<float>(quotient ? HillOfQuotient(value, *quotient) : value[4]);
  }
}

void CountDosePairs() {
  int pairs = MaxDosePairs;
  while (pairs > 0 && Dose.DoseResponse[Index(pairs) - 1] == 0.0F) --pairs;
  Dose.DoseCount = static_cast<float>(pairs);
}

void KeepLastDoses() {
  Dose.LastDoseConc = Dose.DoseConc;
  Dose.LastDoseResponse = Dose.DoseResponse;
  Dose.LastDoseCount = Pairs();
}

void KeepFittedDoses() {
  Dose.LastDoseConc = Dose.FittedConc;
  Dose.LastDoseResponse = Dose.FittedResponse;
  Dose.LastDoseCount = Dose.FittedCount;
}

bool AddDose(float concentration, float response) {
  CountDosePairs();
  const int pair = Pairs();
  if (pair >= MaxDosePairs) return false;
  Dose.DoseConc[Index(pair)] = concentration;
  Dose.DoseResponse[Index(pair)] = response;
  CountDosePairs();
  Dose.DoseFitted = 0;
  DosesChanged.Tell();
  return true;
}

void ClearDoses() {
  CountDosePairs();
  KeepLastDoses();
  Dose.DoseConc = {};
  Dose.DoseResponse = {};
  Dose.DoseCount = 0.0F;
  Dose.DoseUnits.clear();
  Dose.DoseFitted = 0;
  DosesChanged.Tell();
}

void BeginDoseResponse() {
  StoreValues({0.0, 1e-4, 1.0, 1.0, 0.0});
  SetLimits(FirstDoseLimits);
  DosesChanged.Tell();
}

void SeedFromPairs() {
  CountDosePairs();
  const std::size_t last = Index(std::max(Pairs(), 1)) - 1;
  const auto conc = static_cast<double>(Dose.DoseConc[last]);
  const auto response = static_cast<double>(Dose.DoseResponse[last]);
  const auto first = static_cast<double>(Dose.DoseResponse[0]);
  StoreValues({0.0, conc != 0.0 ? conc / 2.0 : 0.01, 1.0, response, 0.0});
  SetLimits(LimitTable({{1, 1, 1, {1e-12, 0.1}},
                        {2, 2, 1, {-3.0, 3.0}},
                        {3, 3, 1, {0.1 * response, 7.0 * response}},
                        {4, 4, 1, {0.0, first}}}));
  DosesChanged.Tell();
}

Outcome FitDoses(int runs) {
  Parameters.FitMode = FitDoseResponse;
  Dose.DoseFitted = 0;
  const int pairs = Pairs();
  const bool usable = TakePairs(pairs);
  if (pairs < 1 || !usable) {
    Note(usable ? NoPairs : NotFinite);
    DosesChanged.Tell();
    return Outcome::Refused;
  }
  TellOfSign(pairs);
  TakeFitLimits(FitDoseResponse);
  Parameters.FitTolerance = AnalysisFit.AnalysisTolerance;
  MendSeeds();
  if (Parameters.AnalysisFixOn != 0) {
    const HillValues fixed = StoredValues();
    std::copy_n(fixed.begin() + 1, HillParameters, Parameters.AnalysisFitSeed.begin() + 1);
  }
  FormulaFit fit = HillFit();
  Vertices.FitResultCode = 0;
  for (int run = 0; run < runs && Vertices.FitResultCode != FitUserBreak; ++run) {
    const HillValues seed = StoredValues();
    std::copy(seed.begin(), seed.end(), fit.seed.begin());
    AnalysisVertexBuild(fit);
    Vertices.FitResultCode = AnalysisSimplex(fit);
    StoreValues(BestValues());
  }
  StoreFit(pairs);
  DosesChanged.Tell();
  return Vertices.FitResultCode == FitUserBreak ? Outcome::Stopped : Outcome::Done;
}

void TakeTemplate(std::span<const DoseStretch> stretches) {
  KeepLastDoses();
  bool outside = false;
  const std::size_t rows = std::min(stretches.size(), Index(MaxDosePairs));
  for (std::size_t i = 0; i < rows; ++i) {
    Dose.DoseConc[i] = stretches[i].concentration;
    Dose.DoseResponse[i] = MeanOf(stretches[i], outside);
  }
  Dose.TemplateCount = static_cast<int>(rows);
  Dose.DoseCount = static_cast<float>(rows);
  Dose.DoseFitted = 0;
  if (outside) Note(OutsideRecord);
  DosesChanged.Tell();
}

Outcome AnalyzeTemplate() {
  const int formerMode = Parameters.FitMode;
  const int formerLimits = std::exchange(Parameters.AnalysisLimitsOn, 1);
  const Outcome outcome = FitDoses(std::max(AnalysisFit.AnalysisNumRestarts, 0) + 1);
  Parameters.FitMode = formerMode;
  Parameters.AnalysisLimitsOn = formerLimits;
  Dose.TemplateCurve = Dose.DoseCurve;
  DosesChanged.Tell();
  return outcome;
}

}  // namespace zelvane
