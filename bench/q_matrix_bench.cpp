// The Q-matrix analysis of a scheme with 20 states: as a fit calls it before each evaluation (report off),
// and with its time constants.
#include <benchmark/benchmark.h>

#include "app/stores.h"
#include "bench_models.h"
#include "model/model_store.h"
#include "run/q_matrix_analysis.h"

namespace zelvane {
namespace {

/// Puts the table of 20 states into the store.
void UseFullTable(bool onVoltage) {
  const BenchScheme scheme = FullTable();
  Model.ModelIs2D = 0;
  Model.TableRate = scheme.rate;
  Model.TableDepend = onVoltage ? scheme.depend : DependenceTables{};
  SetStimulus(BenchStimulus::VoltageStep, 1000);
}

void Analysis(benchmark::State& state, bool onVoltage) {
  UseFullTable(onVoltage);
  for (auto _ : state) benchmark::DoNotOptimize(QMatrixAnalysis(false, 1).equilibrium.singular);
}

void AnalysisWithTimeConstants(benchmark::State& state) {
  UseFullTable(true);
  for (auto _ : state) benchmark::DoNotOptimize(SolveQMatrix(ActiveQMatrix(1), true).relaxation.size());
}

}  // namespace
}  // namespace zelvane

int main(int argc, char** argv) {
  zelvane::AllocateStores();
  zelvane::ResetStores();
  benchmark::Initialize(&argc, argv);
  benchmark::RegisterBenchmark("report off, 380 constant rates", zelvane::Analysis, false)
      ->Unit(benchmark::kMicrosecond);
  benchmark::RegisterBenchmark("report off, 254 of them on voltage", zelvane::Analysis, true)
      ->Unit(benchmark::kMicrosecond);
  benchmark::RegisterBenchmark("with time constants", zelvane::AnalysisWithTimeConstants)
      ->Unit(benchmark::kMicrosecond);
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
