// The rules for entering dwells into lists, with short lists.
#include "kinetics/dwell_recorder.h"

#include <gtest/gtest.h>

#include <vector>

namespace zelvane {
namespace {

/// State 1 is closed, states 2 and 3 are open; state 3 has class 3.
class DwellRecorderTest : public ::testing::Test {
 protected:
  explicit DwellRecorderTest(std::size_t room = 8, std::size_t events = 12)
      : room_(3 * room), events_(2 * events) {
    const std::span<float> lists = room_;
    filled.openTimes = lists.subspan(0, room);
    filled.closedTimes = lists.subspan(room, room);
    filled.latencies = lists.subspan(2 * room, room);
    filled.idealDuration = std::span(events_).first(events);
    filled.idealClass = std::span(events_).last(events);
    recorder.monitored[2] = recorder.monitored[3] = 1;
    recorder.openClass = {0, 1, 2, 3};
    ClearDwells(recorder);
  }

  /// Records one sweep of consecutive dwells.
  void Sweep(const std::vector<std::pair<int, float>>& dwells) {
    StartSweepRecord(recorder);
    float t = 0.0F;
    for (const auto& [state, d] : dwells) {
      RecordDwell(recorder, state, t, d);
      t += d;
    }
  }

  static std::vector<float> Entries(std::span<const float> list, int count) {
    return {list.begin(), list.begin() + static_cast<std::ptrdiff_t>(count)};
  }
  std::vector<float> Open() const { return Entries(filled.openTimes, filled.numOpenTimes); }
  std::vector<float> Closed() const { return Entries(filled.closedTimes, filled.numClosedTimes); }
  std::vector<float> Latencies() const { return Entries(filled.latencies, filled.numLatencies); }

  DwellRecorder recorder{};
  DwellLists& filled = recorder.lists;

 private:
  std::vector<float> room_;
  std::vector<float> events_;
};

using Floats = std::vector<float>;

TEST_F(DwellRecorderTest, AnOpeningIsOneEntryAndItsStatesAreDwellsOfTheRecord) {
  Sweep({{1, 4.0F}, {2, 1.0F}, {3, 2.0F}, {1, 8.0F}, {1, 1.0F}, {3, 0.5F}, {1, 9.0F}});
  EndRecord(recorder);
  EXPECT_EQ(Open(), (Floats{3.0F, 0.5F}));
  EXPECT_EQ(Closed(), (Floats{9.0F}));  // the closed time after the last opening is not stored
  EXPECT_EQ(Latencies(), (Floats{4.0F}));
  EXPECT_EQ(filled.numIdealEvents, 5);
  EXPECT_EQ(Entries(filled.idealDuration, 6), (Floats{1.0F, 1.0F, 2.0F, 9.0F, 0.5F, 5.0F}));
  EXPECT_EQ(Entries(filled.idealClass, 6), (Floats{SegmentMarker, 2.0F, 3.0F, ClosedClass, 3.0F, RecordEnd}));
}

TEST_F(DwellRecorderTest, AChannelThatStartsOpenGoesOnWithTheOpeningThatEndedTheFormerSweep) {
  Sweep({{2, 1.0F}});
  EndRecord(recorder);
  Sweep({{2, 4.0F}, {1, 1.0F}});
  EXPECT_EQ(Open(), (Floats{5.0F}));
  EXPECT_EQ(Latencies(), (Floats{0.0F, 0.0F}));
  EXPECT_EQ(filled.idealClass[2], SegmentMarker);  // instead of the end marker
  EXPECT_EQ(filled.idealDuration[2], 2.0F);
  ClearDwells(recorder);
  Sweep({{2, 7.0F}});
  EXPECT_EQ(Open(), (Floats{7.0F}));
}

class FullDwellRecorderTest : public DwellRecorderTest {
 protected:
  FullDwellRecorderTest() : DwellRecorderTest(2, 3) {}
};

TEST_F(FullDwellRecorderTest, FullListsStayAsTheyAreAndTheRecordOnlyCounts) {
  Sweep({{2, 1.0F}, {1, 1.0F}, {2, 2.0F}, {3, 5.0F}, {1, 1.0F}, {2, 4.0F}});
  EXPECT_EQ(Open(), (Floats{1.0F, 2.0F}));  // the list was full before state 3 would extend its last entry
  EXPECT_EQ(Closed(), (Floats{1.0F}));
  EXPECT_EQ(filled.numIdealEvents, 4);
  EndRecord(recorder);
  Sweep({{1, 1.0F}});
  EXPECT_EQ(filled.numIdealEvents, 4);  // no marker either
  EXPECT_EQ(filled.segmentCounter, 2);
  for (int sweep = 0; sweep < 3; ++sweep) Sweep({{2, 1.0F}});
  EXPECT_EQ(Latencies().size(), 2U);
  EXPECT_TRUE(recorder.opened);  // the channel has still reached a monitored state
}

}  // namespace
}  // namespace zelvane
