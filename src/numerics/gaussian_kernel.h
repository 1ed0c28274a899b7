// Low-pass filtering with a Gaussian kernel.
//
//   The filter   GaussianLowPass
//   Its parts    MakeGaussianKernel  ConvolveInPlace
//
// Source: Colquhoun & Sigworth (1995), in Single-Channel Recording, 2nd ed., chapter 19.
#pragma once

#include <array>
#include <span>

namespace zelvane {

inline constexpr int MaxKernelHalf = 1000;  // coefficients on each side of the centre

/// A symmetric kernel: coefficient[i] weighs the samples i to the left and to the right.
struct GaussianKernel {
  int half = 0;  // coefficients on each side; above MaxKernelHalf none is computed
  std::array<float, MaxKernelHalf + 1> coefficient{};
};

/// The kernel of a corner given as a fraction of the sampling rate, above 0; the coefficients of a kernel,
/// counted on both sides, sum to 1. It is cut at four standard deviations on each side (sigma = 0.132505 /
/// corner samples); below sigma 0.62 three coefficients serve.
GaussianKernel MakeGaussianKernel(float corner);

/// Convolves samples half..size - 1 - half, every sum made of samples as they came in and accumulated in
/// 32-bit floats in rising order. A trace that is shorter than the kernel stays as it is. `half`
/// is 1..MaxKernelHalf.
void ConvolveInPlace(std::span<float> trace, const GaussianKernel& kernel);

enum class LowPassOutcome {
  Filtered,
  Aliased,   // filtered, with a corner above half the sampling rate
  NoCorner,  // the corner is below 0 or nan
  TooHeavy,  // the kernel has more than MaxKernelHalf coefficients a side
  TooLight,  // the kernel is too long for the record
};

/// Low-pass filters `trace` in place with a Gaussian kernel, without phase shift. Only the first two outcomes
/// change the trace.
///
/// @param corner        -3 dB corner as a fraction of the sampling rate
/// @param recordPoints  length of the record that the trace belongs to: it must exceed twice the kernel's half
///                      by 10, unless three coefficients serve
///
/// The first and last samples, which the kernel does not cover, keep their values.
LowPassOutcome GaussianLowPass(std::span<float> trace, float corner, int recordPoints);

}  // namespace zelvane
