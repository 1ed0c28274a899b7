#include "fit/fit_vertices.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <string>

#include "analysis/analysis_fit_store.h"
#include "fit/fit_log.h"
#include "fit/fit_objective.h"
#include "fit/fit_progress.h"
#include "fit/fit_rows.h"
#include "fit/session_store.h"
#include "fit/wave_set_panels.h"
#include "model/model_store.h"
#include "parameters/limit_rules.h"
#include "parameters/parameters_store.h"
#include "parameters/vertex_store.h"
#include "screen/popups.h"
#include "stimulus/stimulus.h"
#include "stimulus/stimulus_store.h"
#include "trace/program_random.h"

namespace zelvane {
namespace {

constexpr char MetAtOnce[] =
    "The first simplex already meets the tolerance: its sums of squares differ by less than the fit would "
    "notice. Enter a smaller tolerance, or scale the data.";

SimplexTable& Table() {
  return Vertices.simplex;
}

double Draw() {
  return UniformRandom(ProgramRandom);
}

bool LimitsInForce() {
  return Fit.WaveFitLimitsOn != 0;
}

/// The kind of fit that the simplex is built for.
struct VertexRules {
  std::function<void(int)> evaluate;
  std::function<FitLimit(int param)> limit;
  std::function<double(int param, int vertex)> place;  // new value of a parameter
};

/// Evaluates vertex `k` and lets the window show it.
void EvaluateVertex(const VertexRules& rules, int k) {
  rules.evaluate(k);
  ShowFitProgress(false);
  if (StopOfEvaluation()) FitSession.stopped = true;
}

void BuildOtherVertices(const VertexRules& rules) {
  SimplexTable& table = Table();
  for (int k = 1; k <= table.NumParams; ++k) {
    for (int i = 1; i <= table.NumParams; ++i) {
      double value = std::fabs(rules.place(i, k));
      if (LimitsInForce()) value = DrawnInside(value, table.At(i, 0), rules.limit(i), ProgramRandom);
      table.At(i, k) = value;
    }
    EvaluateVertex(rules, k);
  }
}

/// Returns the shift of vertex `k` along its row: from half the vertices down to minus half.
double Shift(double start, int k, double divisor) {
  const int half = Table().NumVertices / 2;
  return start * (half - k) / divisor;
}

/// Returns the step of a random parameter; 0 for the number 0.
double StepOfAny() {
  const auto m = static_cast<std::size_t>(Draw() * Table().NumParams);
  return static_cast<double>(Table().VertexScale[m]);
}

double StepOf(int param) {
  return static_cast<double>(Table().VertexScale[Index(param)]);
}

void ClearVertices(int params) {
  SimplexTable& table = Table();
  table.NumParams = params;
  table.NumVertices = params + 1;
  table.VertexTable[0] = {};
  table.BestVertex = 0;
  table.NumEvals = 0;
}

void LogVertices() {
  if (!FitLogIsOpen()) return;
  const SimplexTable& table = Table();
  FitLog("REST OF VERTEX FUNCS -- IN FIRST VERTEX\n");
  for (int k = 0; k < table.NumVertices; ++k) {
    for (int i = 1; i <= table.NumParams; ++i)
      FitLog(FormatText("FV vertex[%2d][%2d]=%.3e, ", i, k, table.At(i, k)));
    FitLog(FormatText("ssq=%.4e\n", table.At(0, k)));
  }
}

/// Reports the simplex and puts its best vertex into the model.
void FinishVertices(const VertexRules& rules) {
  SimplexTable& table = Table();
  AddFitLogLine(FormatText("fv%d... ", table.NumParams + 1));
  LogVertices();
  table.BestVertex = BestColumn(table);
  AddFitLogLine(FormatText("fv done...best in fv is %d", table.BestVertex));
  const double sumOfSquares = table.At(0, table.BestVertex);
  rules.evaluate(table.BestVertex);
  if (FitSession.stopped)
    table.At(0, table.BestVertex) = sumOfSquares;  // the stop has dropped this evaluation
  FitLog(FormatText("FV DONE IN FIRST VERTEX: bestvertex=%d ssq=%.4e\n", table.BestVertex,
                    table.At(0, table.BestVertex)));
  table.NumEvals = 0;
}

/// Notes a simplex whose sums of squares are too small, or too equal, for the tolerance.
void NoteFlatStart() {
  const SimplexTable& table = Table();
  const auto& sums = table.VertexTable[0];
  const auto [low, high] = std::minmax_element(sums.begin(), sums.begin() + table.NumVertices);
  if (FractionalSpread(*low, *high) < Parameters.FitTolerance && !FitSession.stopped) Note(MetAtOnce);
}

// -- Rates --

/// Takes the free rows as the parameters, with their present rates in vertex 0. Returns their number.
int TakeFreeRows() {
  int params = 0;
  const double factor = static_cast<double>(Model.ModelIs2D != 0 ? Fit.FitSeedSpread : Fit.FitStepSize);
  FitSession.param = {};
  for (int row = 1; row <= MaxFitRows; ++row) {
    const int code = Fit.RowCode[Index(row)];
    if (code == 0 || RowIsFixed(row)) continue;
    ++params;
    FitSession.param[Index(params)] = {row, code};
    const double rate = RateOf(code);
    Table().At(params, 0) = rate;
    Table().VertexScale[Index(params)] = static_cast<float>(factor * rate * Draw());
  }
  return params;
}

double PlaceRate(int i, int k, int restart) {
  const double start = Table().At(i, 0);
  const double shift = Shift(start, k, restart);
  const double spread = std::sqrt(static_cast<double>(k)) / 10.0;
  const double branch = Draw();
  if (branch < 0.3333333) return start + shift + StepOf(i) + spread + StepOfAny();
  const double first = Draw();
  const double second = Draw();
  if (branch <= 0.66666667) return start * first + shift + second * StepOf(i) + spread;
  return start / first + shift + StepOf(i) / (0.1 + second) + spread;
}

// -- Stimulus --

constexpr int RowAmp1 = 1;
constexpr int RowTau1 = 2;
constexpr int RowAmp2 = 3;
constexpr int RowTau2 = 4;
constexpr int RowRise = 5;

void DefaultStimulus() {
  for (float* value : {&Stimulus.ExpAmp1, &Stimulus.ExpAmp2, &Stimulus.ExpTau1, &Stimulus.ExpTau2}) {
    if (*value == 0.0F) *value = 1.0F;
  }
  if (Stimulus.ExpRiseTau == 0.0F) Stimulus.ExpRiseTau = static_cast<float>(AnalysisFit.FitTau1 * 0.5);
  if (Stimulus.ExpTau1 < Stimulus.ExpRiseTau) Stimulus.ExpRiseTau = Stimulus.ExpTau1 * 0.5F;
}

int TakeStimulusParams() {
  int params = 0;
  FitSession.param = {};
  const auto take = [&](int row, float value, float scale) {
    ++params;
    FitSession.param[Index(params)] = {row, 0};
    Table().At(params, 0) = static_cast<double>(value);
    Table().VertexScale[Index(params)] = scale;
  };
  take(RowAmp1, Stimulus.ExpAmp1, 0.001F);
  take(RowTau1, Stimulus.ExpTau1, 0.1F);
  if (Stimulus.ExpComponents == 2) {
    take(RowAmp2, Stimulus.ExpAmp2, 0.001F);
    take(RowTau2, Stimulus.ExpTau2, 0.1F);
  } else if (Stimulus.ExpRiseFlag != 0) {
    take(RowRise, Stimulus.ExpRiseTau, 0.02F);
  }
  return params;
}

FitLimit StimLimit(int i) {
  return Fit.StimFitLimits[Index(FitSession.param[Index(i)].row)];
}

double PlaceStimulus(int i, int k, int restart) {
  const double start = Table().At(i, 0);
  const auto step = static_cast<double>(Fit.FitStepSize);
  const double shift = Shift(start * step, k, 100.0 * restart);
  const double root = std::sqrt(static_cast<double>(k));
  const double branch = Draw();
  if (branch < 0.2) return start + shift + StepOf(i) + root / 1000.0 + StepOfAny();
  const double first = Draw();
  if (branch <= 0.75) return start * first / step + root / 10000.0;
  const double second = Draw();
  return start / first + shift + StepOf(i) / (0.1 + second) + root / 1000.0;
}

void LogStimulusStart() {
  if (!FitLogIsOpen()) return;
  for (int i = 1; i <= Table().NumParams; ++i) {
    const FitLimit limit = StimLimit(i);
    FitLog(
        FormatText("i=%d vertex[%2d][0]=%.2e lo%.2e hi%.2e \n", i, i, Table().At(i, 0), limit.lo, limit.hi));
  }
}

/// Without a log file the vertices go to the log box.
void ListVertices() {
  if (FitLogIsOpen()) return;
  std::string line;
  for (int k = 0; k < Table().NumVertices; ++k) {
    line.clear();
    for (int i = 1; i <= Table().NumParams; ++i)
      line += FormatText("vertex[%2d][%2d]=%.3e ", i, k, Table().At(i, k));
    AddFitLogLine(line);
  }
}

}  // namespace

int FreeRates() {
  int free = 0;
  for (int row = 1; row <= MaxFitRows; ++row) {
    if (Fit.RowCode[Index(row)] != 0 && !RowIsFixed(row)) ++free;
  }
  return free;
}

void RateVertexBuild(int restart) {
  if (Parameters.FitMode != FitWaveforms) return;
  SimplexTable& table = Table();
  table.VertexScale = {};
  ClearVertices(TakeFreeRows());
  const VertexRules rules{RateVertexEval,
                          [](int i) { return Fit.WaveFitLimits[Index(FitSession.param[Index(i)].row)]; },
                          [restart](int i, int k) { return PlaceRate(i, k, restart); }};
  if (LimitsInForce() && restart != -1) {
    for (int i = 1; i <= table.NumParams; ++i) table.At(i, 0) = Clipped(table.At(i, 0), rules.limit(i));
  }
  AddFitLogLine("fv0...");
  EvaluateVertex(rules, 0);
  if (restart == -1) return;
  BuildOtherVertices(rules);
  FinishVertices(rules);
  AddFitLogLine("Enter fit...");
  NoteFlatStart();
}

void StimVertexBuild(int restart) {
  if (Parameters.FitMode != FitWaveforms) return;
  SimplexTable& table = Table();
  table.VertexScale = {};
  StimReadControls();
  DefaultStimulus();
  ClearVertices(TakeStimulusParams());
  const VertexRules rules{StimVertexEval, StimLimit,
                          [restart](int i, int k) { return PlaceStimulus(i, k, restart); }};
  if (LimitsInForce() && restart > -1) {
    for (int i = 1; i <= table.NumParams; ++i) table.At(i, 0) = Clipped(table.At(i, 0), rules.limit(i));
  }
  FitLog("FIRSTVERTEX\n");
  LogStimulusStart();
  AddFitLogLine("fv0...");
  EvaluateVertex(rules, 0);
  if (restart == -1) return;
  FitLog("FIRST FUNC -- IN FIRST VERTEX\n");
  LogStimulusStart();
  FitLog(FormatText("FV ssq=%.4e\n", table.At(0, 0)));
  BuildOtherVertices(rules);
  ListVertices();
  FinishVertices(rules);
  NoteFlatStart();
}

}  // namespace zelvane
