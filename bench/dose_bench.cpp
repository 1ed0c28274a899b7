// A dose-response curve of 20 doses against 20 runs of the model alone.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <sstream>
#include <vector>

#include "analysis/dose_runs.h"
#include "analysis/dose_store.h"
#include "app/stores.h"
#include "headless/commands/job_settings.h"
#include "headless/commands/one_job.h"
#include "model/model_store.h"
#include "run/run.h"
#include "trace/trace_events.h"

namespace zelvane {
namespace {

constexpr int Doses = 20;
int runs = 0;

void Prepare() {
  StartJob(Seeds{1234, 5678, 9012});
  static std::ostringstream nowhere;
  const JobStreams streams{nowhere, nowhere};
  if (ReadJobModel(ZELVANE_DATA "/models/ampa_jonas_1993.mod", streams) != Outcome::Done) std::exit(1);
  static_cast<void>(ShowJobStores());
  RunBegins.Add([] { ++runs; });
}

std::vector<float> Concentrations() {
  std::vector<float> doses(Doses);
  for (std::size_t k = 0; k < doses.size(); ++k) doses[k] = 1e-5F * static_cast<float>(k + 1);
  return doses;
}

void Curve(benchmark::State& state) {
  Prepare();
  const std::vector<float> doses = Concentrations();
  std::vector<float> response(doses.size());
  runs = 0;
  for (auto _ : state) static_cast<void>(SimulateDoses(doses, 1, DosePeak, response));
  state.counters["runs of the model"] = static_cast<double>(runs) / static_cast<double>(state.iterations());
}
void Runs(benchmark::State& state) {
  Prepare();
  for (auto _ : state) {
    for (int k = 0; k < Doses; ++k) static_cast<void>(RunSimulation(Model.NumPoints, RunStart::AsSet));
  }
}
BENCHMARK(Curve)->Unit(benchmark::kMillisecond);
BENCHMARK(Runs)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace zelvane

BENCHMARK_MAIN();
