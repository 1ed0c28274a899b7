// Building a stimulus profile: functions of samples and plain parameters.
//
//   Times and indices  SampleIndex  TimeIndex
//   Levels             SamplesWithin  FillLevel  AddStep  AddRamp
//   Pulses             SquarePulse  EdgedPulse  ExponentialPulse  SamplePulse  AddsNothing
//   Trains             PulseTrain  PulseStart  AddTrain
//
// Indices of samples are 64-bit and may lie outside the profile on either side: what lies outside is left
// out. A range first..last excludes last. Amplitudes carry the unit of the profile, times are ms.
#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <variant>

namespace zelvane {

/// A quotient of times as a sample index: truncated toward zero and held to +-2^53, where every whole number
/// is still exact in a double. nan, as 0 / 0 gives, becomes 0.
std::int64_t SampleIndex(double quotient);

/// Index of the sample at `timeMs`: truncated, never rounded, the quotient formed in double from the two
/// 32-bit floats. 1 ms at 0.1 ms gives 9, since the float 0.1 lies above 0.1.
std::int64_t TimeIndex(float timeMs, float intervalMs);

/// The samples of first..last that exist; none where last lies before first.
std::span<float> SamplesWithin(std::span<float> profile, std::int64_t first, std::int64_t last);

/// Sets all samples to `level`. Compares before it writes, so that memory which already holds the level is
/// not touched.
void FillLevel(std::span<float> profile, float level);

/// Adds `amplitude` over first..last.
void AddStep(std::span<float> profile, float amplitude, std::int64_t first, std::int64_t last);

/// Adds amplitude x k / (last - first) over first..last, k counting the samples touched from 0: the last
/// sample of a full ramp lies one increment below `amplitude`.
void AddRamp(std::span<float> profile, float amplitude, std::int64_t first, std::int64_t last);

/// A flat pulse.
struct SquarePulse {
  float amplitude = 0.0F;
  std::int64_t samples = 0;
};

/// A pulse that rises as amplitude x (1 - exp(-t / riseTau)) for `samples` samples and then decays, from the
/// full amplitude, as amplitude x exp(-t / decayTau) without end. A time constant of 0 stands for an edge
/// without delay. With `samples` below 0 only the decay remains, that many samples before the start.
struct EdgedPulse {
  float amplitude = 0.0F;
  float riseTau = 0.0F;
  float decayTau = 0.0F;
  std::int64_t samples = 0;
};

/// offset + the sum over the components of amp x exp(-t / tau), without end; with `rises` less the sum of the
/// amplitudes x exp(-t / riseTau).
struct ExponentialPulse {
  float offset = 0.0F;
  float amp1 = 0.0F;
  float amp2 = 0.0F;
  float tau1 = 0.0F;
  float tau2 = 0.0F;
  float riseTau = 0.0F;
  int components = 1;  // 1 or 2; any other number makes a pulse that adds nothing
  bool rises = false;
};

using Pulse = std::variant<SquarePulse, EdgedPulse, ExponentialPulse>;

/// Whether the pulse is one that adds nothing anywhere: an exponential pulse with a time constant in use of
/// exactly 0 or a number of components other than 1 and 2.
bool AddsNothing(const Pulse& pulse);

/// Writes the values of the pulse at its samples skip, skip + 1, ... to `out`; 0 beyond its end.
///
/// The time t that enters the exponentials is a running sum in 32-bit floats: 0 at the first sample of a
/// rise, decay or waveform, raised by `intervalMs` after each sample. Where samples are skipped the sum
/// begins at skip x interval. Each term is evaluated in double and narrowed to float once.
void SamplePulse(const Pulse& pulse, float intervalMs, std::int64_t skip, std::span<float> out);

/// Starts of a train: pulse p = 0, 1, ... begins at sample trunc(first + p x step). The sum is truncated
/// once, so that a train does not drift.
struct PulseTrain {
  double first = 0.0;  // samples, not truncated
  double step = 0.0;   // samples from one start to the next, not truncated
  int count = 1;
};
std::int64_t PulseStart(const PulseTrain& train, int pulse);

/// Told the fraction done at fixed moments of long work; false stops it.
using KeepGoing = std::function<bool(double fraction)>;

/// Adds the pulse to the profile at every start of the train, one whole pulse after the other.
///
/// A square or edged pulse whose end (start + samples) lies at or beyond the end of the profile is left out;
/// later ones are still tried. What a pulse does before sample 0 is cut off, its tail enters the profile.
/// Pulses that begin at the same sample are added together, as count x value.
/// @param scratch    room for the samples of one pulse, as long as the profile; its contents are lost
/// @param keepGoing  asked after about 2^24 additions; when it stops, the pulses added so far stay
void AddTrain(std::span<float> profile, const Pulse& pulse, const PulseTrain& train, float intervalMs,
              std::span<float> scratch, const KeepGoing& keepGoing);

}  // namespace zelvane
