// Actions whose memory runs out at any of their allocations.
#include <sstream>

#include "headless/drive/drive_session.h"
#include "screen/memory_guard.h"
#include "support/drive_test.h"
#include "support/failing_allocation.h"
#include "support/store_digest.h"

namespace zelvane {
namespace {

class MemoryTest : public DriveTest {
 protected:
  /// Runs lines in the running program. At the allocation number `number` among those of `least` bytes or more
  /// the memory is used up; 0 = never. Returns whether it was.
  bool Play(const std::string& line, long number = 0, std::size_t least = 0, bool reserveIsUsed = true) {
    KeepMemoryReserve();
    DriveSession session;
    std::ostringstream out(std::string(1 << 20, ' '));  // has room, so that the stream itself does not fail
    session.out = &out;
    SetFrontEnd(DriveFrontEnd(session, {}));
    std::istringstream in(line);
    Failing = {.left = number, .least = least, .reserveIsUsed = reserveIsUsed};
    RunLines(session, in);
    Failing.left = 0;
    Failing.usedUp = false;
    told = out.str().substr(0, static_cast<std::size_t>(out.tellp()));
    SetFrontEnd({});
    return Failing.failed;
  }

  std::string told;
};

/// Returns every setting, with its value, but not the length, which a recording brings along.
std::string SettingsNow() {
  return StoreDigest([](const Field& field) {
    return field.kind.role == FieldRole::Setting && field.name != "NumPoints" && field.name != "ADInterval";
  });
}

struct MemoryCase {
  std::string setup;
  std::string action;
  std::string mend = "";  // what the user does before the next try
};

TEST_F(MemoryTest, AnActionWithoutMemoryIsToldAndCanBeRepeated) {
  const std::string model = "open " ZELVANE_DATA "/models/ampa_jonas_1993.mod; enter NumPoints 300";
  const std::string trace = "open " + Recordings + "abf2/18702001-step.abf";
  const std::string anew = "enter EpisodeIndex 1\nanswer yes\npress AN_ClearTable";
  const std::string noFit = "enter FitMode 0; ";  // its random starts go on from those of the failed try
  const MemoryCase cases[] = {
      {model, "press AcquireData"},
      {model + "; enter SimulatorKind 1", "press AcquireData"},
      {model + "; enter SimulatorKind 2", "press AcquireData"},
      {"enter NumPoints 300", model.substr(0, model.find(';'))},
      {"enter NumPoints 300", "reply ok\n" + trace},
      {"enter NumPoints 300", "answer yes\nopen " + Recordings + "atf/18702001-step.atf"},
      {noFit + "reply ok; " + trace, "press AN_AnalyzeNextButton", anew},
      {noFit + "reply ok; " + trace, "press AN_AutoAnalyzeButton", anew},
      {model + "; press AcquireData", "press FxnFillTable"},
      {model + "; press AcquireData; enter AutoFilterFc 5", "press FxnApplyFilter"},
      {model + "; enter VHold -20", "press FxnUndo"},
      {model, "press FxnRecalculateQ"},
  };
  for (const auto& [setup, action, mend] : cases) {
    Run(setup);
    Play(action);
    EXPECT_EQ(told.find("rror"), std::string::npos) << told;
    const std::string undisturbed = StoreDigest();
    for (const std::size_t least : {std::size_t{0}, std::size_t{4096}}) {
      for (long number = 1; number < 1'000'000; number += number / 2 + 1) {
        SCOPED_TRACE(action + ", allocation " + std::to_string(number) + " of " + std::to_string(least));
        Run(setup);
        const std::string before = SettingsNow();
        if (!Play(action, number, least)) break;
        EXPECT_NE(told.find("! Error"), std::string::npos) << told;
        EXPECT_EQ(Screen.busy, 0);
        const bool isDone = told.find("undoing or recording") != std::string::npos;
        EXPECT_TRUE(isDone || SettingsNow() == before) << told;
        const bool undone = action == "press FxnUndo" && SettingsNow() != before;  // only its record failed
        if (!undone) Play(mend + '\n' + action);
        EXPECT_EQ(StoreDigest(), undisturbed) << told;
      }
    }
  }
}

TEST_F(MemoryTest, TheReserveIsEnoughForSmallAllocations) {
  const std::string action = "panels\ncontrol VHold\ngraph MainPanel\nget KOn\nenter NumPoints 0\nhelp VHold";
  Run("open " ZELVANE_DATA "/models/ampa_jonas_1993.mod");
  Play(action);
  const std::string undisturbed = told;
  for (long number = 1; Play(action, number, 0, false); number += number / 40 + 1) {
    EXPECT_EQ(told, undisturbed) << number;
  }
}

}  // namespace
}  // namespace zelvane
