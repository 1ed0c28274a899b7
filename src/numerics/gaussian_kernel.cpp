#include "numerics/gaussian_kernel.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "platform/index.h"

namespace zelvane {
namespace {

/// sqrt(ln 2) / (2 pi): the standard deviation of a Gaussian kernel, in samples, times the normalised corner.
constexpr float SigmaTimesCorner = 0.132505F;
/// With a smaller standard deviation the kernel is narrower than the distance of two samples, and has three
/// coefficients.
constexpr float NarrowSigma = 0.62F;
constexpr float SigmasCovered = 4.0F;  // the kernel ends here, on each side
constexpr float HalfTheRate = 0.5F;
constexpr int MarginPoints = 10;  // a record must be this much longer than twice the kernel's half

/// Sets three coefficients with the variance of the Gaussian.
void SetNarrowKernel(GaussianKernel& kernel, float sigma) {
  kernel.half = 1;
  kernel.coefficient[1] = sigma * sigma / 2.0F;
  kernel.coefficient[0] = 1.0F - 2.0F * kernel.coefficient[1];
}

void SetSampledKernel(GaussianKernel& kernel, float sigma) {
  const auto sides = std::span(kernel.coefficient).first(Index(kernel.half) + 1);
  const float b = -1.0F / (2.0F * sigma * sigma);
  float sum = 0.5F;
  sides[0] = 1.0F;
  for (std::size_t i = 1; i < sides.size(); ++i) {
    const auto distance = static_cast<float>(i);
    // The double exponential, narrowed: it is the same in all libraries, while their 32-bit ones differ in
    // the last bit.
    sides[i] = static_cast<float>(std::exp(static_cast<double>(b * distance * distance)));
    sum += sides[i];
  }
  for (float& coefficient : sides) coefficient /= 2.0F * sum;
}

}  // namespace

GaussianKernel MakeGaussianKernel(float corner) {
  GaussianKernel kernel;
  const float sigma = SigmaTimesCorner / corner;
  if (sigma < NarrowSigma) {
    SetNarrowKernel(kernel, sigma);
    return kernel;
  }
  constexpr auto beyond = static_cast<float>(MaxKernelHalf + 1);
  kernel.half = static_cast<int>(std::min(SigmasCovered * sigma, beyond));
  if (kernel.half <= MaxKernelHalf) SetSampledKernel(kernel, sigma);
  return kernel;
}

LowPassOutcome GaussianLowPass(std::span<float> trace, float corner, int recordPoints) {
  if (!(corner >= 0.0F)) return LowPassOutcome::NoCorner;  // 0 makes an infinite kernel
  const GaussianKernel kernel = MakeGaussianKernel(corner);
  if (kernel.half > MaxKernelHalf) return LowPassOutcome::TooHeavy;
  // The narrow kernel of three coefficients fits every record.
  if (kernel.half > 1 && 2 * kernel.half + MarginPoints > recordPoints) return LowPassOutcome::TooLight;
  ConvolveInPlace(trace, kernel);
  return corner > HalfTheRate ? LowPassOutcome::Aliased : LowPassOutcome::Filtered;
}

}  // namespace zelvane
