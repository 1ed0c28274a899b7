// Numbers as people type them.
#include "screen/number_entry.h"

#include <gtest/gtest.h>

namespace zelvane {
namespace {

TEST(NumberEntry, TakesBothDecimalMarksAndPrefixesOfTheFieldsUnit) {
  struct Case {
    const char* text;
    const char* unit;
    double value;
  };
  for (const Case& c :
       {Case{"2.5", "ms", 2.5}, Case{"2,5", "ms", 2.5}, Case{" -1e-3 ", "", -1e-3}, Case{"1m", "M", 1e-3},
        Case{"1 mM", "M", 1e-3}, Case{"10 uM", "M", 1e-5}, Case{"10\xC2\xB5M", "M", 1e-5},
        Case{"2 nA", "pA", 2000.0}, Case{"1,5n", "pA", 1500.0}, Case{"-0.06 V", "mV", -60.0},
        Case{"-60 mV", "mV", -60.0}, Case{"-60m", "V", -0.06}, Case{"3 M", "M", 3.0}, Case{"1e2n", "M", 1e-7},
        Case{"25 pS", "pS", 25.0}, Case{"2m", "V or M", 2e-3}, Case{"5 uM", "V or M", 5e-6},
        Case{"20 mV", "V or M", 0.02}}) {
    SCOPED_TRACE(std::string(c.text) + " in " + c.unit);
    const auto value = ParseEntry(c.text, c.unit);
    ASSERT_TRUE(value);
    EXPECT_DOUBLE_EQ(*value, c.value);
  }
}

TEST(NumberEntry, RefusesWhatCanMeanTwoThingsOrNothing) {
  struct Case {
    const char* text;
    const char* unit;
  };
  for (const Case& c :
       {Case{"", ""}, Case{"1,000.5", ""}, Case{"1.000,5", ""}, Case{"1,2,3", ""}, Case{"five", ""},
        Case{"1m", "ms"}, Case{"1k", "kHz"}, Case{"1 mV", "M"}, Case{"1mm", "M"}, Case{"--1", ""},
        Case{"1e", ""}, Case{"m", "M"}, Case{"1 2", ""}, Case{"1.2.3", ""}}) {
    EXPECT_FALSE(ParseEntry(c.text, c.unit)) << c.text << " in " << c.unit;
  }
}

}  // namespace
}  // namespace zelvane
