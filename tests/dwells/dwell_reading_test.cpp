// Dwells of recordings become lists: imposed resolution, pooling, conditional openings, limits. Durations are
// binary fractions, so that sums are exact.
#include "dwells/dwell_reading.h"

#include <vector>

#include "dwells/dwell_store.h"
#include "support/store_test.h"

namespace zelvane {
namespace {

using Segments = std::vector<std::vector<RecordedDwell>>;

SegmentSource From(const Segments& segments) {
  return [&segments, next = std::size_t{0}]() mutable -> std::optional<std::span<const RecordedDwell>> {
    if (next == segments.size()) return std::nullopt;
    return segments[next++];
  };
}

/// Resolutions of 0.25 ms, both inclusive.
class DwellReadingTest : public StoreTest {
 protected:
  DwellReadingTest() { Dwell.ResolutionOpen = Dwell.ResolutionClosed = 0.25F; }

  static void Read(const Segments& segments, bool clearFirst = true) {
    ReadDwellsWithResolution(From(segments), clearFirst);
  }
  static void ReadConditional(const Segments& segments) { ReadConditionalOpens(From(segments)); }

  static Floats Open() { return First(Dwell.OpenTimes, Dwell.NumOpenTimes); }
  static Floats Closed() { return First(Dwell.ClosedTimes, Dwell.NumClosedTimes); }
  static Floats First(std::span<const float> list, float count) {
    return {list.begin(), list.begin() + static_cast<std::ptrdiff_t>(count)};
  }
};

TEST_F(DwellReadingTest, ImposesTheResolutionOnEachKind) {
  using Case = std::tuple<const char*, Segments, Floats, Floats>;
  for (const auto& [what, segments, open, closed] : {
           Case{"a short closing belongs to the opening", {{{1, 2}, {0, 0.125F}, {1, 4}}}, {6.125F}, {}},
           Case{"a short opening belongs to the closing", {{{0, 2}, {1, 0.125F}, {0, 4}}}, {}, {6.125F}},
           Case{"the resolution itself is accepted", {{{1, 0.25F}, {0, 0.25F}, {1, 1}}}, {0.25F, 1}, {0.25F}},
           Case{"a short dwell that begins a segment is dropped", {{{1, 2}}, {{0, 0.125F}, {1, 4}}}, {6}, {}},
           Case{"a short dwell before any other is dropped", {{{0, 0.125F}, {1, 0.125F}, {0, 1}}}, {}, {1}},
           Case{"the kind goes on across segments",
                {{{0, 1}, {1, 2}}, {{1, 0.125F}, {0, 1}}},
                {2.125F},
                {1, 1}},
           Case{"classes do not part openings", {{{1, 1}, {3, 2}, {9, 4}}}, {7}, {}},
           Case{"negative classes are closed", {{{1, 1}, {-2, 2}}}, {1}, {2}},
           Case{"empty segments", {{}, {{1, 1}}, {}}, {1}, {}},
       }) {
    SCOPED_TRACE(what);
    Read(segments);
    EXPECT_EQ(Open(), open);
    EXPECT_EQ(Closed(), closed);
    EXPECT_EQ(First(Dwell.RawOpenTimes, static_cast<float>(Dwell.NumRawOpenTimes)), open);
  }
  EXPECT_TRUE(popups.empty());
}

TEST_F(DwellReadingTest, KeepsEveryOpeningOfAClassAsItIs) {
  Dwell.OpenListSelector = 3;
  Read({{{1, 0.125F}, {2, 1}, {0, 0.125F}, {5, 2}, {6, 4}}, {{2, 8}}});
  EXPECT_EQ(First(Dwell.ClassOpenTimes[1], static_cast<float>(Dwell.NumClassOpenTimes[1])), Floats{0.125F});
  EXPECT_EQ(First(Dwell.ClassOpenTimes[2], static_cast<float>(Dwell.NumClassOpenTimes[2])), (Floats{1, 8}));
  EXPECT_EQ(First(Dwell.ClassOpenTimes[5], static_cast<float>(Dwell.NumClassOpenTimes[5])), Floats{2});
  EXPECT_EQ(Dwell.OpenListSelector, 0);
  Read({});
  EXPECT_EQ(Dwell.NumClassOpenTimes[2], 0);
}

TEST_F(DwellReadingTest, PoolsRecordingsUnlessItClearsFirst) {
  Read({{{0, 1}, {1, 2}}});
  Read({{{1, 4}, {0, 8}}}, false);
  EXPECT_EQ(Open(), Floats{6});  // the opening continues
  EXPECT_EQ(Closed(), (Floats{1, 8}));
  Read({{{1, 1}}});
  EXPECT_EQ(Open(), Floats{1});
  EXPECT_EQ(Dwell.ClosedTimes[1], 0.0F) << "cleared beyond the count";
  Dwell.NumOpenTimes = 0;  // a simulation without openings keeps the kind
  Read({{{1, 2}}}, false);
  EXPECT_EQ(Open(), Floats{2});
}

TEST_F(DwellReadingTest, TakesOpeningsNextToClosedTimesOfTheCondition) {
  Dwell.CondClosedMin = 0.5F;
  Dwell.CondClosedMax = 1.0F;
  Dwell.CondOpenResolution = 0.125F;
  const Segments segments{{{1, 1}, {0, 0.5F}, {1, 2}, {0, 1}, {1, 4}, {0, 0.75F}, {1, 0.125F}, {2, 8}},
                          {{1, 16}, {0, 0.75F}, {0, 0.25F}, {1, 32}}};
  Dwell.NumClosedTimes = 7;
  ReadConditional(segments);  // openings after
  EXPECT_EQ(Open(), (Floats{2, 8}));
  Dwell.CondUsePreceding = 0;  // openings before
  ReadConditional(segments);
  EXPECT_EQ(Open(), (Floats{1, 4, 16}));
  ReadConditional({{{1, 3}}, {{0, 0.75F}}});
  EXPECT_EQ(Open(), Floats{3}) << "the opening is remembered across segments";
  EXPECT_EQ(Dwell.NumRawOpenTimes, 1);
  EXPECT_EQ(Dwell.NumClosedTimes, 7);
  Dwell.CondUsePreceding = 1;
  ReadConditional({{{0, 0.75F}}, {{1, 3}}});
  EXPECT_TRUE(Open().empty()) << "the closed time is not";
}

TEST_F(DwellReadingTest, StopsAtFullListsWithAWarning) {
  constexpr char Text[] =
      "You have tried to read more than the allowed number of openings; please contact Orvenhall to have "
      "this "
      "limit increased.";
  std::vector<RecordedDwell> dwells;
  for (int i = 0; i < MaxFileDwells; ++i) dwells.insert(dwells.end(), {{1, 1.0F}, {0, 1.0F}});
  Read({dwells});
  EXPECT_EQ(Dwell.NumOpenTimes, 999'999.0F);
  EXPECT_EQ(Dwell.NumClosedTimes, 999'999.0F);
  EXPECT_TRUE(popups.empty()) << "an exact fit is no overflow";
  Read({{{1, 1}}}, false);
  EXPECT_EQ(popups, (std::vector<SeenPopup>{{"! Warning", Text}}));
  ReadConditional({{{0, 0.5F}, {1, 1}}});
  EXPECT_EQ(Dwell.NumOpenTimes, 0.0F) << "the closed times are full";
  dwells.insert(dwells.end(), {{1, 1.0F}, {0, 1.0F}, {1, 1.0F}});
  popups.clear();
  Read({dwells, {{1, 1}}});
  EXPECT_EQ(popups.size(), 1U);
  EXPECT_EQ(Dwell.NumOpenTimes, 999'999.0F);
  EXPECT_EQ(Dwell.NumRawOpenTimes, 999'999);
  EXPECT_EQ(Dwell.OpenTimes[999'999], 0.0F);
}

}  // namespace
}  // namespace zelvane
