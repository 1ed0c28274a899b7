// Builds a stimulus profile from samples and plain parameters.
//
//   Times and indices  SampleIndex  TimeIndex
//   Levels             SamplesWithin  FillLevel  AddStep  AddRamp
//   Pulses             SquarePulse  EdgedPulse  ExponentialPulse  SamplePulse  AddsNothing
//   Trains             PulseTrain  PulseStart  AddTrain
//
// Indices of samples are 64-bit. They may be outside the profile on both sides; samples outside are left out.
// A range first..last excludes last. Amplitudes have the unit of the profile. Times are in ms.
#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <variant>

namespace zelvane {

/// Converts a quotient of times to a sample index. Truncates toward zero and limits the result to +-2^53,
/// where a double still holds every whole number. nan (from 0 / 0) becomes 0.
std::int64_t SampleIndex(double quotient);

/// Returns the index of the sample at `timeMs`. Divides the two 32-bit floats in double and truncates; never
/// rounds. 1 ms at 0.1 ms gives 9, because the float 0.1 is slightly larger than 0.1.
std::int64_t TimeIndex(float timeMs, float intervalMs);

/// Returns the existing samples of first..last. The span is empty when last is before first.
std::span<float> SamplesWithin(std::span<float> profile, std::int64_t first, std::int64_t last);

/// Sets all samples to `level`. Compares before it writes, so it does not touch memory that already has this
/// level.
void FillLevel(std::span<float> profile, float level);

/// Adds `amplitude` to the samples first..last.
void AddStep(std::span<float> profile, float amplitude, std::int64_t first, std::int64_t last);

/// Adds amplitude x k / (last - first) to the samples first..last. k counts the changed samples from 0, so
/// the last sample of a full ramp is one increment below `amplitude`.
void AddRamp(std::span<float> profile, float amplitude, std::int64_t first, std::int64_t last);

/// A flat pulse.
struct SquarePulse {
  float amplitude = 0.0F;
  std::int64_t samples = 0;
};

/// A pulse that rises as amplitude x (1 - exp(-t / riseTau)) for `samples` samples. Then it decays from the
/// full amplitude as amplitude x exp(-t / decayTau), without end. A time constant of 0 gives an edge
/// without delay. If `samples` is below 0, only the decay remains; it begins -`samples` samples before the
/// start.
struct EdgedPulse {
  float amplitude = 0.0F;
  float riseTau = 0.0F;
  float decayTau = 0.0F;
  std::int64_t samples = 0;
};

/// A pulse of offset + the sum over the components of amp x exp(-t / tau), without end. With `rises`, the
/// sum of the amplitudes x exp(-t / riseTau) is subtracted.
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

/// Returns whether the pulse adds nothing at any sample. This is an exponential pulse with a used time
/// constant of exactly 0, or with a number of components other than 1 and 2.
bool AddsNothing(const Pulse& pulse);

/// Writes the values of the pulse at its samples skip, skip + 1, ... to `out`. Writes 0 after its end.
///
/// The time t in the exponentials is a running sum in 32-bit floats. It is 0 at the first sample of a rise,
/// decay or waveform and grows by `intervalMs` after each sample. If samples are skipped, the sum begins at
/// skip x interval. Each term is calculated in double and converted to float once.
void SamplePulse(const Pulse& pulse, float intervalMs, std::int64_t skip, std::span<float> out);

/// The starts of a train: pulse p = 0, 1, ... begins at sample trunc(first + p x step). Only the sum is
/// truncated, so a train does not drift.
struct PulseTrain {
  double first = 0.0;  // samples, not truncated
  double step = 0.0;   // samples from one start to the next, not truncated
  int count = 1;
};
std::int64_t PulseStart(const PulseTrain& train, int pulse);

/// Gets the finished fraction at fixed steps of long work. False stops the work.
using KeepGoing = std::function<bool(double fraction)>;

/// Adds the pulse to the profile at every start of the train, one complete pulse after the other.
///
/// Leaves out a square or edged pulse whose end (start + samples) is at or after the end of the profile,
/// and still tries the later pulses. Cuts off the part of a pulse before sample 0 and adds the rest. Adds
/// pulses with the same first sample together, as count x value.
/// @param scratch    working space for one pulse, as long as the profile; overwritten
/// @param keepGoing  called after about 2^24 additions; after a stop the pulses added so far stay
void AddTrain(std::span<float> profile, const Pulse& pulse, const PulseTrain& train, float intervalMs,
              std::span<float> scratch, const KeepGoing& keepGoing);

}  // namespace zelvane
