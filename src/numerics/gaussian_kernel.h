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

/// A symmetric kernel: coefficient[i] is the weight of the samples i to the left and i to the right.
struct GaussianKernel {
  int half = 0;  // coefficients on each side; above MaxKernelHalf the kernel is empty
  std::array<float, MaxKernelHalf + 1> coefficient{};
};

/// Makes the kernel for a corner. The corner is a fraction of the sampling rate, above 0. The coefficients
/// of both sides have the sum 1. The kernel ends at four standard deviations on each side (sigma = 0.132505
/// / corner samples). Below sigma 0.62 it has three coefficients.
GaussianKernel MakeGaussianKernel(float corner);

/// Convolves samples half..size - 1 - half. Every sum uses the original samples, in rising order and in
/// 32-bit floats. Does not change a trace that is shorter than the kernel. `half` is 1..MaxKernelHalf.
void ConvolveInPlace(std::span<float> trace, const GaussianKernel& kernel);

enum class LowPassOutcome {
  Filtered,
  Aliased,   // filtered, with a corner above half the sampling rate
  NoCorner,  // the corner is below 0 or nan
  TooHeavy,  // the kernel has more than MaxKernelHalf coefficients on a side
  TooLight,  // the kernel is too long for the record
};

/// Low-pass filters `trace` in place with a Gaussian kernel, without phase shift. Only the first two outcomes
/// change the trace.
///
/// @param corner        -3 dB corner as a fraction of the sampling rate
/// @param recordPoints  length of the record of the trace; must exceed twice the half of the kernel by 10,
///                      unless the kernel has three coefficients
///
/// The kernel does not cover the first and last samples; they keep their values.
LowPassOutcome GaussianLowPass(std::span<float> trace, float corner, int recordPoints);

}  // namespace zelvane
