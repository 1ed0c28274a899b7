// The one low-pass filter of the program.
//
//   On a trace  GaussianFilter
//   Its engine  MakeGaussianKernel  ConvolveInPlace
#pragma once

#include <array>
#include <cstddef>
#include <span>

namespace zelvane {

/// Low-pass filters `trace` in place with a Gaussian kernel, without phase shift.
///
/// @param trace  one sample per `Model.ADInterval`, any unit
/// @param fc     -3 dB corner, kHz
///
/// The kernel is cut at four standard deviations on each side (sigma = 0.132505 / (fc x ADInterval) samples);
/// below sigma 0.62 three coefficients serve. The first and last samples, which it does not cover, keep their
/// values. Sums are 32-bit and run in rising order of samples. A corner at or below 0, or nan, leaves the
/// trace unchanged.
///
/// Reads:   `Model.ADInterval`, `Model.FitActive`, `Noise.RecordPoints`.
/// Tells:   "! Warning" at a corner above half the sampling rate (and goes on), and for a kernel of more than
/// 1000
///          coefficients a side or one too long for the record (the trace is then as it was). Silent during a
///          fit.
/// Source:  Colquhoun & Sigworth (1995), in Single-Channel Recording, 2nd ed., chapter 19.
void GaussianFilter(std::span<float> trace, float fc);

inline constexpr int MaxKernelHalf = 1000;  // coefficients on each side of the centre

/// A symmetric kernel: coefficient[i] weighs the samples i to the left and to the right.
struct GaussianKernel {
  int half = 0;  // coefficients on each side; above MaxKernelHalf none is computed
  std::array<float, MaxKernelHalf + 1> coefficient{};
};

/// The kernel of a corner given as a fraction of the sampling rate, above 0; the coefficients of a kernel,
/// counted on both sides, sum to 1. Same source as GaussianFilter.
GaussianKernel MakeGaussianKernel(float corner);

/// Convolves samples half..size - 1 - half, every sum made of samples as they came in and accumulated in
/// 32-bit floats in rising order. A trace that is shorter than the kernel stays as it is. `half`
/// is 1..MaxKernelHalf.
void ConvolveInPlace(std::span<float> trace, const GaussianKernel& kernel);

}  // namespace zelvane
