// The second-order sections of a cascade run in parallel: at each step of the clock section k takes the
// sample that section k - 1 gave one step before, so that all sections work at once, one lane each. The
// output is late by one step per section and is shifted back.
#include "numerics/butterworth.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <cmath>
#include <complex>
#include <cstddef>
#include <cstring>
#include <numbers>
#include <vector>

#include "platform/vector_clones.h"

namespace zelvane {
namespace {

constexpr std::size_t LanesOfHalf = 4;  // sections of one vector of lanes
constexpr std::size_t MaxSections = 2 * LanesOfHalf;
constexpr std::size_t ChunkSamples = 2048;

enum class Passes { Low, High };

/// A resonant section of the analogue plane after the warp: natural frequency g, damping k (1 / Q).
struct Section {
  Passes passes = Passes::High;
  double g = 0.0;
  double k = 0.0;
  double gain = 1.0;
};

/// The same section in steps of the clock. With band state b and low state l, input x:
///   output = direct x + ofBand b + ofLow l
///   b += bandByInput x + bandByBand b - bandByInput l
///   l += lowByInput (x - l) + bandByInput b
/// A lane without a section passes its input on.
struct Lanes {
  alignas(32) double direct[MaxSections];
  alignas(32) double ofBand[MaxSections] = {};
  alignas(32) double ofLow[MaxSections] = {};
  alignas(32) double bandByInput[MaxSections] = {};
  alignas(32) double bandByBand[MaxSections] = {};
  alignas(32) double lowByInput[MaxSections] = {};
  alignas(32) double band[MaxSections] = {};
  alignas(32) double low[MaxSections] = {};
  alignas(32) double output[MaxSections] = {};
  std::size_t sections = 0;
};

void SetLane(Lanes& lanes, std::size_t i, const Section& section) {
  const double a1 = 1.0 / (1.0 + section.g * (section.g + section.k));
  const double a2 = section.g * a1;
  const double a3 = section.g * a2;
  lanes.bandByInput[i] = 2.0 * a2;
  lanes.bandByBand[i] = -2.0 * (section.g + section.k) * a2;
  lanes.lowByInput[i] = 2.0 * a3;
  if (section.passes == Passes::High) {
    lanes.direct[i] = section.gain * a1;
    lanes.ofBand[i] = -section.gain * (section.g + section.k) * a1;
    lanes.ofLow[i] = -section.gain * a1;
  } else {
    lanes.direct[i] = section.gain * a3;
    lanes.ofBand[i] = section.gain * a2;
    lanes.ofLow[i] = section.gain * (1.0 - a3);
  }
}

/// Returns lanes in the state that an endless constant input `steady` leads to.
Lanes MakeLanes(const std::vector<Section>& sections, double steady) {
  Lanes lanes;
  std::fill(std::begin(lanes.direct), std::end(lanes.direct), 1.0);
  lanes.sections = sections.size();
  for (std::size_t i = 0; i < sections.size(); ++i) {
    SetLane(lanes, i, sections[i]);
    lanes.low[i] = steady;
    steady = sections[i].passes == Passes::Low ? sections[i].gain * steady : 0.0;
    lanes.output[i] = steady;
  }
  std::fill(std::begin(lanes.output) + static_cast<std::ptrdiff_t>(sections.size()), std::end(lanes.output),
            steady);
  return lanes;
}

#if defined(ZELVANE_VECTOR_LANES)

#pragma GCC diagnostic ignored "-Wpsabi"  // such vectors never pass between functions here
using Four = double __attribute__((vector_size(32)));
using FourPlaces = long long __attribute__((vector_size(32)));

ZELVANE_INLINE Four Loaded(const double* values, std::size_t half) {
  Four four;
  std::memcpy(&four, values + half * LanesOfHalf, sizeof four);
  return four;
}
ZELVANE_INLINE void Store(const Four& four, double* values, std::size_t half) {
  std::memcpy(values + half * LanesOfHalf, &four, sizeof four);
}

/// Steps the clock once for each sample of `chunk`, with `Halves` vectors of lanes. Adds last what depends on
/// the previous step: a state, and its difference from the input.
template <std::size_t Halves>
ZELVANE_INLINE void RunHalves(Lanes& lanes, std::span<double> chunk) {
  Four direct[Halves], ofBand[Halves], ofLow[Halves], bandByInput[Halves], bandByBand[Halves];
  Four lowByInput[Halves], band[Halves], low[Halves], output[Halves];
  for (std::size_t h = 0; h < Halves; ++h) {
    direct[h] = Loaded(lanes.direct, h);
    ofBand[h] = Loaded(lanes.ofBand, h);
    ofLow[h] = Loaded(lanes.ofLow, h);
    bandByInput[h] = Loaded(lanes.bandByInput, h);
    bandByBand[h] = Loaded(lanes.bandByBand, h);
    lowByInput[h] = Loaded(lanes.lowByInput, h);
    band[h] = Loaded(lanes.band, h);
    low[h] = Loaded(lanes.low, h);
    output[h] = Loaded(lanes.output, h);
  }
  for (double& value : chunk) {
    Four from = Four{value, value, value, value};
    for (std::size_t h = 0; h < Halves; ++h) {
      const Four before = output[h];
      const Four x = __builtin_shuffle(from, before, FourPlaces{3, 4, 5, 6});
      output[h] = direct[h] * x + (ofBand[h] * band[h] + ofLow[h] * low[h]);
      const Four pull = x - low[h];
      const Four formerBand = band[h];
      band[h] = (formerBand + bandByBand[h] * formerBand) + bandByInput[h] * pull;
      low[h] = (low[h] + bandByInput[h] * formerBand) + lowByInput[h] * pull;
      from = before;
    }
    value = output[Halves - 1][LanesOfHalf - 1];
  }
  for (std::size_t h = 0; h < Halves; ++h) {
    Store(band[h], lanes.band, h);
    Store(low[h], lanes.low, h);
    Store(output[h], lanes.output, h);
  }
}

ZELVANE_CLONES void RunFour(Lanes& lanes, std::span<double> chunk) {
  RunHalves<1>(lanes, chunk);
}
ZELVANE_CLONES void RunEight(Lanes& lanes, std::span<double> chunk) {
  RunHalves<2>(lanes, chunk);
}

/// Returns the steps by which an output is late.
std::size_t StepsLate(const Lanes& lanes) {
  return (lanes.sections <= LanesOfHalf ? LanesOfHalf : MaxSections) - 1;
}

/// Steps the clock once for each sample of `chunk`, and replaces the sample by the output of the last lane.
void RunLanes(Lanes& lanes, std::span<double> chunk) {
  if (lanes.sections <= LanesOfHalf) {
    RunFour(lanes, chunk);
  } else {
    RunEight(lanes, chunk);
  }
}

#else

std::size_t StepsLate(const Lanes&) {
  return 0;
}

void RunLanes(Lanes& lanes, std::span<double> chunk) {
  for (double& value : chunk) {
    for (std::size_t i = 0; i < lanes.sections; ++i) {
      const double band = lanes.band[i];
      const double low = lanes.low[i];
      const double pull = value - low;
      lanes.band[i] = (band + lanes.bandByBand[i] * band) + lanes.bandByInput[i] * pull;
      lanes.low[i] = (low + lanes.bandByInput[i] * band) + lanes.lowByInput[i] * pull;
      value = lanes.direct[i] * value + (lanes.ofBand[i] * band + lanes.ofLow[i] * low);
    }
  }
}

#endif

/// Returns the first finite sample, or 0.
double FirstFinite(std::span<const double> input) {
  const auto it = std::find_if(input.begin(), input.end(), [](double x) { return std::isfinite(x); });
  return it != input.end() ? *it : 0.0;
}

/// Sends `input` through the sections in chunks. The output is late by StepsLate.
void RunCascade(const std::vector<Section>& sections, std::span<const double> input,
                std::span<double> output) {
  double last = FirstFinite(input);
  Lanes lanes = MakeLanes(sections, last);
  const std::size_t late = StepsLate(lanes);
  std::array<double, ChunkSamples> chunk;
  for (std::size_t start = 0; start < input.size() + late; start += ChunkSamples) {
    const std::size_t steps = std::min(ChunkSamples, input.size() + late - start);
    for (std::size_t i = 0; i < steps; ++i) {
      if (start + i < input.size() && std::isfinite(input[start + i])) last = input[start + i];
      chunk[i] = last;
    }
    RunLanes(lanes, std::span(chunk).first(steps));
    const std::size_t early = start < late ? std::min(late - start, steps) : 0;
    std::copy(chunk.begin() + static_cast<std::ptrdiff_t>(early),
              chunk.begin() + static_cast<std::ptrdiff_t>(steps),
              output.begin() + static_cast<std::ptrdiff_t>(start + early - late));
  }
}

// -- Sections of each filter --

/// Returns the prototype's poles in the upper left quarter plane, order / 2 of them.
std::vector<std::complex<double>> PrototypePoles(int order) {
  std::vector<std::complex<double>> poles;
  for (int i = 0; i < order / 2; ++i) {
    const double angle = std::numbers::pi * (order + 1.0 + 2.0 * i) / (2.0 * order);
    poles.push_back(std::polar(1.0, angle));
  }
  return poles;
}

double Warped(double corner, double rate) {
  return std::tan(std::numbers::pi * corner / rate);
}

std::vector<Section> OneSided(Passes passes, double g, int order) {
  std::vector<Section> sections;
  for (const std::complex<double>& pole : PrototypePoles(order)) {
    sections.push_back({passes, g, -2.0 * pole.real(), 1.0});
  }
  return sections;
}

Section SectionOf(Passes passes, std::complex<double> pole, double gain) {
  const double g = std::abs(pole);
  return {passes, g, -2.0 * pole.real() / g, gain};
}

/// Returns the sections of a band. s becomes (s^2 + low high) / (s (high - low)): every pole of the prototype
/// becomes two, a larger one for the upper edge of the band and a smaller one for the lower edge. All low
/// ones come first.
std::vector<Section> TwoSided(double low, double high, int order) {
  const double width = high - low;
  const double centre2 = low * high;
  std::vector<Section> sections;
  std::vector<Section> upper;
  for (const std::complex<double>& pole : PrototypePoles(order)) {
    const std::complex<double> middle = pole * width / 2.0;
    const std::complex<double> root = std::sqrt(middle * middle - centre2);
    const std::complex<double> plus = middle + root;
    const std::complex<double> minus = middle - root;
    const std::complex<double> larger = std::abs(plus) > std::abs(minus) ? plus : minus;
    const std::complex<double> smaller =
        centre2 / larger;  // the product of the two; the difference would cancel
    sections.push_back(SectionOf(Passes::High, smaller, 1.0));
    upper.push_back(SectionOf(Passes::Low, larger, width * width / std::norm(larger)));
  }
  sections.insert(sections.end(), upper.begin(), upper.end());
  return sections;
}

bool Usable(double rate, int order) {
  return rate > 0.0 && std::isfinite(rate) && order >= 2 && order <= BwMaxOrder && order % 2 == 0;
}

void Silence(std::span<double> output) {
  std::fill(output.begin(), output.end(), 0.0);
}

void PassOn(std::span<const double> input, std::span<double> output) {
  if (input.data() != output.data()) std::copy(input.begin(), input.end(), output.begin());
}

}  // namespace

void Bw_HPF(std::span<const double> input, double rate, double corner, int order, std::span<double> output) {
  assert(input.size() == output.size());
  if (!Usable(rate, order) || !(corner > 0.0)) {
    PassOn(input, output);
  } else if (corner >= rate / 2.0) {
    Silence(output);
  } else {
    RunCascade(OneSided(Passes::High, Warped(corner, rate), order), input, output);
  }
}

void Bw_BPF(std::span<const double> input, double rate, double low, double high, int order,
            std::span<double> output) {
  assert(input.size() == output.size());
  const bool openAbove = std::isnan(high) || high >= rate / 2.0;
  const bool openBelow = !(low > 0.0);
  if (!Usable(rate, order)) {
    PassOn(input, output);
  } else if (!(high > 0.0) && !openAbove) {
    Silence(output);
  } else if (openAbove) {
    Bw_HPF(input, rate, low, order, output);
  } else if (openBelow) {
    RunCascade(OneSided(Passes::Low, Warped(high, rate), order), input, output);
  } else if (low >= high) {
    Silence(output);
  } else {
    RunCascade(TwoSided(Warped(low, rate), Warped(high, rate), order), input, output);
  }
}

}  // namespace zelvane
