
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <random>

#include "numerics/plain_convolution.h"

namespace zelvane {
namespace {

// Coefficients calculated by hand for an interval of 0.01 ms: corner 2, 10 and 50 kHz.
TEST(GaussianKernelTest, KernelsHaveTheirWorkedCoefficientsAndUnitSum) {
  using Case = std::tuple<float, int, double, double>;
  for (const auto& [corner, half, a0, a1] :
       {Case{0.02F, 26, 0.060219, 0.059537}, Case{0.1F, 5, 0.301084, 0.226470},
        Case{0.5F, 1, 0.929770, 0.035115}, Case{0.0006F, 883, 0.0, 0.0}}) {
    SCOPED_TRACE(corner);
    const GaussianKernel kernel = MakeGaussianKernel(corner);
    EXPECT_EQ(kernel.half, half);
    if (a0 > 0.0) {
      EXPECT_NEAR(kernel.coefficient[0], a0, 1e-6);
      EXPECT_NEAR(kernel.coefficient[1], a1, 1e-6);
    }
    double sum = kernel.coefficient[0];
    for (int i = 1; i <= half; ++i) sum += 2.0 * kernel.coefficient[static_cast<std::size_t>(i)];
    EXPECT_NEAR(sum, 1.0, 1e-5);
  }
  EXPECT_GT(MakeGaussianKernel(0.0005F).half, MaxKernelHalf);
}

TEST(GaussianKernelTest, SumsSideBySideEqualThePlainSumsBitForBit) {
  std::mt19937 random(7);
  std::normal_distribution<float> normal;
  constexpr float Infinite = std::numeric_limits<float>::infinity();
  // Around groups of 32 and 64 sums and blocks of 4096, for 1, 5, 26 and 883 coefficients on each side.
  for (const float corner : {0.5F, 0.1F, 0.02F, 0.0006F}) {
    const GaussianKernel kernel = MakeGaussianKernel(corner);
    for (const int sums : {0, 1, 31, 32, 33, 63, 65, 4095, 4096, 4097, 9000}) {
      std::vector<float> in(static_cast<std::size_t>(sums + 2 * kernel.half));
      for (float& sample : in) sample = normal(random);
      if (sums % 2 == 1) in[in.size() / 2] = in.back() = corner > 0.05F ? Infinite : std::nanf("");
      std::vector<float> plain = in;
      std::vector<float> fast = in;
      PlainConvolve(plain, kernel);
      ConvolveInPlace(fast, kernel);
      for (std::size_t i = 0; i < in.size(); ++i) {
        const bool noNumber = std::isnan(fast[i]) && std::isnan(plain[i]);
        ASSERT_TRUE(noNumber || std::memcmp(&fast[i], &plain[i], sizeof(float)) == 0) << corner << ", " << i;
      }
    }
  }
}

}  // namespace
}  // namespace zelvane
