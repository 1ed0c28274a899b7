#include "stimulus/profile_builder.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <cmath>
#include <cstring>

#include "platform/index.h"

namespace zelvane {
namespace {

constexpr std::int64_t LastIndex = std::int64_t{1} << 53;

/// Additions between two polls, about 10 ms of work, and the extra work of a pulse.
constexpr std::int64_t WorkBetweenPolls = std::int64_t{1} << 24;
constexpr std::int64_t WorkPerPulse = 64;

std::span<float> From(std::span<float> samples, std::int64_t first) {
  return SamplesWithin(samples, first, LastIndex);
}

/// Returns exp(-t / tau); 0 for a tau of 0.
double Decay(float t, float tau) {
  return tau == 0.0F ? 0.0 : std::exp(-static_cast<double>(t) / static_cast<double>(tau));
}

/// Sets out[i] = term(t). t is the running sum in 32-bit floats, as if `skip` samples came before.
template <typename Term>
void SampleTerm(std::span<float> out, float intervalMs, std::int64_t skip, Term term) {
  auto t = static_cast<float>(static_cast<double>(skip) * static_cast<double>(intervalMs));
  for (float& value : out) {
    value = static_cast<float>(term(t));
    t += intervalMs;
  }
}

void Sample(const SquarePulse& pulse, float, std::int64_t skip, std::span<float> out) {
  std::ranges::fill(out, 0.0F);
  std::ranges::fill(SamplesWithin(out, 0, pulse.samples - skip), pulse.amplitude);
}

void Sample(const EdgedPulse& pulse, float intervalMs, std::int64_t skip, std::span<float> out) {
  const double amplitude = pulse.amplitude;
  const std::int64_t rise = std::max<std::int64_t>(pulse.samples, 0);
  SampleTerm(SamplesWithin(out, 0, rise - skip), intervalMs, skip,
             [&](float t) { return amplitude * (1.0 - Decay(t, pulse.riseTau)); });
  SampleTerm(From(out, rise - skip), intervalMs, std::max<std::int64_t>(skip - rise, 0),
             [&](float t) { return amplitude * Decay(t, pulse.decayTau); });
}

void Sample(const ExponentialPulse& pulse, float intervalMs, std::int64_t skip, std::span<float> out) {
  const double amp1 = pulse.amp1;
  const double amp2 = pulse.components == 2 ? pulse.amp2 : 0.0F;
  const double rise = pulse.rises ? amp1 + amp2 : 0.0;
  SampleTerm(out, intervalMs, skip, [&](float t) {
    double value = pulse.offset + amp1 * Decay(t, pulse.tau1);
    if (pulse.components == 2) value += amp2 * Decay(t, pulse.tau2);
    if (pulse.rises) value -= rise * Decay(t, pulse.riseTau);
    return value;
  });
}

/// Returns the samples of the part of a pulse that must end inside the profile.
std::int64_t BodySamples(const Pulse& pulse) {
  if (const auto* square = std::get_if<SquarePulse>(&pulse)) return square->samples;
  if (const auto* edged = std::get_if<EdgedPulse>(&pulse)) return edged->samples;
  return 0;
}

/// Returns how many pulses of the train, from `pulse` on, begin at the same sample. The starts of a train
/// increase or decrease steadily, so bisection finds the last one.
int PulsesTogether(const PulseTrain& train, int pulse) {
  const std::int64_t start = PulseStart(train, pulse);
  int same = pulse;
  int other = train.count;  // first pulse known to begin at another sample
  for (int probe = pulse + 1; probe < other; probe = same + std::max((other - same) / 2, 1)) {
    if (PulseStart(train, probe) == start) {
      same = probe;
    } else {
      other = probe;
    }
    if (other - same <= 1) break;
  }
  return same - pulse + 1;
}

void AddScaled(std::span<float> profile, std::span<const float> values, float times) {
  for (std::size_t i = 0; i < profile.size(); ++i) profile[i] += times * values[i];
}

}  // namespace

std::int64_t SampleIndex(double quotient) {
  if (std::isnan(quotient)) return 0;
  constexpr auto limit = static_cast<double>(LastIndex);
  return static_cast<std::int64_t>(std::clamp(quotient, -limit, limit));
}

std::int64_t TimeIndex(float timeMs, float intervalMs) {
  return SampleIndex(static_cast<double>(timeMs) / static_cast<double>(intervalMs));
}

std::span<float> SamplesWithin(std::span<float> profile, std::int64_t first, std::int64_t last) {
  const auto size = static_cast<std::int64_t>(profile.size());
  const std::int64_t from = std::clamp<std::int64_t>(first, 0, size);
  const std::int64_t to = std::clamp<std::int64_t>(last, from, size);
  return profile.subspan(Index(from), Index(to - from));
}

void FillLevel(std::span<float> profile, float level) {
  std::array<float, 1024> pattern;  // one page: the system gives memory in pages
  pattern.fill(level);
  while (!profile.empty()) {
    const std::span<float> part = profile.first(std::min(profile.size(), pattern.size()));
    if (std::memcmp(part.data(), pattern.data(), part.size_bytes()) != 0) std::ranges::fill(part, level);
    profile = profile.subspan(part.size());
  }
}

void AddStep(std::span<float> profile, float amplitude, std::int64_t first, std::int64_t last) {
  for (float& sample : SamplesWithin(profile, first, last)) sample += amplitude;
}

void AddRamp(std::span<float> profile, float amplitude, std::int64_t first, std::int64_t last) {
  const auto length = static_cast<float>(last - first);
  int k = 0;
  for (float& sample : SamplesWithin(profile, first, last))
    sample += amplitude * static_cast<float>(k++) / length;
}

bool AddsNothing(const Pulse& pulse) {
  const auto* wave = std::get_if<ExponentialPulse>(&pulse);
  if (wave == nullptr) return false;
  return (wave->components != 1 && wave->components != 2) || wave->tau1 == 0.0F ||
         (wave->components == 2 && wave->tau2 == 0.0F) || (wave->rises && wave->riseTau == 0.0F);
}

void SamplePulse(const Pulse& pulse, float intervalMs, std::int64_t skip, std::span<float> out) {
  std::visit([&](const auto& shape) { Sample(shape, intervalMs, skip, out); }, pulse);
}

std::int64_t PulseStart(const PulseTrain& train, int pulse) {
  // An infinite step, from an interval of 0, must not make the first start NaN.
  return SampleIndex(pulse == 0 ? train.first : train.first + pulse * train.step);
}

void AddTrain(std::span<float> profile, const Pulse& pulse, const PulseTrain& train, float intervalMs,
              std::span<float> scratch, const KeepGoing& keepGoing) {
  assert(scratch.size() >= profile.size());
  if (train.count < 1 || AddsNothing(pulse)) return;
  const auto size = static_cast<std::int64_t>(profile.size());
  const std::int64_t body = BodySamples(pulse);
  const std::int64_t lead = std::min<std::int64_t>(body, 0);  // a decay that begins before its pulse

  // The pulse that begins first needs the most samples.
  const std::int64_t earliest = std::min(PulseStart(train, 0), PulseStart(train, train.count - 1)) + lead;
  const std::span<float> samples = scratch.first(From(profile, earliest).size());
  std::int64_t sampledFrom = -1;  // sample of the pulse in samples[0]

  std::int64_t work = 0;
  for (int p = 0, together = 0; p < train.count; p += together) {
    const std::int64_t start = PulseStart(train, p);
    together = PulsesTogether(train, p);
    work += WorkPerPulse;
    if (start + body >= size) {
      if (train.step > 0.0) return;  // later pulses end later
    } else {
      const std::int64_t begin = start + lead;
      const std::span<float> touched = std::holds_alternative<SquarePulse>(pulse)
                                           ? SamplesWithin(profile, begin, start + body)
                                           : From(profile, begin);
      const std::int64_t skip = std::max<std::int64_t>(-begin, 0);
      if (!touched.empty() && skip != sampledFrom) {
        SamplePulse(pulse, intervalMs, skip, samples);
        sampledFrom = skip;
      }
      AddScaled(touched, samples, static_cast<float>(together));
      work += static_cast<std::int64_t>(touched.size());
    }
    if (work >= WorkBetweenPolls) {
      work = 0;
      if (!keepGoing(static_cast<double>(p) / train.count)) return;
    }
  }
}

}  // namespace zelvane
