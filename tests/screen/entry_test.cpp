// Typed numbers, short numbers and blocks of numbers.
#include "screen/entry.h"

#include "model/scheme_text.h"
#include "screen/number_entry.h"
#include "support/store_test.h"

namespace zelvane {
namespace {

TEST(NumberEntry, TakesBothDecimalMarksAndPrefixesOfTheFieldsUnit) {
  using Case = std::tuple<const char*, const char*, double>;
  for (const auto& [text, unit, expected] :
       {Case{"2.5", "ms", 2.5}, Case{"2,5", "ms", 2.5}, Case{" -1e-3 ", "", -1e-3}, Case{"1m", "M", 1e-3},
        Case{"1 mM", "M", 1e-3}, Case{"10 uM", "M", 1e-5}, Case{"10\xC2\xB5M", "M", 1e-5},
        Case{"2 nA", "pA", 2000.0}, Case{"1,5n", "pA", 1500.0}, Case{"-0.06 V", "mV", -60.0},
        Case{"-60 mV", "mV", -60.0}, Case{"-60m", "V", -0.06}, Case{"3 M", "M", 3.0}, Case{"1e2n", "M", 1e-7},
        Case{"25 pS", "pS", 25.0}, Case{"2m", "V or M", 2e-3}, Case{"5 uM", "V or M", 5e-6},
        Case{"20 mV", "V or M", 0.02}}) {
    SCOPED_TRACE(std::string(text) + " in " + unit);
    const auto value = ParseEntry(text, unit);
    ASSERT_TRUE(value);
    EXPECT_DOUBLE_EQ(*value, expected);
  }
}

TEST(NumberEntry, RefusesWhatCanMeanTwoThingsOrNothing) {
  using Case = std::pair<const char*, const char*>;
  for (const auto& [text, unit] :
       {Case{"", ""}, Case{"1,000.5", ""}, Case{"1.000,5", ""}, Case{"1,2,3", ""}, Case{"five", ""},
        Case{"1m", "ms"}, Case{"1k", "kHz"}, Case{"1 mV", "M"}, Case{"1mm", "M"}, Case{"--1", ""},
        Case{"1e", ""}, Case{"m", "M"}, Case{"1 2", ""}, Case{"1.2.3", ""}}) {
    EXPECT_FALSE(ParseEntry(text, unit)) << text << " in " << unit;
  }
}

using EntryTest = PanelTest;

TEST_F(EntryTest, ATypedNumberIsReadInTheUnitOfItsControl) {
  EXPECT_EQ(EnterTyped(ControlNamed("VHold"), "-0,06 V"), "");  // a field of mV
  EXPECT_EQ(Model.VHold, -60.0F);
  EXPECT_EQ(EnterTyped(ControlNamed("KOn[1]"), "1.5e6"), "");
  EXPECT_EQ(Model.KOn[1], 1.5e6);
}

TEST_F(EntryTest, NothingIsTypedWhileARunIsInProgress) {
  Screen.busy = 1;
  EXPECT_EQ(EnterTyped(ControlNamed("KOn[1]"), "5"), "a run is in progress");
  EXPECT_EQ(ControlNamed("KOn[1]").number, 0.0);
  EXPECT_EQ(EnterBlock({{1.0}}, 1, 2, [](int, int) { return &ControlNamed("KOn[1]"); }),
            "a run is in progress");
}

TEST(ShortNumbers, OrdinaryRatesHaveNoExponentAndOthersNoPaddingInIt) {
  using Case = std::tuple<double, const char*, const char*>;
  for (const auto& [value, compact, rate] :
       {Case{0.0, "0", "0"}, Case{880.0, "880", "880"}, Case{0.7271, "0.7271", "0.7271"},
        Case{12345.6, "1.235e4", "12346"}, Case{9999.9, "1e4", "10000"}, Case{123456.0, "1.235e5", "1.23e5"},
        Case{4.59e6, "4.59e6", "4.59e6"}, Case{0.001234, "0.001234", "0.00123"},
        Case{-2e-5, "-2e-5", "-2e-5"}, Case{1.234e-5, "1.234e-5", "1.23e-5"},
        Case{1e100, "1e100", "1e100"}}) {
    EXPECT_EQ(CompactNumber(value), compact);
    EXPECT_EQ(RateText(value), rate);
  }
}

TEST(ParseBlock, ReadsWhatSpreadsheetsGive) {
  Refusal refusal;
  const auto block = ParseBlock("1\t2,5\t\r\n\t-3e2\t 4\r\n", "/s", refusal);
  ASSERT_TRUE(block) << refusal;
  const NumberBlock expected = {{1.0, 2.5, std::nullopt}, {std::nullopt, -300.0, 4.0}};
  EXPECT_EQ(*block, expected);
  EXPECT_FALSE(ParseBlock("1\t2\n3\tinf", "/s", refusal));
  EXPECT_EQ(refusal, "row 2, column 2: \"inf\" is not a number");
}

TEST_F(EntryTest, WordsOfTheSchemeTellDirectionUnitAndDependence) {
  Model.StateLabel[1] = "Rest";
  Model.KOn[1] = 1e8;
  Model.Depend.Drug[1][1][2] = Model.Depend.Drug[3][1][2] = Model.Depend.Volt[1][2] = 1;
  Model.DrugLabel[1] = "ACh";
  EXPECT_EQ(DependenceText(Model.Depend, 1, 2), "ACh, drug 3, V");
  EXPECT_EQ(RateTip(1, true), "K1 on: Rest to state 2\n1e8 /M^2/s\nDepends on ACh, drug 3, V");
  EXPECT_EQ(RateTip(1, false), "K1 off: state 2 to Rest\n0 /s");
  EXPECT_EQ(StateTip(1), "State 1: Rest\noff");
}

}  // namespace
}  // namespace zelvane
