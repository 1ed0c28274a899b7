// The downhill simplex: minima of known functions, and the rules of its steps.
#include "numerics/simplex.h"

#include <gtest/gtest.h>

#include <cmath>
#include <initializer_list>
#include <vector>

namespace zelvane {
namespace {

using Point = std::vector<double>;

/// A simplex over a function, with a vertex for each point.
struct Fit {
  SimplexTable table;
  SimplexRules rules;
  int evaluations = 0;

  Fit(double (*function)(const SimplexTable&, int column), std::initializer_list<Point> vertices) {
    rules.evaluate = [this, function](int column) {
      ++evaluations;
      table.At(0, column) = function(table, column);
    };
    table.NumVertices = static_cast<int>(vertices.size());
    table.NumParams = table.NumVertices - 1;
    int column = 0;
    for (const Point& vertex : vertices) {
      for (std::size_t i = 0; i < vertex.size(); ++i) table.At(static_cast<int>(i) + 1, column) = vertex[i];
      rules.evaluate(column++);
    }
    table.VertexScale.fill(0.01F);
    rules.iterations = 5000;
    evaluations = 0;
  }
};

/// 1000 + the valley of Rosenbrock, with its minimum at (1, 1).
double Valley(const SimplexTable& table, int column) {
  const double x = table.At(1, column);
  const double y = table.At(2, column);
  return 1e6 * ((1.0 - x) * (1.0 - x) + 100.0 * (y - x * x) * (y - x * x));
}

double Square(const SimplexTable& table, int column) {
  return 1e6 * (table.At(1, column) - 3.0) * (table.At(1, column) - 3.0);
}

TEST(Simplex, MinimaAreFoundInACurvedValleyAndOnALine) {
  Fit valley(Valley, {{-1.2, 1.0}, {-1.0, 1.0}, {-1.2, 1.5}});
  valley.rules.tolerance = 1e-9;
  EXPECT_EQ(RunSimplex(valley.table, valley.rules), SimplexEnd::Converged);
  EXPECT_NEAR(valley.table.At(1, valley.table.BestVertex), 1.0, 1e-3);
  EXPECT_NEAR(valley.table.At(2, valley.table.BestVertex), 1.0, 1e-3);

  Fit line(Square, {{10.0}, {11.0}});
  EXPECT_EQ(RunSimplex(line.table, line.rules), SimplexEnd::Converged);
  EXPECT_NEAR(line.table.At(1, line.table.BestVertex), 3.0, 1e-3);
}

TEST(Simplex, EqualSumsEndWithoutConvergence) {
  Fit flat([](const SimplexTable&, int) { return 5.0; }, {{1.0}, {2.0}});
  flat.rules.ofRates = true;
  flat.rules.tolerance = 0.0;
  EXPECT_EQ(RunSimplex(flat.table, flat.rules), SimplexEnd::Iterations);
}

TEST(Simplex, TheFirstTrialRunsAlsoWithoutIterationsAndAStopKeepsTheBest) {
  Fit one(Valley, {{-1.2, 1.0}, {-1.0, 1.0}, {-1.2, 1.5}});
  one.rules.iterations = 0;
  EXPECT_EQ(RunSimplex(one.table, one.rules), SimplexEnd::Iterations);
  EXPECT_GE(one.evaluations, 1);

  Fit stopped(Valley, {{-1.2, 1.0}, {-1.0, 1.0}, {-1.2, 1.5}});
  stopped.rules.beginPass = [passes = 0]() mutable { return ++passes == 20; };
  EXPECT_EQ(RunSimplex(stopped.table, stopped.rules), SimplexEnd::Stopped);
  EXPECT_EQ(stopped.table.BestVertex, BestColumn(stopped.table));
}

TEST(Simplex, ATrialMovesTheWorstVertexOnlyWhenItIsBetter) {
  Fit fit(Square, {{2.0}, {6.0}});  // the reflection of 6 at 2 is -2: worse than 6
  fit.table.NumEvals = 1;
  FormSums(fit.table);
  EXPECT_EQ(TryVertex(fit.table, fit.rules, 1, -1.0), 25e6);
  EXPECT_EQ(fit.table.At(1, 1), 6.0);
  EXPECT_EQ(fit.table.NumEvals, 1);
  EXPECT_EQ(TryVertex(fit.table, fit.rules, 1, 0.5), 1e6);  // halfway: 4
  EXPECT_EQ(fit.table.At(1, 1), 4.0);
  EXPECT_EQ(fit.table.At(1, 2), 6.0);  // the sum follows
  EXPECT_EQ(fit.table.NumEvals, 2);
  fit.rules.positive = true;
  TryVertex(fit.table, fit.rules, 0, -4.0);  // 2 -> 12
  TryVertex(fit.table, fit.rules, 1, 3.0);
  EXPECT_GE(fit.table.At(1, 3), 0.0);
}

TEST(Simplex, ANudgeThatDoesNotHelpIsTakenBack) {
  Fit fit(Square, {{3.0}, {6.0}});
  fit.table.At(1, 0) = 3.0000001;
  fit.rules.evaluate(0);
  fit.table.NumEvals = 1;
  FormSums(fit.table);
  fit.rules.ofRates = true;
  NudgeVertex(fit.table, fit.rules, 0, 1, 2.0);
  EXPECT_EQ(fit.table.At(1, 0), static_cast<double>(3.0000001F));  // fits of rates keep 32-bit floats
  EXPECT_EQ(fit.table.At(1, 2), fit.table.At(1, 0) + fit.table.At(1, 1));
  EXPECT_EQ(fit.table.NumEvals, 2);
}

}  // namespace
}  // namespace zelvane
