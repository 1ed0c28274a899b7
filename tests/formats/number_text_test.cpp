// Numbers as text, compared with printf in the C locale.
#include "formats/number_text.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <random>
#include <vector>

namespace zelvane {
namespace {

struct Form {
  const char* printed;
  void (*append)(std::string&, double);
};
constexpr Form Forms[] = {
    {"%.6e", AppendExponent}, {"%.6g", AppendGeneral}, {"%.9g", AppendNineDigits}, {"%f", AppendFixed}};

std::string Printed(const Form& form, double value) {
  char buffer[512];
  std::snprintf(buffer, sizeof buffer, form.printed, value);
  return buffer;
}

void ExpectAllForms(double value) {
  for (const Form& form : Forms) {
    std::string text;
    form.append(text, value);
    ASSERT_EQ(text, Printed(form, value)) << form.printed;
  }
}

TEST(NumberTextTest, WritesWhatPrintfWritesForTheNumbersAtEdges) {
  const double infinity = std::numeric_limits<double>::infinity();
  std::vector<double> values{0.0,      infinity, std::nan(""), 1e-5,       9.9999995, 9.99999949999999,
                             999999.5, 999999.4, 1234567.5,    0.00012345, 99999.95,  1e16,
                             0.1,      1e22,     1e23,         1.0 / 3,    2.5e-7,    1.0000005};
  for (const double value : {std::numeric_limits<double>::denorm_min(), std::numeric_limits<double>::min(),
                             std::numeric_limits<double>::max()}) {
    values.push_back(value);
  }
  for (int exponent = -320; exponent <= 308; ++exponent) {
    const double power = std::pow(10.0, exponent);
    values.insert(values.end(), {power, std::nextafter(power, 0.0), std::nextafter(power, infinity)});
  }
  // Ties of six and seven digits, exact in binary.
  for (int i = 0; i < 2000; ++i)
    values.insert(values.end(), {1000000.5 + i, 9999000.5 + i, 100000.5 + i, (i + 0.5) / 8});
  for (const double value : values) {
    ExpectAllForms(value);
    ExpectAllForms(-value);
  }
}

TEST(NumberTextTest, WritesWhatPrintfWritesForAnyBits) {
  std::mt19937_64 random(20240517);
  for (int i = 0; i < 200'000; ++i) {
    const std::uint64_t bits = random();
    ASSERT_NO_FATAL_FAILURE(
        ExpectAllForms(static_cast<double>(std::bit_cast<float>(static_cast<std::uint32_t>(bits)))));
    ASSERT_NO_FATAL_FAILURE(ExpectAllForms(std::bit_cast<double>(bits)));
    ASSERT_NO_FATAL_FAILURE(ExpectAllForms(static_cast<double>(static_cast<std::int32_t>(bits)) / 1000.0));
  }
}

}  // namespace
}  // namespace zelvane
