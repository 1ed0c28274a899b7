// The Q matrix: time constants and equilibrium, compared with closed forms.
#include "kinetics/q_matrix.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>
#include <random>

#include "numerics/eigenvalues.h"

namespace zelvane {
namespace {

constexpr float Infinity = std::numeric_limits<float>::infinity();

void Link(QMatrix& matrix, std::size_t from, std::size_t to, float rate) {
  matrix.rates(from, to) = rate;
  matrix.rates(from, from) -= rate;
}

/// Returns a rate matrix of these rates, with its diagonal.
QMatrix Rates(std::size_t n, std::initializer_list<std::tuple<std::size_t, std::size_t, float>> rates) {
  QMatrix matrix;
  matrix.states.resize(n);
  std::iota(matrix.states.begin(), matrix.states.end(), 1);
  matrix.rates = DenseMatrix<float>(n, n);
  for (const auto& [from, to, rate] : rates) Link(matrix, from, to, rate);
  return matrix;
}

TEST(QMatrixEngine, TwoStatesRelaxAtTheSumOfTheirRates) {
  for (const auto& [a, b] : {std::pair{300.0F, 700.0F}, {1e-8F, 3e-8F}, {1e12F, 1e12F}, {0.0F, 50.0F}}) {
    SCOPED_TRACE(a);
    const QMatrixSolution solution = SolveQMatrix(Rates(2, {{0, 1, a}, {1, 0, b}}), true);
    const auto isFinite = [](const RelaxationTime& time) { return time.ms < 1e20F; };
    ASSERT_EQ(std::count_if(solution.relaxation.begin(), solution.relaxation.end(), isFinite), 1);
    const auto tau = std::find_if(solution.relaxation.begin(), solution.relaxation.end(), isFinite);
    if (a == 300.0F) {
      EXPECT_FLOAT_EQ(tau->ms, 1.0F);
    }
    EXPECT_NEAR(solution.equilibrium.occupancy[0], b / (a + b), 1e-7);
    EXPECT_NEAR(solution.equilibrium.occupancy[1], a / (a + b), 1e-7);
  }
}

// n independent subunits that open (a) and close (b), and m that flip (c, d). A state is the number of open
// subunits of each kind. Occupancies are products of binomials, eigenvalues are -(i (a + b) + j (c + d)). The
// error of floats is 6e-8 of the largest eigenvalue.
TEST(QMatrixEngine, IndependentSubunitsGiveBinomialOccupanciesAndSumsOfRates) {
  constexpr float a = 300.0F, b = 700.0F, c = 41.0F, d = 13.0F;
  const auto binomial = [](int n, int k, double p) {
    const double ways = std::tgamma(n + 1.0) / (std::tgamma(k + 1.0) * std::tgamma(n - k + 1.0));
    return ways * std::pow(p, k) * std::pow(1.0 - p, n - k);
  };
  std::mt19937 random(20);
  for (const auto& [n, m] :
       {std::pair{0, 0}, {1, 0}, {4, 0}, {6, 0}, {2, 1}, {2, 2}, {3, 2}, {4, 2}, {4, 3}, {9, 1}}) {
    SCOPED_TRACE(testing::Message() << n << " beside " << m);
    const auto states = static_cast<std::size_t>((n + 1) * (m + 1));
    std::vector<std::size_t> number(states);  // in no order, so that links are everywhere in the matrix
    std::iota(number.begin(), number.end(), 0U);
    std::shuffle(number.begin(), number.end(), random);
    const auto state = [&, m = m](int i, int j) { return number[static_cast<std::size_t>(i * (m + 1) + j)]; };
    QMatrix matrix = Rates(states, {});
    std::vector<double> occupancy(states);
    std::vector<double> eigenvalues;
    for (int i = 0; i <= n; ++i) {
      for (int j = 0; j <= m; ++j) {
        if (i < n) Link(matrix, state(i, j), state(i + 1, j), static_cast<float>(n - i) * a);
        if (i > 0) Link(matrix, state(i, j), state(i - 1, j), static_cast<float>(i) * b);
        if (j < m) Link(matrix, state(i, j), state(i, j + 1), static_cast<float>(m - j) * c);
        if (j > 0) Link(matrix, state(i, j), state(i, j - 1), static_cast<float>(j) * d);
        occupancy[state(i, j)] = binomial(n, i, 0.3) * binomial(m, j, 41.0 / 54.0);
        eigenvalues.push_back(-1000.0 * i - 54.0 * j);
      }
    }
    std::sort(eigenvalues.begin(), eigenvalues.end());
    const Equilibrium equilibrium = EquilibriumOf(matrix.rates);
    EXPECT_FALSE(equilibrium.singular);
    for (std::size_t k = 0; k < states; ++k) EXPECT_NEAR(equilibrium.occupancy[k], occupancy[k], 1e-5);
    Eigenvalues found = RealEigenvalues(matrix.rates);
    EXPECT_EQ(found.withoutConvergence, 0);
    std::sort(found.real.begin(), found.real.end());
    for (std::size_t k = 0; k < states; ++k) {
      EXPECT_NEAR(found.real[k], eigenvalues[k], 2e-6 * std::abs(eigenvalues[0])) << k;
    }
  }
}

// In a ring of equal rates the eigenvalues are k (cos(2 pi m / n) - 1), with imaginary parts that are not
// shown.
TEST(QMatrixEngine, TheRealPartsOfConjugatePairsCount) {
  const QMatrixSolution solution = SolveQMatrix(Rates(3, {{0, 1, 200}, {1, 2, 200}, {2, 0, 200}}), true);
  std::vector<float> times;
  for (const RelaxationTime& time : solution.relaxation) times.push_back(time.ms);
  std::sort(times.begin(), times.end());
  ASSERT_GE(times.size(), 2U);
  EXPECT_NEAR(times[0], 1000.0 / 300.0, 1e-4);
  EXPECT_NEAR(times[1], 1000.0 / 300.0, 1e-4);
  for (const double p : solution.equilibrium.occupancy) EXPECT_NEAR(p, 1.0 / 3.0, 1e-9);
}

TEST(QMatrixEngine, AnOccupancyBelowTheSmallestCountsAsNone) {
  const auto occupancies = [](float rate) {
    return SolveQMatrix(Rates(3, {{0, 1, rate}, {1, 0, 1000}, {0, 2, 500}, {2, 0, 500}}), false)
        .equilibrium.occupancy;
  };
  const std::vector<double> without = occupancies(0.01F);  // 5e-6 of the channels
  EXPECT_EQ(without[1], 0.0);
  EXPECT_NEAR(without[0] + without[2], 1.0, 1e-12);
  EXPECT_NEAR(occupancies(0.03F)[1], 1.5e-5, 1e-8);
}

TEST(QMatrixEngine, OnlyEigenvaluesBelowTheLimitHaveATimeConstant) {
  const std::vector<RelaxationTime> times = RelaxationTimesMs({-1e-7F, 1e-6F, -50.0F, 5e-7F, 0.0F, NAN});
  ASSERT_EQ(times.size(), 4U);
  EXPECT_FLOAT_EQ(times[0].ms, 1e10F);
  EXPECT_EQ(times[1].eigenvalue, 3);
  EXPECT_FLOAT_EQ(times[1].ms, 20.0F);
  EXPECT_FLOAT_EQ(times[2].ms, -2e9F);
  EXPECT_EQ(times[3].ms, Infinity);
}

TEST(QMatrixEngine, ASearchThatCannotSettleEnds) {
  DenseMatrix<float> matrix(6, 6);
  matrix.element.assign(36, NAN);
  const Eigenvalues found = HessenbergEigenvalues(matrix);
  EXPECT_EQ(found.real.size(), 6U);
  EXPECT_EQ(found.withoutConvergence, 4);  // the last two are a pair
  DenseMatrix<float> none;
  EXPECT_TRUE(RealEigenvalues(none).real.empty());
}

}  // namespace
}  // namespace zelvane
