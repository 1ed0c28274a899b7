// Butterworth filters: their gain, from the response to an impulse, compared with the closed forms |H|^2 = 1
// / (1 + r^-2n) and 1 / (1 + q^2n). r and q are the ratios of the warped frequencies.
#include "numerics/butterworth.h"

#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <limits>
#include <numbers>
#include <random>
#include <vector>

namespace zelvane {
namespace {

constexpr double Rate = 100000.0;
constexpr std::size_t ImpulseAt = 100;  // after the first sample, which sets the level at the start

double Warp(double hz) {
  return std::tan(std::numbers::pi * hz / Rate);
}

/// Returns the gain at a frequency from the response to an impulse.
double GainOf(const std::vector<double>& response, double hz) {
  std::complex<double> sum = 0.0;
  for (std::size_t i = 0; i < response.size(); ++i) {
    sum += response[i] * std::polar(1.0, -2.0 * std::numbers::pi * hz / Rate * static_cast<double>(i));
  }
  return std::abs(sum);
}

std::vector<double> Impulse(std::size_t size) {
  std::vector<double> samples(size);
  samples[ImpulseAt] = 1.0;
  return samples;
}

TEST(ButterworthTest, TheHighPassHasItsCornerAndItsSlope) {
  for (const int order : {2, 4, 8}) {
    for (const double corner : {100.0, 4000.0, 40000.0}) {
      std::vector<double> response = Impulse(1 << 16);
      Bw_HPF(response, Rate, corner, order, response);
      for (const double hz : {corner / 4.0, corner / 2.0, corner, 1.1 * corner}) {
        SCOPED_TRACE(hz);
        const double gain = 1.0 / std::sqrt(1.0 + std::pow(Warp(corner) / Warp(hz), 2 * order));
        EXPECT_NEAR(GainOf(response, hz), gain, 1e-6 * gain + 1e-12) << corner << " Hz, order " << order;
      }
    }
  }
}

TEST(ButterworthTest, TheBandPassHasBothCornersAndBothSlopes) {
  using Band = std::pair<double, double>;
  for (const auto& [lowHz, highHz] : {Band{20.0, 4000.0}, Band{1000.0, 1200.0}, Band{3000.0, 45000.0}}) {
    std::vector<double> response = Impulse(1 << 18);
    Bw_BPF(response, Rate, lowHz, highHz, 8, response);
    const double low = Warp(lowHz);
    const double high = Warp(highHz);
    for (const double hz :
         {lowHz / 2.0, lowHz, std::sqrt(lowHz * highHz), highHz, std::min(1.5 * highHz, 49000.0)}) {
      SCOPED_TRACE(hz);
      const double w = Warp(hz);
      const double q = (w * w - low * high) / (w * (high - low));
      const double gain = 1.0 / std::sqrt(1.0 + std::pow(q, 16));
      EXPECT_NEAR(GainOf(response, hz), gain, 1e-5 * gain + 1e-12) << lowHz << " to " << highHz;
    }
  }
}

TEST(ButterworthTest, ACornerAMillionthOfTheRateStaysExact) {
  // At the corner the eighth-order filter turns the phase by a full circle. The response to a slow sine
  // becomes 1 / sqrt(2) of the sine.
  const double hz = 0.1;
  std::vector<double> sine(4'000'000);
  for (std::size_t i = 0; i < sine.size(); ++i) {
    sine[i] = std::sin(2.0 * std::numbers::pi * hz / Rate * static_cast<double>(i));
  }
  std::vector<double> filtered(sine.size());
  Bw_HPF(sine, Rate, hz, 2, filtered);
  double largest = 0.0;
  for (std::size_t i = 3'000'000; i < filtered.size(); ++i)
    largest = std::max(largest, std::abs(filtered[i]));
  EXPECT_NEAR(largest, std::numbers::sqrt2 / 2.0, 1e-3);
}

TEST(ButterworthTest, StartsInTheStateThatTheFirstSampleWouldHaveLeft) {
  std::vector<double> samples(5000, -80.0);
  Bw_HPF(samples, Rate, 1.0, 8, samples);
  for (const double x : samples) ASSERT_NEAR(x, 0.0, 1e-9);
  samples.assign(5000, -80.0);
  Bw_BPF(samples, Rate, 0.0, 4000.0, 8, samples);  // a low-pass filter
  for (const double x : samples) ASSERT_NEAR(x, -80.0, 1e-9);
}

TEST(ButterworthTest, InPlaceGivesWhatTwoArraysGiveForAnyLength) {
  std::mt19937 random(11);
  std::normal_distribution<double> normal;
  for (const std::size_t size : {0U, 1U, 2U, 3U, 7U, 8U, 2047U, 2048U, 2049U, 5000U}) {
    std::vector<double> in(size);
    for (double& x : in) x = normal(random);
    std::vector<double> out(size);
    std::vector<double> longer = in;
    longer.resize(size + 3000, 1.0);
    Bw_BPF(in, Rate, 100.0, 4000.0, 8, out);
    Bw_BPF(longer, Rate, 100.0, 4000.0, 8, longer);
    Bw_BPF(in, Rate, 100.0, 4000.0, 8, in);
    EXPECT_EQ(in, out) << size;
    EXPECT_TRUE(std::equal(in.begin(), in.end(), longer.begin())) << size;
  }
}

TEST(ButterworthTest, CornersThatAreNoneSetNoLimitAndAnEmptyBandIsSilent) {
  constexpr double Nan = std::numeric_limits<double>::quiet_NaN();
  constexpr double Infinite = std::numeric_limits<double>::infinity();
  const std::vector<double> in = {1.0, 3.0, -2.0, 5.0, 4.0};
  const std::vector<double> silent(in.size());
  std::vector<double> out(in.size());
  std::vector<double> expected(in.size());
  for (const double corner : {0.0, -1.0, Nan}) {
    Bw_HPF(in, Rate, corner, 8, out);
    EXPECT_EQ(out, in) << corner;
  }
  for (const double corner : {50000.0, 60000.0, Infinite}) {
    Bw_HPF(in, Rate, corner, 8, out);
    EXPECT_EQ(out, silent) << corner;
    Bw_BPF(in, Rate, 100.0, corner, 8, out);
    Bw_HPF(in, Rate, 100.0, 8, expected);
    EXPECT_EQ(out, expected) << corner;
  }
  for (const double high : {100.0, 50.0, 0.0, -1.0}) {
    Bw_BPF(in, Rate, 100.0, high, 8, out);
    EXPECT_EQ(out, silent) << high;
  }
  for (const double rate : {0.0, -1.0, Nan, Infinite}) {
    Bw_HPF(in, rate, 100.0, 8, out);
    EXPECT_EQ(out, in) << rate;
  }
  for (const int order : {-2, 0, 3, 10}) {
    Bw_BPF(in, Rate, 100.0, 4000.0, order, out);
    EXPECT_EQ(out, in) << order;
  }
}

}  // namespace
}  // namespace zelvane
