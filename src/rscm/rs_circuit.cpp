#include "rscm/rs_circuit.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <cstddef>
#include <numeric>

#include "platform/index.h"

namespace zelvane {
namespace {

constexpr float UnitsPerPico = 1e-12F;
constexpr float PicosPerUnit = 1e12F;
constexpr float TwoPi = 6.283185308F;
constexpr int GuideSteps = 32768;

/// Returns the double exponential, narrowed: it is the same in all libraries, while their 32-bit ones differ
/// in the last bit.
float Exp(float x) {
  return static_cast<float>(std::exp(static_cast<double>(x)));
}

float MembraneVolt(const RsCircuit& c, float picoamps) {
  return c.vHold - c.rs * picoamps * UnitsPerPico;
}

/// Returns the fraction of a sample to subtract at a membrane voltage.
float LinearLoss(const RsCircuit& c, float fraction, float volt) {
  return volt == c.vRev ? 0.0F : fraction * (1.0F - (c.vHold - c.vRev) / (volt - c.vRev));
}

float LagFactor(const RsCircuit& c, float lagFc) {
  return 1.0F - Exp(-TwoPi * c.dt * lagFc);
}

/// Subtracts the capacitive current from each sample, then replaces the sample by `scale(sample, volt)`.
/// `volt` is the membrane voltage at the next sample.
template <typename Scale>
void CorrectEach(std::span<float> current, const RsCircuit& circuit, const RsFractions& fractions,
                 Scale scale) {
  assert(circuit.dt > 0.0F);
  if (current.empty()) return;
  const RsCircuit c = circuit;  // a copy, which writes to the trace cannot change
  const float lag = LagFactor(c, fractions.lagFc);
  const float capacitive = PicosPerUnit * fractions.cap;
  float before = MembraneVolt(c, current[0]);
  current[0] -= LinearLoss(c, fractions.volt, before) * current[0];
  for (std::size_t k = 1; k < current.size(); ++k) {
    const float volt = MembraneVolt(c, current[k]);
    const float charging = c.cm * (volt - before) / c.dt * lag;
    current[k - 1] = scale(current[k - 1] - capacitive * charging, volt);
    before = volt;
  }
}

int GuideStep(const IvRelation& relation, float volt) {
  return static_cast<int>((volt - relation.first) * relation.stepsPerVolt);
}

}  // namespace

void CorrectLinear(std::span<float> current, const RsCircuit& circuit, const RsFractions& fractions) {
  const RsCircuit c = circuit;
  const float fraction = fractions.volt;
  CorrectEach(current, c, fractions, [c, fraction](float sample, float volt) {
    return sample - LinearLoss(c, fraction, volt) * sample;
  });
}

IvRelation MakeIvRelation(std::span<const float> volt, std::span<const float> current) {
  IvRelation relation;
  const std::size_t count = std::min(volt.size(), current.size());
  if (count < 2) return relation;
  std::vector<std::size_t> order(count);
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::stable_sort(order.begin(), order.end(),
                   [volt](std::size_t a, std::size_t b) { return volt[a] < volt[b]; });
  for (const std::size_t i : order) {
    relation.volt.push_back(volt[i]);
    relation.current.push_back(current[i]);
  }
  relation.first = relation.volt.front();
  const float span = relation.volt.back() - relation.first;
  relation.stepsPerVolt = std::isfinite(span) && span > 0.0F ? (GuideSteps - 1) / span : 0.0F;
  if (!std::isfinite(relation.stepsPerVolt)) relation.stepsPerVolt = 0.0F;
  // The step increases with the voltage, so points of an earlier step are not above it.
  relation.guide.resize(GuideSteps + 1);
  std::size_t point = 1;
  for (int step = 0; step <= GuideSteps; ++step) {
    while (point < count - 1 && GuideStep(relation, relation.volt[point]) < step) ++point;
    relation.guide[Index(step)] = static_cast<int>(point);
  }
  return relation;
}

float RelativeCurrent(const IvRelation& relation, float volt) {
  if (relation.volt.empty() || !(volt >= relation.first) || !(volt < relation.volt.back())) return 0.0F;
  const auto step = Index(std::clamp(GuideStep(relation, volt), 0, GuideSteps));
  auto i = Index(relation.guide[step]);
  while (!(volt < relation.volt[i])) ++i;
  const float low = relation.volt[i - 1];
  const float share = (volt - low) / (relation.volt[i] - low);
  return relation.current[i - 1] + share * (relation.current[i] - relation.current[i - 1]);
}

void CorrectNonlinear(std::span<float> current, const RsCircuit& circuit, const RsFractions& fractions,
                      const IvRelation& relation) {
  const float held = RelativeCurrent(relation, circuit.vHold);
  const float wanted = held * fractions.volt;
  CorrectEach(current, circuit, fractions, [&relation, held, wanted](float sample, float volt) {
    const float had = RelativeCurrent(relation, volt);
    return held == 0.0F || had == 0.0F ? sample : (wanted / had) * sample;
  });
}

void FilterConductance(std::span<float> trace, const RsCircuit& circuit) {
  assert(circuit.dt > 0.0F && circuit.rs > 0.0F && circuit.rm > 0.0F && circuit.cm >= 0.0F);
  if (trace.empty()) return;
  const RsCircuit c = circuit;
  const float access = 1.0F / c.rs;
  const float drive = c.vHold - c.vRev;
  const float leak = 1.0F / c.rm;
  const float rest = access * drive / (access + (trace[0] * UnitsPerPico + leak));
  float volt = 0.0F;  // relative to rest
  for (float& sample : trace) {
    const float g = sample * UnitsPerPico + leak;
    const float decay = Exp(-(access + g) * c.dt / c.cm);
    const float target = access * drive / (access + g) - rest;
    const float next = target + (volt - target) * decay;
    sample = access * (g * drive * PicosPerUnit + c.cm * (next - volt) * PicosPerUnit / c.dt) / (access + g);
    volt = next;
  }
}

void FilterVoltage(std::span<float> trace, const RsCircuit& circuit) {
  assert(circuit.dt > 0.0F && circuit.rs > 0.0F && circuit.rm > 0.0F && circuit.cm >= 0.0F);
  const RsCircuit c = circuit;
  const float both = c.rm + c.rs;
  const float parallel = c.rm * c.rs / both;
  const float decay = Exp(-c.dt / (parallel * c.cm));
  const float rest = c.vHold * c.rm / both;
  float volt = 0.0F;
  for (float& sample : trace) {
    const float target = c.rm * sample / both;
    const float next = target + (volt - target) * decay;
    sample =
        PicosPerUnit * (rest + target) / c.rm + c.rm * (c.cm * (next - volt) * PicosPerUnit / c.dt) / both;
    volt = next;
  }
}

}  // namespace zelvane
