// The same response from CVODE: BDF with the exact Jacobian, relative tolerance 1e-4, values at every point.
//
// Cohen & Hindmarsh (1996), Comput. Phys. 10, 138-143. The stimulus is a step, so the solver starts again at
// each edge. Its right-hand side is one product with the matrix of effective rates, which is constant between
// edges.
#include <benchmark/benchmark.h>
#include <cvode/cvode.h>
#include <nvector/nvector_serial.h>
#include <sunlinsol/sunlinsol_dense.h>
#include <sunmatrix/sunmatrix_dense.h>

#include <cmath>
#include <ctime>
#include <stdexcept>
#include <vector>

#include "bench_models.h"
#include "kinetics/adaptive_step.h"
#include "kinetics/fixed_step.h"
#include "kinetics/rate_factor.h"
#include "numerics/spline.h"
#include "run/result_store.h"

namespace zelvane {
namespace {

constexpr int Points = 10240;
constexpr double RelativeTolerance = 1e-4;
constexpr double AbsoluteTolerance = 1e-8;

/// The matrix of effective rates at one point of the stimulus, dy/dt = matrix x y, states from 0.
struct RateSystem {
  std::vector<std::size_t> state;
  std::vector<double> matrix;  // row after row
};

double Factor(const SchemeTables& tables, const StimulusView& view, std::size_t a, std::size_t b,
              std::size_t point) {
  double factor = 1.0;
  for (std::size_t d = 1; d <= MaxDrugs; ++d) {
    if (tables.depend.Drug[d][a][b] != 0) factor *= static_cast<double>(view.profile[d][point]);
  }
  if (tables.depend.Volt[a][b] != 1) return factor;
  const double coefficient = VoltageCoefficient(tables.depend.Steepness[a][b], tables.temperature);
  return factor * std::exp(static_cast<double>(view.profile[0][point]) * coefficient);
}

RateSystem SystemAt(const BenchScheme& scheme, const StimulusView& view, std::size_t point) {
  RateSystem system;
  for (std::size_t s = 1; s <= MaxStates; ++s) {
    if (scheme.on[s] != 0) system.state.push_back(s);
  }
  const std::size_t n = system.state.size();
  const SchemeTables tables = scheme.Tables();
  system.matrix.assign(n * n, 0.0);
  for (std::size_t i = 0; i < n; ++i) {
    for (std::size_t j = 0; j < n; ++j) {
      const std::size_t a = system.state[j];
      const std::size_t b = system.state[i];
      if (i == j || tables.rate[a][b] == 0.0F) continue;
      const double rate = static_cast<double>(tables.rate[a][b]) * Factor(tables, view, a, b, point);
      system.matrix[i * n + j] += rate;
      system.matrix[j * n + j] -= rate;
    }
  }
  return system;
}

int Slopes(realtype /*t*/, N_Vector y, N_Vector dydt, void* data) {
  const auto& system = *static_cast<const RateSystem*>(data);
  const std::size_t n = system.state.size();
  const double* from = N_VGetArrayPointer(y);
  double* to = N_VGetArrayPointer(dydt);
  for (std::size_t i = 0; i < n; ++i) {
    to[i] = 0.0;
    for (std::size_t j = 0; j < n; ++j) to[i] += system.matrix[i * n + j] * from[j];
  }
  return 0;
}

int Jacobian(realtype /*t*/, N_Vector /*y*/, N_Vector /*fy*/, SUNMatrix jacobian, void* data, N_Vector /*t1*/,
             N_Vector /*t2*/, N_Vector /*t3*/) {
  const auto& system = *static_cast<const RateSystem*>(data);
  const std::size_t n = system.state.size();
  for (std::size_t i = 0; i < n; ++i) {
    for (std::size_t j = 0; j < n; ++j) {
      SM_ELEMENT_D(jacobian, static_cast<sunindextype>(i), static_cast<sunindextype>(j)) =
          system.matrix[i * n + j];
    }
  }
  return 0;
}

void Require(int flag) {
  if (flag < 0) throw std::runtime_error("CVODE failed");
}

/// Calculates points first..end - 1 of `output` (all states, point after point) from the occupancies in `y`,
/// and moves these to `end`.
void SolveStretch(SUNContext context, RateSystem& system, std::size_t first, std::size_t end,
                  std::vector<double>& y, std::vector<double>& output) {
  const auto n = static_cast<sunindextype>(y.size());
  N_Vector vector = N_VMake_Serial(n, y.data(), context);
  SUNMatrix matrix = SUNDenseMatrix(n, n, context);
  SUNLinearSolver solver = SUNLinSol_Dense(vector, matrix, context);
  void* cvode = CVodeCreate(CV_BDF, context);
  Require(CVodeInit(cvode, Slopes, 0.0, vector));
  Require(CVodeSStolerances(cvode, RelativeTolerance, AbsoluteTolerance));
  Require(CVodeSetUserData(cvode, &system));
  Require(CVodeSetLinearSolver(cvode, solver, matrix));
  Require(CVodeSetJacFn(cvode, Jacobian));
  Require(CVodeSetMaxNumSteps(cvode, 1000000));
  const double interval = static_cast<double>(BenchIntervalMs) * 1e-3;
  Require(CVodeSetStopTime(cvode, static_cast<double>(end - first) * interval));
  for (std::size_t point = first; point < end; ++point) {
    std::copy(y.begin(), y.end(), output.begin() + static_cast<std::ptrdiff_t>(point * y.size()));
    double reached = 0.0;
    Require(CVode(cvode, static_cast<double>(point + 1 - first) * interval, vector, &reached, CV_NORMAL));
  }
  CVodeFree(&cvode);
  SUNLinSolFree(solver);
  SUNMatDestroy(matrix);
  N_VDestroy(vector);
}

std::vector<double> SolveWithCvode(const BenchScheme& scheme, const StimulusView& view) {
  SUNContext context = nullptr;
  Require(SUNContext_Create(nullptr, &context));
  std::vector<double> y;
  std::vector<double> output;
  std::size_t first = 0;
  while (first < Points) {
    std::size_t end = first + 1;
    while (end < Points && view.profile[0][end] == view.profile[0][first] &&
           view.profile[1][end] == view.profile[1][first]) {
      ++end;
    }
    RateSystem system = SystemAt(scheme, view, first);
    if (y.empty()) {
      for (const std::size_t s : system.state) y.push_back(static_cast<double>(scheme.start[s]));
      output.resize(Points * y.size());
    }
    SolveStretch(context, system, first, end, y, output);
    first = end;
  }
  SUNContext_Free(&context);
  return output;
}

/// Runs the adaptive integrator and brings every state that is on to all points.
std::vector<float> SolveAdaptive(const BenchScheme& scheme, const StimulusView& view, float precision) {
  const CompiledScheme compiled = CompileScheme(scheme.Tables());
  const AdaptiveResult run = IntegrateAdaptive({compiled, view, scheme.start, Points, precision},
                                               Result.SavedTime, Result.Occupancy);
  const auto saved = static_cast<std::size_t>(run.saved);
  std::vector<double> times(Result.SavedTime.begin() + 1, Result.SavedTime.begin() + 1 + run.saved);
  std::vector<double> values(saved);
  std::vector<float> output;
  output.reserve(static_cast<std::size_t>(Points) * MaxStates);
  for (std::size_t s = 1; s <= MaxStates; ++s) {
    if (scheme.on[s] == 0) continue;
    for (std::size_t q = 0; q < saved; ++q) values[q] = static_cast<double>(Result.Occupancy[s][q + 1]);
    output.resize(output.size() + Points);
    SplineToSamples(times, values, static_cast<double>(BenchIntervalMs), std::span(output).last(Points));
  }
  return output;
}

/// Returns the processor time of `work`.
template <typename Work>
double Seconds(Work work) {
  const std::clock_t start = std::clock();
  benchmark::DoNotOptimize(work());
  return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

/// Time is that of the program's integrator. The counters are CVODE's time and how many times faster the
/// program is.
template <typename Work>
void AgainstCvode(benchmark::State& state, const BenchScheme& scheme, const StimulusView& view, Work work) {
  double own = 0.0;
  double cvode = 0.0;
  for (auto _ : state) {
    const double seconds = Seconds(work);
    own += seconds;
    cvode += Seconds([&] { return SolveWithCvode(scheme, view); });
    state.SetIterationTime(seconds);
  }
  state.counters["cvode_ms"] = cvode * 1e3 / static_cast<double>(state.iterations());
  state.counters["times_faster"] = cvode / own;
}

}  // namespace

void AddCvodeBenchmarks(const BenchScheme& ampa, const BenchScheme& sodium);

void AddCvodeBenchmarks(const BenchScheme& ampa, const BenchScheme& sodium) {
  const auto add = [](const std::string& name, const BenchScheme& scheme, BenchStimulus stimulus) {
    const auto finish = [](benchmark::internal::Benchmark* b) {
      b->UseManualTime()->Unit(benchmark::kMillisecond)->MinTime(0.1);
    };
    finish(benchmark::RegisterBenchmark(
        ("cvode/fixed/" + name).c_str(), [&scheme, stimulus](benchmark::State& state) {
          SetStimulus(stimulus, Points);
          const StimulusView view = StoreStimulus();
          AgainstCvode(state, scheme, view, [&] {
            const CompiledScheme compiled = CompileScheme(scheme.Tables());
            return IntegrateFixedStep({compiled, view, scheme.start, Points, 0.005F}, Result.Occupancy)
                .reductions;
          });
        }));
    finish(benchmark::RegisterBenchmark(
        ("cvode/adaptive/" + name).c_str(), [&scheme, stimulus](benchmark::State& state) {
          SetStimulus(stimulus, Points);
          const StimulusView view = StoreStimulus();
          AgainstCvode(state, scheme, view, [&] { return SolveAdaptive(scheme, view, 0.0005F); });
        }));
  };
  add("ampa", ampa, BenchStimulus::Pulse);
  add("sodium", sodium, BenchStimulus::VoltageStep);
}

}  // namespace zelvane
