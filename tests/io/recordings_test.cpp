// Recordings of other programs, read as a user reads them, against what those programs read out of them.
#include <algorithm>
#include <cmath>

#include "io/trace_read.h"
#include "io/trace_store.h"
#include "model/model_store.h"
#include "support/drive_test.h"

namespace zelvane {
namespace {

using nlohmann::json;

const std::string Recordings = std::string(ZELVANE_TEST_DATA) + "/recordings/";

/// The rows of the list whose files lie in a folder and bear an extension.
std::vector<json> Rows(std::string_view extension) {
  static const json all = json::parse(ReadWholeFile(Recordings + "expected.json"));
  std::vector<json> rows;
  for (const json& row : all["rows"]) {
    const std::string file = row["file"];
    const bool wanted = !file.starts_with("broken/") && file.ends_with(extension);
    // The list also tells of files that are too large to lie beside it.
    if (wanted && std::filesystem::exists(Recordings + file)) rows.push_back(row);
  }
  EXPECT_FALSE(rows.empty());
  return rows;
}

void CheckTrace(const json& expected, std::size_t count) {
  const std::span<const float> samples = Trace.SimTrace.first(count);
  const double low = expected["min"];
  const double high = expected["max"];
  const double tolerance = 1e-6 * std::max(std::abs(low), std::abs(high));
  for (std::size_t k = 0; k < expected["first5"].size(); ++k) {
    EXPECT_NEAR(samples[k], expected["first5"][k].get<double>(), tolerance);
  }
  EXPECT_NEAR(samples.back(), expected["last"].get<double>(), tolerance);
  EXPECT_NEAR(*std::min_element(samples.begin(), samples.end()), low, tolerance);
  EXPECT_NEAR(*std::max_element(samples.begin(), samples.end()), high, tolerance);
  double sum = 0.0;
  for (const float sample : samples) sum += static_cast<double>(sample);
  EXPECT_NEAR(sum / static_cast<double>(count), expected["mean"].get<double>(), tolerance);
}

class RecordingsTest : public DriveTest {
 protected:
  /// Reads a file by the command of the menu with `answers` queued.
  void Read(const std::string& file, const std::string& queued) {
    Run("choose \"" + Recordings + file + "\"\n" + queued + "press FxnRead\n");
    ASSERT_EQ(Trace.TraceValid, 1) << file;
  }
};

TEST_F(RecordingsTest, EveryChannelOfEveryAbfHoldsWhatOtherProgramsRead) {
  for (const json& row : Rows(".abf")) {
    for (std::size_t place = 0; place < row["channels"]; ++place) {
      SCOPED_TRACE(row["file"].get<std::string>() + FormatText(" channel %zu", place));
      const int channel = row["sampling_sequence"][place];
      Read(row["file"], FormatText("reply Channel %d ok\n", channel));
      EXPECT_EQ(Trace.EpisodeCount, row["sweeps"]);
      EXPECT_EQ(Trace.RecordedChannel, channel);
      EXPECT_EQ(Trace.OperationMode, row["operation_mode"]);
      EXPECT_NEAR(Model.ADInterval, row["sample_interval_ms"].get<double>(), 1e-6);
      for (const auto& [sweep, channels] : row["sweep_values"].items()) {
        GoToEpisode(std::stoi(sweep) + 1);
        ASSERT_EQ(Model.NumPoints, channels[place]["count"]);
        CheckTrace(channels[place], channels[place]["count"]);
      }
    }
  }
}

TEST_F(RecordingsTest, EverySignalOfEveryAtfHoldsItsColumns) {
  for (const json& row : Rows(".atf")) {
    const int signals = row["signals"];
    const int rows = row["rows"];
    for (const auto& [columnText, values] : row["column_values"].items()) {
      SCOPED_TRACE(row["file"].get<std::string>() + " column " + columnText);
      const int column = std::stoi(columnText);
      Read(row["file"], FormatText("answer yes\nreply Signal %d ok\n", 1 + (column - 1) % signals));
      EXPECT_EQ(Trace.EpisodeCount, row["episodes"]);
      GoToEpisode(1 + (column - 1) / signals);
      EXPECT_NEAR(Model.ADInterval, row["sample_interval_ms"].get<double>(), 1e-6);
      EXPECT_EQ(Model.NumPoints, row["columns"] == 2 ? rows + 1 : rows);
      CheckTrace(values, static_cast<std::size_t>(rows));
      EXPECT_EQ(Trace.SimTrace[static_cast<std::size_t>(rows)], 0.0F);
    }
  }
}

TEST_F(RecordingsTest, AColumnOfNumbersTakesItsIntervalFromTheFirstLineOrTheUser) {
  const json row = Rows(".asc").front();
  Read(row["file"], "answer yes\nanswer yes\n");
  EXPECT_EQ(Model.ADInterval, 0.05F);
  EXPECT_EQ(Model.NumPoints, 401);
  EXPECT_EQ(Trace.SimTrace[0], -10.498F);
  EXPECT_EQ(Trace.SimTrace[399], -29.7852F);
  EXPECT_EQ(Trace.SimTrace[400], 0.0F);
  Read(row["file"], "answer yes\nanswer no\nreply ADInterval 0.25 ScaleFactor -2 ok\n");
  EXPECT_EQ(Model.ADInterval, 0.25F);
  EXPECT_EQ(Model.NumPoints, 401);
  EXPECT_EQ(Trace.SimTrace[0], -0.1F);
  EXPECT_EQ(Trace.SimTrace[1], 20.996F);
}

/// Whatever a damaged file holds, what was on display stays or a record that can be analysed takes its place.
TEST_F(RecordingsTest, DamagedFilesLeaveTheOldTraceOrAValidNewOne) {
  int refused = 0;
  for (const auto& entry : std::filesystem::directory_iterator(Recordings + "broken")) {
    const std::string path = entry.path().string();
    if (!path.ends_with(".abf") && !path.ends_with(".atf")) continue;
    SCOPED_TRACE(path);
    const auto lines = Run("open " + Recordings +
                           "abf2/20101002.abf\nanswer yes\nanswer yes\nreply ok\nopen " + path + "\n");
    ASSERT_EQ(Trace.TraceValid, 1);
    ASSERT_GE(Model.NumPoints, 1);
    EXPECT_EQ(Trace.SimTraceUsed, Model.NumPoints);
    EXPECT_TRUE(std::isfinite(Model.ADInterval) && Model.ADInterval > 0.0F);
    if (Trace.TraceFileName == path) continue;
    ++refused;
    EXPECT_EQ(Model.NumPoints, 246);
    EXPECT_EQ(Trace.SimTrace[0], -129.394531F);
    ASSERT_FALSE(lines.empty());
    EXPECT_EQ(lines.back()["popup"], "message");  // the user is told why
  }
  EXPECT_GT(refused, 10);
}

}  // namespace
}  // namespace zelvane
