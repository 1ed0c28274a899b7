// The registry of store fields: names, bounds, and the values that fields accept.
#include "screen/fields.h"

#include "run/result_store.h"
#include "support/store_test.h"

namespace zelvane {
namespace {

using FieldsTest = StoreTest;

TEST_F(FieldsTest, FindsNothingBeyondAFieldsBounds) {
  for (const char* name :
       {"KOn[0]", "KOn[32]", "KOn", "KOn[1", "KOn[x]", "KOn[1]x", "KOn[1][1]", "KOn[99999999999]",
        "TableRate[0][1]", "TableRate[21][1]", "DrugProfile[1][5000001]", "DrugProfile[0][1]", "", "[1]",
        "NoSuchField", "KOn[-1]"}) {
    EXPECT_FALSE(FindField(name)) << name;
  }
}

TEST_F(FieldsTest, AnElementHasTheNameThatFindsIt) {
  for (const auto& [key, field] : AllFields()) {
    for (const bool last : {false, true}) {
      std::string name = key;
      for (std::size_t k = 0; k < static_cast<std::size_t>(field.rank); ++k) {
        const int index = last ? field.index[k].last : field.index[k].first;
        name.insert(name.find("[]") + 1, std::to_string(index));
      }
      ASSERT_EQ(NameOfElement(FindField(name)), name);
    }
  }
}

TEST_F(FieldsTest, RunsAlongTheIndexThatIsLeftOut) {
  const FieldRun row = FindFieldRun("Occupancy[3]");
  ASSERT_TRUE(row);
  Result.Occupancy[3][5] = 0.5F;
  EXPECT_EQ(FieldNumber(RunElement(row, 5)), 0.5);
  EXPECT_TRUE(FindField("DrugProfile[6][5000000]"));
  EXPECT_TRUE(FindFieldRun("KOn"));
  EXPECT_TRUE(FindFieldRun("RateConstraint.value"));
  EXPECT_FALSE(FindFieldRun("NumPoints"));
  EXPECT_FALSE(FindFieldRun("Occupancy[21]"));
}

TEST_F(FieldsTest, RefusesWhatDoesNotSuitTheType) {
  using Case = std::tuple<const char*, const char*, bool>;
  for (const auto& [name, text, taken] :
       {Case{"NumPoints", "1e5", true}, Case{"NumPoints", "2.5", false},
        Case{"NumPoints", "3000000000", false}, Case{"NumPoints", "", false},
        Case{"NumPoints", "12 points", false}, Case{"ADInterval", "nan", false},
        Case{"ADInterval", "inf", false}, Case{"ADInterval", "1e39", false},
        Case{"ADInterval", " +2.5e-3 ", true}, Case{"KOn[1]", "1e999", false}, Case{"KOn[1]", "1e300", false},
        Case{"KOn[1]", "1e-999", true}, Case{"AnalysisTolerance", "1e300", true}}) {
    SCOPED_TRACE(std::string(name) + " <- " + text);
    const FieldRef field = FindField(name);
    const std::string before = FieldText(field);
    EXPECT_EQ(SetFieldText(field, text), taken);
    if (!taken) {
      EXPECT_EQ(FieldText(field), before);
    }
  }
}

TEST_F(FieldsTest, CutsTextsToTheirRoomAndLine) {
  ASSERT_TRUE(SetFieldText(FindField("StateLabel[1]"), "open\nclosed"));
  EXPECT_EQ(Model.StateLabel[1], "open");
  ASSERT_TRUE(SetFieldText(FindField("StateLabel[1]"), std::string(50, 'x')));
  EXPECT_EQ(Model.StateLabel[1].size(), StateLabelBytes - 1U);
  using Case = std::pair<const char*, const char*>;
  for (const auto& [text, kept] : {Case{"Zustand \xC3\xB6 offen ganz", "Zustand \xC3\xB6 offen ga"},
                                   Case{"eighteen characters\xC3\xB6", "eighteen characters"},
                                   Case{"eighteen character\xC3\xB6", "eighteen character"},
                                   Case{"17 characters abc\xE2\x82\xAC", "17 characters abc"},
                                   Case{"16 characters ab\xE2\x82\xAC"
                                        "x",
                                        "16 characters ab\xE2\x82\xAC"},
                                   Case{"16 characters ab\xF0\x9F\x98\x80", "16 characters ab"},
                                   Case{"short \xC3\xB6", "short \xC3\xB6"}}) {
    EXPECT_EQ(CutToRoom(text, StateLabelBytes), kept);
  }
}

}  // namespace
}  // namespace zelvane
