#include "bench_models.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>

#include "model/model.h"
#include "model/model_file.h"
#include "stimulus/stimulus_store.h"

namespace zelvane {

BenchScheme SchemeOfFile(const char* name) {
  const std::string path = std::string(ZELVANE_DATA) + "/" + name;
  if (ModelFileReadNamed(path) != Outcome::Done) {
    std::fprintf(stderr, "bench: no model in %s\n", path.c_str());
    std::exit(1);
  }
  if (Model.ModelIs2D != 0) {
    RatesFromGrid();
  } else {
    ActivateTableModel();
  }
  const auto& on = Model.ModelIs2D != 0 ? Model.StateOn : Model.TableStateOn;
  return {Model.RateMatrix, Model.Depend, on, Model.StartOccupancy, Model.Temperature};
}

BenchScheme FullTable() {
  constexpr int voltageRates = 254;
  std::mt19937 random(380);
  std::uniform_real_distribution<float> perSecond(50.0F, 900.0F);
  std::uniform_real_distribution<float> steepness(-1.0F, 1.0F);
  BenchScheme scheme;
  int rates = 0;
  for (std::size_t a = 1; a <= MaxStates; ++a) {
    scheme.on[a] = 1;
    for (std::size_t b = 1; b <= MaxStates; ++b) {
      if (a == b) continue;
      scheme.rate[a][b] = perSecond(random);
      if (rates++ >= voltageRates) continue;
      scheme.depend.Volt[a][b] = 1;
      scheme.depend.Steepness[a][b] = steepness(random);
    }
  }
  scheme.start[1] = 1.0F;
  return scheme;
}

void SetStimulus(BenchStimulus stimulus, int points) {
  const auto size = static_cast<std::size_t>(points) + 2;  // the last stage of a step reads one more point
  const std::span<float> volts = Stimulus.Profile[0].first(std::min(size, Stimulus.Profile[0].size()));
  const std::span<float> drug = Stimulus.Profile[1].first(volts.size());
  std::fill(volts.begin(), volts.end(), stimulus == BenchStimulus::Pulse ? 0.0F : -0.1F);
  std::fill(drug.begin(), drug.end(), 0.0F);
  for (std::size_t i = 100; i < volts.size(); ++i) {
    if (stimulus == BenchStimulus::Pulse && i < 200) drug[i] = 1e-3F;
    if (stimulus == BenchStimulus::VoltageStep) volts[i] = -0.01F;
    if (stimulus == BenchStimulus::VoltageRamp) volts[i] = -0.1F + 2e-6F * static_cast<float>(i);
  }
}

StimulusView StoreStimulus() {
  StimulusView view;
  std::copy(Stimulus.Profile.begin(), Stimulus.Profile.end(), view.profile.begin());
  view.intervalMs = BenchIntervalMs;
  return view;
}

}  // namespace zelvane
