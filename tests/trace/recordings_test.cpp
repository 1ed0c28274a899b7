// Recordings of other programs, read as a user does and compared with what those programs read.
#include <cstdlib>
#include <numeric>
#include <sstream>

#include "headless/commands/recording_commands.h"
#include "support/drive_test.h"
#include "trace/trace_read.h"

namespace zelvane {
namespace {

using nlohmann::json;

/// Returns the rows of the list for files with an extension.
std::vector<json> Rows(std::string_view extension) {
  static const json all = json::parse(ReadWholeFile(Recordings + "expected.json"));
  std::vector<json> rows;
  for (const json& row : all["rows"]) {
    const std::string file = row["file"];
    const bool wanted = !file.starts_with("broken/") && file.ends_with(extension);
    // The list also has files that are too large for the folder.
    if (wanted && std::filesystem::exists(Recordings + file)) rows.push_back(row);
  }
  EXPECT_FALSE(rows.empty());
  return rows;
}

void CheckSamples(const json& expected, std::span<const float> samples) {
  const double low = expected["min"];
  const double high = expected["max"];
  const double tolerance = 1e-6 * std::max(std::abs(low), std::abs(high));
  for (std::size_t k = 0; k < expected["first5"].size(); ++k) {
    EXPECT_NEAR(samples[k], expected["first5"][k].get<double>(), tolerance);
  }
  EXPECT_NEAR(samples.back(), expected["last"].get<double>(), tolerance);
  EXPECT_NEAR(*std::min_element(samples.begin(), samples.end()), low, tolerance);
  EXPECT_NEAR(*std::max_element(samples.begin(), samples.end()), high, tolerance);
  const double sum = std::accumulate(samples.begin(), samples.end(), 0.0);
  EXPECT_NEAR(sum / static_cast<double>(samples.size()), expected["mean"].get<double>(), tolerance);
}

/// Returns the columns of a CSV after the first, each up to its last cell.
std::vector<Floats> CsvColumns(const std::string& path) {
  std::istringstream text(ReadWholeFile(path));
  std::vector<Floats> columns;
  std::string line;
  std::getline(text, line);
  while (std::getline(text, line)) {
    std::size_t column = 0;
    for (std::size_t comma = line.find(','); comma != std::string::npos; ++column) {
      if (columns.size() <= column) columns.emplace_back();
      if (const char* cell = line.c_str() + comma + 1; *cell != ',' && *cell != '\0')
        columns[column].push_back(std::strtof(cell, nullptr));
      comma = line.find(',', comma + 1);
    }
  }
  return columns;
}

class RecordingsTest : public DriveTest {
 protected:
  /// Reads a file with the command of the menu; `queued` has the answers.
  void Read(const std::string& file, const std::string& queued) {
    Run("choose \"" + Recordings + file + "\"\n" + queued + "press FxnRead\n");
    ASSERT_EQ(Trace.TraceValid, 1) << file;
  }

  /// Returns the output of `info` for a file.
  json Info(const std::string& file) {
    std::ostringstream out;
    EXPECT_EQ(InfoCommand({Recordings + file}, true, {out, err}), JobDone) << err.str();
    return json::parse(out.str());
  }

  /// Returns the sweeps of a channel, through a CSV.
  std::vector<Floats> Converted(const std::string& file, int channel) {
    ConvertOptions options;
    options.in = Recordings + file;
    options.out = folder.File("out.csv");
    options.channel = channel;
    options.sweep = "all";
    EXPECT_EQ(ConvertCommand(options, {err, err}), JobDone) << err.str();
    return CsvColumns(options.out);
  }

  std::ostringstream err;
};

TEST_F(RecordingsTest, EveryChannelOfEveryAbfHoldsWhatOtherProgramsRead) {
  for (const json& row : Rows(".abf")) {
    SCOPED_TRACE(row["file"].get<std::string>());
    const json info = Info(row["file"]);
    const json& version = row["version"];  // a number, or a text as "2.6.0.0"
    EXPECT_EQ(info["version"],
              version.is_number() ? version : json(2.0 + (version.get<std::string>()[2] - '0') / 100.0));
    EXPECT_EQ(info["sweeps"], row["sweeps"]);
    EXPECT_NEAR(info["interval"].get<double>(), row["sample_interval_ms"].get<double>(), 1e-9);
    const json& lengths = row["samples_per_sweep"];
    EXPECT_EQ(lengths.is_array() ? info["samples_per_sweep"] : info["samples"], lengths);
    ASSERT_EQ(info["channels"].size(), row["channels"]);
    for (std::size_t place = 0; place < row["channels"]; ++place) {
      SCOPED_TRACE(place);
      const int channel = row["sampling_sequence"][place];
      EXPECT_EQ(info["channels"][place]["channel"], channel);
      EXPECT_EQ(info["channels"][place]["name"], row["channel_names"][place]);
      EXPECT_EQ(info["channels"][place]["units"], row["units"][place]);
      const auto converted = Converted(row["file"], channel);
      ASSERT_EQ(converted.size(), row["sweeps"]);
      Read(row["file"], FormatText("reply Channel %d ok\n", channel));
      EXPECT_EQ(Trace.EpisodeCount, row["sweeps"]);
      EXPECT_EQ(Trace.RecordedChannel, channel);
      EXPECT_EQ(Trace.OperationMode, row["operation_mode"]);
      EXPECT_NEAR(Model.ADInterval, row["sample_interval_ms"].get<double>(), 1e-6);
      for (const auto& [sweep, channels] : row["sweep_values"].items()) {
        GoToEpisode(std::stoi(sweep) + 1);
        const Floats samples = TraceNow();
        ASSERT_EQ(samples.size(), channels[place]["count"]);
        CheckSamples(channels[place], samples);
        EXPECT_EQ(converted[std::stoul(sweep)], samples);
      }
    }
  }
}

TEST_F(RecordingsTest, EverySignalOfEveryAtfHoldsItsColumns) {
  for (const json& row : Rows(".atf")) {
    SCOPED_TRACE(row["file"].get<std::string>());
    const int signals = row["signals"];
    const std::size_t rows = row["rows"];
    const json info = Info(row["file"]);
    EXPECT_EQ(info["sweeps"], row["episodes"]);
    EXPECT_EQ(info["samples"], rows);
    EXPECT_NEAR(info["interval"].get<double>(), row["sample_interval_ms"].get<double>(), 1e-9);
    ASSERT_EQ(info["channels"].size(), row["signals"]);
    for (const auto& [columnText, values] : row["column_values"].items()) {
      SCOPED_TRACE("column " + columnText);
      const int place = (std::stoi(columnText) - 1) % signals;
      const int episode = (std::stoi(columnText) - 1) / signals;
      const json& channel = info["channels"][static_cast<std::size_t>(place)];
      EXPECT_EQ(channel["name"], row["signal_names"].empty()
                                     ? json("")
                                     : row["signal_names"][static_cast<std::size_t>(place)]);
      const std::string title = row["column_titles"][static_cast<std::size_t>(place) + 1];
      const std::string units = channel["units"];
      EXPECT_TRUE(units.empty() ? title.find('(') == std::string::npos : title.ends_with("(" + units + ")"));
      Read(row["file"], FormatText("answer yes\nreply Signal %d ok\n", place + 1));
      EXPECT_EQ(Trace.EpisodeCount, row["episodes"]);
      GoToEpisode(episode + 1);
      EXPECT_NEAR(Model.ADInterval, row["sample_interval_ms"].get<double>(), 1e-6);
      Floats samples = TraceNow();
      if (row["columns"] == 2) {
        EXPECT_EQ(samples.back(), 0.0F) << "a single column has a sample more";
        samples.pop_back();
      }
      ASSERT_EQ(samples.size(), rows);
      CheckSamples(values, samples);
      EXPECT_EQ(Converted(row["file"], place + 1).at(static_cast<std::size_t>(episode)), samples);
    }
  }
}

TEST_F(RecordingsTest, AColumnOfNumbersTakesItsIntervalFromTheFirstLine) {
  const json row = Rows(".asc").front();
  Read(row["file"], "answer yes\nanswer yes\n");
  EXPECT_EQ(Model.ADInterval, 0.05F);
  EXPECT_EQ(Model.NumPoints, 401);
  EXPECT_EQ(Trace.SimTrace[0], -10.498F);
  EXPECT_EQ(Trace.SimTrace[399], -29.7852F);
  EXPECT_EQ(Trace.SimTrace[400], 0.0F);
}

/// After a damaged file the old trace stays, or there is a new trace that can be analysed.
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
    EXPECT_EQ(lines.back()["popup"], "message");  // a message gives the reason
  }
  EXPECT_GT(refused, 10);
}

}  // namespace
}  // namespace zelvane
