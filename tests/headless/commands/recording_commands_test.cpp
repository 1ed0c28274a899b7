// `zelvane-cli info` and `convert`: round trips through every format, and refusals.
#include "headless/commands/recording_commands.h"

#include "headless/commands/job_test.h"

namespace zelvane {
namespace {

class RecordingCommandsTest : public JobTest {
 protected:
  RecordingCommandsTest() {
    std::string text =
        "ATF\t1.0\n1\t5\n\"SignalsExported=IN 0,IN 1\"\n\"Time (s)\"\t\"a (pA)\"\t\"b (mV)\"\t\"c\"\t\"d\"\n";
    for (int i = 0; i < 200; ++i) {
      text += std::to_string(i) + "e-4";
      for (int column = 1; column <= 4; ++column) text += '\t' + std::to_string(1000 * column + i);
      text += '\n';
    }
    WriteWholeFile(source, text);
  }

  int Convert(const std::string& from, const std::string& to, ConvertOptions options = {}) {
    options.in = from;
    options.out = to;
    return Run([&](const JobStreams& streams) { return ConvertCommand(options, streams); });
  }

  nlohmann::json Info(const std::string& file) {
    return Written([&](const JobStreams& streams) { return InfoCommand({file}, true, streams); });
  }

  std::string source = folder.File("cell.atf");
};

TEST_F(RecordingCommandsTest, ASignalWithAllItsSweepsGoesToAbfAndBackToText) {
  const auto info = Info(source);
  EXPECT_EQ(info["kind"], "ATF");
  EXPECT_EQ(info["sweeps"], 2);
  EXPECT_EQ(info["samples"], 200);
  EXPECT_NEAR(info["interval"].get<double>(), 0.1, 1e-9);
  EXPECT_EQ(info["channels"][1]["name"], "IN 1");
  const ConvertOptions options{.channel = 2, .sweep = "all", .startMs = 1.0, .lengthMs = 10.0, .every = 50};
  ASSERT_EQ(Convert(source, folder.File("cell.abf"), options), JobDone) << err.str();
  const auto abf = Info(folder.File("cell.abf"));
  EXPECT_EQ(abf["kind"], "ABF");
  EXPECT_EQ(abf["version"], 1.83);
  EXPECT_EQ(abf["sweeps"], 2);
  EXPECT_EQ(abf["samples"], 2);
  EXPECT_NEAR(abf["interval"].get<double>(), 5.0, 1e-6);
  EXPECT_EQ(abf["channels"][0]["name"], "IN 1");
  ASSERT_EQ(Convert(folder.File("cell.abf"), folder.File("cell.csv"), {.sweep = "all"}), JobDone);
  const std::string csv = ReadWholeFile(folder.File("cell.csv"));
  EXPECT_EQ(csv.substr(csv.find('\n')), "\n0,2010,4010\n5,2060,4060\n");
}

TEST_F(RecordingCommandsTest, AProfileGoesFromAColumnToAStimulusFileAndBack) {
  WriteWholeFile(folder.File("a.asc"), "5.000000e-01\n1e-05\n0.25\n");
  const ConvertOptions options{.channel = 6};
  ASSERT_EQ(Convert(folder.File("a.asc"), folder.File("a.stm"), options), JobDone) << err.str();
  EXPECT_EQ(ReadWholeFile(folder.File("a.stm")).size(), 8U + 28U * 2U);
  EXPECT_EQ(Info(folder.File("a.stm"))["channels"][6]["name"], "Drug6");
  ASSERT_EQ(Convert(folder.File("a.stm"), folder.File("b.asc"), options), JobDone) << err.str();
  EXPECT_EQ(ReadWholeFile(folder.File("b.asc")), "5.000000e-01\n1e-05\n0.25\n");
}

TEST_F(RecordingCommandsTest, AllSweepsGoToAnAtfAsEpisodesAndComeBack) {
  const std::string all = folder.File("all.atf");
  ASSERT_EQ(Convert(source, all, {.channel = 2, .sweep = "all"}), JobDone) << err.str();
  EXPECT_EQ(Info(all)["sweeps"], 2);
  ASSERT_EQ(Convert(all, folder.File("second.csv"), {.sweep = "2"}), JobDone) << err.str();
  EXPECT_EQ(ReadWholeFile(folder.File("second.csv")).substr(0, 33), "time_ms,IN 1 (mV)\n0,4000\n0.1,4001");
}

TEST_F(RecordingCommandsTest, AColumnWithoutAnIntervalTakesATypedOne) {
  const std::string column = folder.File("column.asc");
  WriteWholeFile(column, "-1.5\n2\n3\n");
  const auto info = Info(column);
  EXPECT_TRUE(info["interval"].is_null());
  EXPECT_EQ(info["samples"], 3);
  out.str("");
  EXPECT_EQ(InfoCommand({column}, true, {out, err}, 0.5), JobDone);
  EXPECT_EQ(nlohmann::json::parse(out.str())["length"], 1.5);
  EXPECT_EQ(Convert(column, folder.File("column.csv")), JobFailed);
  ASSERT_EQ(Convert(column, folder.File("column.csv"), {.intervalMs = 0.5}), JobDone) << err.str();
  EXPECT_EQ(ReadWholeFile(folder.File("column.csv")), "time_ms,\n0,-1.5\n0.5,2\n1,3\n");
}

/// The error stream of a user who presses Ctrl-C when the progress bar of the reading disappears.
class StopAfterReading : public std::streambuf {
 public:
  explicit StopAfterReading(std::atomic<bool>& stop) : stop_(stop) {}
  std::string seen;

 protected:
  std::streamsize xsputn(const char* text, std::streamsize count) override {
    if (seen.ends_with("reading") && std::string_view(text, static_cast<std::size_t>(count)) == "\r\x1b[K")
      stop_ = true;
    seen.append(text, static_cast<std::size_t>(count));
    return count;
  }

 private:
  std::atomic<bool>& stop_;
};

TEST_F(RecordingCommandsTest, AStopWhileTheFileIsWrittenLeavesTheOldOne) {
  for (const char* name : {"out.abf", "out.csv", "out.atf", "out.asc", "out.stm"}) {
    const std::string target = folder.File(name);
    WriteWholeFile(target, "old");
    stop = false;
    StopAfterReading terminal(stop);
    std::ostream shown(&terminal);
    EXPECT_EQ(ConvertCommand({.in = source, .out = target}, {out, shown, &stop, &shown}), JobFailed) << name;
    EXPECT_TRUE(terminal.seen.ends_with(target + ": stopped; not written\n")) << terminal.seen;
    EXPECT_EQ(terminal.seen.find("error"), std::string::npos) << terminal.seen;
    EXPECT_EQ(ReadWholeFile(target), "old");
  }
}

TEST_F(RecordingCommandsTest, WhatCannotBeIsRefusedAndWritesNothing) {
  const std::string target = folder.File("out.abf");
  WriteWholeFile(target, "old");
  EXPECT_EQ(Convert(source, target, {.channel = 3}), JobFailed);
  EXPECT_EQ(Convert(source, target, {.sweep = "3"}), JobFailed);
  EXPECT_EQ(Convert(source, target, {.startMs = 1000.0}), JobFailed);
  EXPECT_EQ(Convert(source, target, {.every = 0}), JobMisused);
  EXPECT_EQ(Convert(source, folder.File("out.xyz")), JobMisused);
  EXPECT_EQ(Convert(source, source), JobFailed);
  EXPECT_EQ(Convert(folder.File("none.abf"), target), JobFailed);
  EXPECT_EQ(Convert(source, "/dev/full"), JobMisused);
  stop = true;
  EXPECT_EQ(Convert(source, target), JobFailed);
  EXPECT_EQ(ReadWholeFile(target), "old");
  EXPECT_EQ(InfoCommand({target, source}, false, {out, err}), JobFailed);
  EXPECT_NE(out.str().find("ATF"), std::string::npos) << "the others are told all the same";
}

}  // namespace
}  // namespace zelvane
