// Words of a line, and suggestions for misspelt names.
#include "headless/words.h"

#include <gtest/gtest.h>

#include "headless/nearest_names.h"
#include "screen/observer.h"

namespace zelvane {
namespace {

using Words = std::vector<std::string>;

TEST(SplitWordsTest, TakesQuotesAndEscapes) {
  using Case = std::pair<const char*, Words>;
  for (const auto& [line, words] :
       {Case{"", {}}, Case{" \t ", {}}, Case{" set  NumPoints\t5 ", {"set", "NumPoints", "5"}},
        Case{R"(set ModelTitle "a b")", {"set", "ModelTitle", "a b"}}, Case{R"(a "")", {"a", ""}},
        Case{R"("say \"no\" \\ C:\x")", {R"(say "no" \ C:\x)"}},
        Case{R"(C:\a\b 5"6)", {R"(C:\a\b)", R"(5"6)"}}}) {
    EXPECT_EQ(SplitWords(line), words) << line;
  }
  EXPECT_FALSE(SplitWords(R"(set ModelTitle "open)"));
  EXPECT_FALSE(SplitWords(R"("ends in a quote that is escaped\")"));
}

TEST(SplitWordsTest, ReadsBackWhatTheRecorderQuotes) {
  for (const std::string word :
       {"plain", "", "two words", "a\"b", "back\\slash", "\\\"", "#1", "tab\there"}) {
    EXPECT_EQ(SplitWords("set X " + QuoteWord(word)), (Words{"set", "X", word})) << word;
  }
}

TEST(NearestNamesTest, SuggestsFamiliesOnceWithTheIndicesThatWereTyped) {
  const Words names{"KOn[1]", "KOn[2]", "KOff[1]", "KOff[2]", "NumPoints", "NumChannels", "TableRate[][]"};
  EXPECT_EQ(NearestNames("KOnn[2]", names), (Words{"KOn[2]", "KOff[2]"}));
  EXPECT_EQ(NearestNames("numpoints", names), (Words{"NumPoints"}));
  EXPECT_EQ(NearestNames("TableRates[1][7]", names), (Words{"TableRate[1][7]"}));
  EXPECT_EQ(NearestNames("TableRates[1", names), (Words{"TableRate[][]"}));
  EXPECT_TRUE(NearestNames("frobnicate", names).empty());
  EXPECT_TRUE(NearestNames(std::string(5000, 'K'), names).empty());
}

}  // namespace
}  // namespace zelvane
