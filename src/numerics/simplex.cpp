#include "numerics/simplex.h"

#include <cassert>
#include <cmath>

namespace zelvane {
namespace {

/// Equal or infinite sums of squares accept no step, and the simplex would go on for ever.
constexpr int MostIdlePasses = 1000;

constexpr double Reflect = -1.0;
constexpr double Expand = 2.0;
constexpr double Contract = 0.5;
constexpr double NudgeConverged = 2.0;
constexpr double NudgeNewBest = 0.55;

double Allowed(double value, const SimplexRules& rules) {
  return rules.positive && value < 0.0 ? std::fabs(value) / 10.0 : value;
}

/// Columns of a ranking. Each keeps its place when another column is equal.
struct Ranking {
  int low = 0;
  int worst = 0;
  int nextWorst = 0;
};

void Rank(const SimplexTable& table, Ranking& ranking) {
  for (int c = 0; c < table.NumVertices; ++c) {
    if (table.At(0, c) > table.At(0, ranking.worst)) ranking.worst = c;
    if (table.At(0, c) < table.At(0, ranking.low)) ranking.low = c;
  }
  ranking.nextWorst = ranking.low;
  for (int c = 0; c < table.NumVertices; ++c) {
    if (c != ranking.worst && table.At(0, c) > table.At(0, ranking.nextWorst)) ranking.nextWorst = c;
  }
}

double Spread(const SimplexTable& table, const Ranking& ranking) {
  return FractionalSpread(table.At(0, ranking.low), table.At(0, ranking.worst));
}

/// Moves every vertex half the way to the best one.
void Shrink(SimplexTable& table, const SimplexRules& rules, int low) {
  for (int c = 0; c < table.NumVertices; ++c) {
    ++table.NumEvals;
    if (c == low) continue;
    for (int r = 1; r <= table.NumParams; ++r) table.At(r, c) = 0.5 * (table.At(r, c) + table.At(r, low));
    rules.evaluate(c);
  }
}

bool Asked(const std::function<bool()>& hook) {
  return hook && hook();
}

/// Takes the steps of a pass. Returns false when the user stopped.
bool TakeSteps(SimplexTable& table, const SimplexRules& rules, const Ranking& ranking, int formerLow) {
  const double reflected = TryVertex(table, rules, ranking.worst, Reflect);
  if (Asked(rules.stopAsked)) return false;
  if (reflected <= table.At(0, ranking.low)) {
    TryVertex(table, rules, ranking.worst, Expand);
    return true;
  }
  if (reflected < table.At(0, ranking.nextWorst)) return true;
  const double kept = table.At(0, ranking.worst);
  const double contracted = TryVertex(table, rules, ranking.worst, Contract);
  if (ranking.low != formerLow) {
    NudgeVertex(table, rules, ranking.low, table.NumParams, NudgeNewBest);
  }
  if (Asked(rules.stopAsked)) return false;
  if (!(contracted < kept)) Shrink(table, rules, ranking.low);
  FormSums(table);
  return true;
}

}  // namespace

void FormSums(SimplexTable& table) {
  const int sums = table.NumParams + 1;
  for (int r = 1; r <= table.NumParams; ++r) {
    double sum = 0.0;
    for (int c = 0; c < table.NumVertices; ++c) sum += table.At(r, c);
    table.At(r, sums) = sum;
  }
}

double FractionalSpread(double low, double worst) {
  return 2.0 * std::fabs(worst - low) / std::fabs(low + worst + 1.0);
}

int BestColumn(const SimplexTable& table) {
  int best = 0;
  for (int c = 1; c < table.NumVertices; ++c) {
    if (table.At(0, c) < table.At(0, best)) best = c;
  }
  return best;
}

double TryVertex(SimplexTable& table, const SimplexRules& rules, int worst, double factor) {
  const int sums = table.NumParams + 1;
  const int trial = table.NumParams + 2;
  const double ofSum = (1.0 - factor) / table.NumParams;
  const double ofWorst = ofSum - factor;
  for (int r = 1; r <= table.NumParams; ++r) {
    table.At(r, trial) = Allowed(table.At(r, sums) * ofSum - table.At(r, worst) * ofWorst, rules);
  }
  rules.evaluate(trial);
  const double sumOfSquares = table.At(0, trial);
  if (sumOfSquares < table.At(0, worst)) {
    for (int r = 1; r <= table.NumParams; ++r) {
      table.At(r, sums) += table.At(r, trial) - table.At(r, worst);
      table.At(r, worst) = table.At(r, trial);
    }
    table.At(0, worst) = sumOfSquares;
    ++table.NumEvals;
  }
  return sumOfSquares;
}

void NudgeVertex(SimplexTable& table, const SimplexRules& rules, int column, int row, double factor) {
  const auto kept = [&](double x) { return rules.ofRates ? static_cast<double>(static_cast<float>(x)) : x; };
  const double before = table.At(row, column);
  const double value = kept(before);
  const double sumOfSquares = kept(table.At(0, column));
  const double step = static_cast<double>(table.VertexScale[Index(row)]) * factor * factor / table.NumEvals;
  for (const double moved : {value + step, value - step}) {
    table.At(row, column) = Allowed(moved, rules);
    rules.evaluate(column);
    if (!(table.At(0, column) > sumOfSquares)) break;
  }
  if (table.At(0, column) > sumOfSquares) {
    table.At(row, column) = value;
    table.At(0, column) = sumOfSquares;
  }
  table.At(row, table.NumParams + 1) += table.At(row, column) - before;
  if (rules.ofRates) ++table.NumEvals;
}

SimplexEnd RunSimplex(SimplexTable& table, const SimplexRules& rules) {
  assert(table.NumParams >= 1 && table.NumParams <= MaxSimplexParams);
  assert(table.NumVertices == table.NumParams + 1);
  table.NumEvals = 1;
  FormSums(table);
  bool converged = false;
  int idlePasses = 0;  // since the last accepted step
  Ranking ranking;
  for (bool done = false; !done;) {
    if (Asked(rules.beginPass)) return SimplexEnd::Stopped;
    const int formerLow = ranking.low;
    const int formerEvals = table.NumEvals;
    Rank(table, ranking);
    table.BestVertex = ranking.low;
    table.FitResidual = Spread(table, ranking);
    if (!rules.ofRates && table.FitResidual == 0.0) converged = done = true;
    if (table.FitResidual < rules.tolerance) {
      for (int r = 1; r < table.NumParams; ++r) NudgeVertex(table, rules, ranking.low, r, NudgeConverged);
      table.FitResidual = Spread(table, ranking);
      if (table.FitResidual < rules.tolerance) converged = done = true;
    }
    if (table.NumEvals > rules.iterations) done = true;
    if (!TakeSteps(table, rules, ranking, formerLow)) {
      table.BestVertex = BestColumn(table);
      return SimplexEnd::Stopped;
    }
    idlePasses = table.NumEvals == formerEvals ? idlePasses + 1 : 0;
    if (idlePasses >= MostIdlePasses) done = true;
    if (rules.passCounted) rules.passCounted();
  }
  table.BestVertex = BestColumn(table);
  return converged ? SimplexEnd::Converged : SimplexEnd::Iterations;
}

}  // namespace zelvane
