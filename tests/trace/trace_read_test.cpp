// Reading a recording as a user does: questions, refusals, what a second read remembers, the parse panel, the
// program's own binary layout, and a comparison of the two readers of ABF 1.x.
#include "trace/trace_read.h"

#include <sys/stat.h>

#include <bit>
#include <cstring>

#include "app/undo.h"
#include "formats/abf/abf.h"
#include "platform/file_names.h"
#include "rscm/rscm_store.h"
#include "run/result_store.h"
#include "stimulus/stimulus_file.h"
#include "stimulus/stimulus_store.h"
#include "support/drive_test.h"
#include "support/pressing.h"

namespace zelvane {
namespace {

const std::string TwoChannels = Recordings + "derived/float_episodic_2ch.abf";  // 3 episodes of 2000
const std::string OneChannel = Recordings + "abf2/20101002.abf";                // 3 episodes of 246

class TraceReadTest : public DriveTest {
 protected:
  /// Returns the output of a script that begins with a readable recording on display.
  std::vector<nlohmann::json> RunAfterReading(const std::string& script) {
    return Run("open " + OneChannel + "\n" + script);
  }
};

nlohmann::json Message(const std::string& title, const std::string& text) {
  return {{"popup", "message"}, {"title", title}, {"text", text}};
}

TEST_F(TraceReadTest, WhatIsNotReadLeavesTheTraceOnDisplay) {
  const std::string text = folder.Written("a.asc", "1\n2\n3\n");
  for (const auto& [script, told] : std::vector<std::pair<std::string, std::string>>{
           {folder.File("none.abf") + "\npress FxnRead\n", "IO Error 100: FileOpen failed"},
           {folder.Path().string() + "\npress FxnRead\n", "IO Error 100: FileOpen failed"},
           {text + "\nanswer no\npress FxnRead\n", ""},
           {text + "\nanswer yes\nanswer no\nreply cancel\npress FxnRead\n", ""},
           {text + "\nanswer no\nreply ADInterval -1 ok\npress ReadAsciiData\n",
            "The time between samples must be above 0 ms."},
           {TwoChannels + "\nreply cancel\npress FxnRead\n", ""},
           {TwoChannels + "\nreply Channel 1 ok\npress FxnRead\n",
            "float_episodic_2ch.abf holds no channel 1."},
           {"cancel\npress FxnRead\n", ""}}) {
    SCOPED_TRACE(script);
    const auto lines = RunAfterReading("press FxnNextSection\nchoose " + script);
    if (!told.empty()) {
      EXPECT_EQ(lines.back()["text"], told);
    }
    EXPECT_EQ(Trace.TraceFileName, OneChannel);
    EXPECT_EQ(Trace.EpisodeIndex, 2);
    EXPECT_EQ(Trace.TraceValid, 1);
    EXPECT_EQ(Model.NumPoints, 246);
    EXPECT_NE(Trace.SimTrace[0], 0.0F);
    EXPECT_NE(Model.ADInterval, -1.0F);
  }
}

TEST_F(TraceReadTest, TheBinaryReaderTakesNoText) {
  const std::string text = folder.Written("a.abf", "1\n2\n3\n");
  const auto lines = RunAfterReading("choose " + text + "\npress FxnWaveRead\nget TraceFileName\nchoose " +
                                     TwoChannels + "\nreply Channel 2 ok\npress FxnWaveRead\n");
  EXPECT_EQ(lines[0].at("title"), "Select Axon binary file to read");
  EXPECT_EQ(lines[2], Message("! File error", "IO Error 103: Wrong File Format"));
  EXPECT_EQ(lines[3].at("value"), OneChannel);
  EXPECT_EQ(Trace.RecordedChannel, 2);
  EXPECT_EQ(Model.NumPoints, 2000);
}

TEST_F(TraceReadTest, TheConversionToolIsStartedWhereItStands) {
  const std::string script = "press FxnFileConversion\n";
  const std::string absent =
      "The conversion tool ABFUtil1.exe is not in the program's folder, or cannot be started.";
  EXPECT_EQ(Run(script).back(), Message("! File error", absent));
  const std::string pipe = folder.File("pipe");
  ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
  const std::string tool = folder.Written("ABFUtil1.exe", "#!/bin/sh\necho started > " + pipe + "\n");
  std::filesystem::permissions(tool, std::filesystem::perms::owner_all);
  ASSERT_TRUE(Run(script).empty());
  EXPECT_EQ(ReadWholeFile(pipe), "started\n") << "waits until the tool writes";
}

TEST_F(TraceReadTest, UnequalStepsKeepTheSamplesReadAndMakeNoResult) {
  const std::string path = folder.Written("a.atf", "ATF 1.0\n0 2\nt x\n0 7\n.001 8\n.0025 9\n.003 10\n");
  const auto lines = RunAfterReading("choose " + path + "\nanswer yes\npress ReadBinaryData\n");
  EXPECT_EQ(lines.back(),
            Message("! Incomaptible format",
                    "The x intervals are not equal, are too small (<1e6) or are too large (>1e6)."));
  EXPECT_EQ(Trace.SimTrace[2], 9.0F);
  EXPECT_EQ(Trace.SimTrace[3], 0.0F);
  EXPECT_EQ(Trace.TraceValid, 0);
  EXPECT_EQ(Model.NumPoints, 246);
}

TEST_F(TraceReadTest, AHundredNumbersFillTheTraceButAreNoResult) {
  std::string numbers;
  for (int k = 1; k <= 100; ++k) numbers += FormatText("%d\n", k);
  const auto read = [this](const std::string& path) {
    Run("choose " + path + "\nanswer no\nreply ADInterval 0.5 ok\npress ReadAsciiData\n");
  };
  read(folder.Written("a.asc", numbers));
  EXPECT_EQ(Model.NumPoints, 100);
  EXPECT_EQ(Model.ADInterval, 0.5F);
  EXPECT_EQ(Trace.SimTrace[99], 100.0F);
  EXPECT_EQ(Trace.TraceValid, 0);
  EXPECT_TRUE(GraphNamed("MainPanel").plots.empty());
  read(folder.Written("b.asc", numbers + "101\n"));
  EXPECT_EQ(Trace.TraceValid, 1);
  EXPECT_EQ(GraphNamed("MainPanel").plots.size(), 1U);
}

TEST_F(TraceReadTest, EpisodesStepAroundTheEndsWithoutAQuestion) {
  const auto lines = Run("choose " + TwoChannels +
                         "\nreply Channel 2 ok\npress FxnRead\n"
                         "press FxnLastSection\nget EpisodeIndex\nkey MainPanel PageUp\nget EpisodeIndex\n"
                         "key MainPanel PageDown\nget EpisodeIndex\nenter EpisodeIndex 2\nget EpisodeIndex\n"
                         "enter EpisodeIndex 4\nget EpisodeIndex\nenter EpisodeIndex -5\nget EpisodeIndex\n");
  std::vector<int> episodes;
  for (std::size_t k = 2; k < lines.size(); ++k) episodes.push_back(lines[k].at("value"));
  EXPECT_EQ(episodes, (std::vector<int>{3, 1, 3, 2, 1, 3}));
  EXPECT_EQ(Trace.RecordedChannel, 2);
}

TEST_F(TraceReadTest, ATextIsReadAgainAsItsQuestionsWereAnswered) {
  const std::string table =
      folder.Written("a.atf", "ATF 1.0\n1 5\n\"SignalsExported=a,b\"\nt x\n0 11 21 12 22\n");
  const auto lines =
      Run("choose " + table + "\nanswer yes\nreply Signal 2 ok\npress FxnRead\npress FxnNextSection\n");
  EXPECT_EQ(lines.size(), 3U);
  EXPECT_EQ(Trace.SimTrace[0], 22.0F);
  const std::string column = folder.Written("a.asc", "4\n5\n");
  Run("choose " + column +
      "\nanswer yes\nanswer no\nreply ADInterval 0.25 ScaleFactor 3 ok\npress FxnRead\nenter ADInterval 7\n");
  TraceReloadEpisode();
  EXPECT_EQ(Model.ADInterval, 0.25F);
  EXPECT_EQ(TraceNow(), (Floats{12, 15}));
}

TEST_F(TraceReadTest, AReadIsShownAtOnceAndIsNoEditToUndo) {
  Run("enter KOn[1] 3\nset NumRuns 2\nopen " + TwoChannels + "\n");
  Run("enter VHold -40\nopen " + OneChannel + "\n");
  const Graph& graph = GraphNamed("MainPanel");
  ASSERT_EQ(graph.plots.size(), 1U);
  EXPECT_EQ(graph.plots[0].y.size(), 246U);
  EXPECT_EQ(graph.y.title, "Macroscopic Current pA");
  EXPECT_EQ(Shown("DataName"), OneChannel);
  EXPECT_EQ(ControlNumber("NumPoints"), 246.0);
  EXPECT_EQ(ControlNumber("ADInterval"), static_cast<double>(Model.ADInterval));
  EXPECT_EQ(Result.ResultKind, ResultMonteCarlo);
  const float interval = Model.ADInterval;
  Undo();
  EXPECT_EQ(Model.VHold, 0.0F);
  EXPECT_EQ(Model.NumPoints, 246);
  EXPECT_EQ(Model.ADInterval, interval);
  EXPECT_FALSE(CanUndo());
}

TEST_F(TraceReadTest, TheAutomaticStepKeepsItsTimesUnderTheIntervalOfARecording) {
  RunAfterReading("");
  const std::span<const float> drug = Stimulus.Profile[1];
  const auto level = std::find_if(drug.begin(), drug.end(), [](float value) { return value != 0.0F; });
  EXPECT_NEAR(static_cast<float>(level - drug.begin()) * Model.ADInterval, Stimulus.AutoStart,
              1.5F * Model.ADInterval);  // a start is truncated to the sample before it
}

TEST_F(TraceReadTest, AStimulusOpenedByItsNameIsTheStimulusAndNoTrace) {
  Floats volts(200, 0.02F);
  StimProfileSpans profiles;
  profiles.fill(volts);
  ASSERT_EQ(WriteStimProfiles(folder.File("pulse.stm"), 0.1F, profiles), Outcome::Done);
  RunAfterReading("answer yes\nanswer yes\nopen \"" + folder.File("pulse.stm") + "\"\n");
  EXPECT_EQ(Stimulus.StimMode, StimUser);
  EXPECT_EQ(Stimulus.Profile[0][199], 0.02F);
  EXPECT_EQ(Model.ADInterval, 0.1F);
  EXPECT_EQ(Trace.TraceFileName, OneChannel);
}

TEST_F(TraceReadTest, EveryFreshTraceIsCorrectedWhenThatIsAutomatic) {
  Run("quit\n");
  RsCm.RsCmAuto = 1;
  ASSERT_EQ(TraceReadFile(OneChannel), Outcome::Done);
  EXPECT_EQ(Trace.RsCorrected, 1);
  StepEpisode(1);
  EXPECT_EQ(Trace.RsCorrected, 1);
  RsCm.RsCmAuto = 0;
  StepEpisode(1);
  EXPECT_EQ(Trace.RsCorrected, 0);
}

TEST_F(TraceReadTest, ParsingKeepsEveryNthSampleAndErasingNone) {
  Run("open " + OneChannel + "\n");
  const Floats whole = TraceNow();
  const float interval = Model.ADInterval;
  Trace.ParseConstant = 100;
  ParseTrace();
  EXPECT_EQ(TraceNow(), (Floats{whole[0], whole[100], whole[200]}));
  EXPECT_EQ(Trace.SimTrace[3], 0.0F);
  EXPECT_EQ(Model.ADInterval, interval * 100.0F);
  EXPECT_EQ(Trace.TraceParsed, 1);
  PressCommand("EraseData");
  EXPECT_EQ(TraceNow(), (Floats(3, 0.0F)));
  EXPECT_EQ(Trace.TraceValid, 0);
}

// -- The parse panel --

/// Writes an ABF file of one channel, gap-free, with k modulo 1024 as sample k, 0.01 ms per sample.
std::string WriteLongAbf(const TemporaryFolder& folder, int samples) {
  const std::string path = folder.File("long.abf");
  AbfHeader header;
  InitializeHeader(header);
  header.sampleInterval = 10.0;
  header.channelUnits[0] = "pA";
  AbfWriteHandle writer = OldABF_OpenWrite(path, header);
  Floats values(static_cast<std::size_t>(samples));
  for (std::size_t k = 0; k < values.size(); ++k) values[k] = static_cast<float>(k % 1024);
  EXPECT_TRUE(writer && OldABF_WriteRawSweep(*writer, values) && OldABF_UpdateHeader(*writer, header) &&
              OldABF_Close(writer));
  return path;
}

TEST_F(TraceReadTest, AFileTooLongForTheTraceOpensTheParsePanel) {
  const std::string path = WriteLongAbf(folder, 6'000'000);
  const auto lines = Run("open " + path + "\n");
  ASSERT_EQ(lines.size(), 1U);
  EXPECT_EQ(lines[0]["name"], "ParseReadPanel");
  EXPECT_EQ(Trace.ParseSkip, 2);
  EXPECT_EQ(Trace.ParseCount, 3'000'000);
  EXPECT_EQ(Trace.ParseResult, 2);  // unanswered: cancelled
  EXPECT_EQ(Trace.TraceValid, 0);
  EXPECT_EQ(Model.NumPoints, 10240);
  EXPECT_EQ(Run("open " + path + "\npress FxnNextSection\n").size(), 2U) << "a step asks again";
  EXPECT_EQ(Trace.TraceValid, 0);
  Run("reply ok\nopen " + path + "\n");
  EXPECT_EQ(Model.NumPoints, 3'000'000);
  EXPECT_EQ(Trace.SimTrace[2'999'999], static_cast<float>(5'999'998 % 1024));
  EXPECT_EQ(Model.ADInterval, 0.02F);
}

TEST_F(TraceReadTest, TheFieldsOfTheParsePanelFollowEachOther) {
  const std::string path = WriteLongAbf(folder, 10'000);  // 100 ms
  using Case = std::tuple<const char*, int, int, int, bool>;
  for (const auto& [typed, start, count, skip, message] :
       {Case{"ParseCount 100", 0, 100, 1, false}, Case{"ParseDuration 20", 0, 2'000, 1, false},
        Case{"ParseStart 9000", 9'000, 1'000, 1, false}, Case{"ParseStart 10000", 0, 10'000, 1, true},
        Case{"ParseStart -3", 0, 10'000, 1, true}, Case{"ParseStartTime 50 ParseCount 7", 5'000, 7, 1, false},
        Case{"ParseStartTime 1e30", 0, 10'000, 1, true}, Case{"ParseSkip 3", 0, 3'333, 3, false},
        Case{"ParseSkip 0", 0, 10'000, 1, false}, Case{"ParseSkip 2000000000", 0, 1, 10'000, false},
        Case{"ParseCount 10 ParseMaxPoints 1 ParseStart 4", 4, 9'996, 1, false},
        Case{"ParseSkip 7 ParseStart 70 ParseCount 2000000000", 70, 1'418, 7, false}}) {
    SCOPED_TRACE(typed);
    const auto lines = Run("choose " + path + "\nreply " + typed + " ok\npress ReadParseBinaryData\n");
    EXPECT_EQ(lines.size(), message ? 3U : 2U);
    EXPECT_EQ(Trace.ParseStart, start);
    EXPECT_EQ(Trace.ParseSkip, skip);
    ASSERT_EQ(Model.NumPoints, count);
    EXPECT_EQ(Model.ADInterval, 0.01F * static_cast<float>(skip));
    for (const int k : {0, count - 1}) {
      EXPECT_EQ(Trace.SimTrace[static_cast<std::size_t>(k)], static_cast<float>((start + k * skip) % 1024));
    }
    const Floats first = TraceNow();
    TraceReloadEpisode();
    EXPECT_EQ(TraceNow(), first);
    EXPECT_EQ(Model.ADInterval, 0.01F * static_cast<float>(skip));
  }
}

TEST_F(TraceReadTest, ASmallerDestinationTakesTheBeginningAndTellsOfIt) {
  Run("quit\n");
  Floats destination(100, -1.0F);
  ASSERT_TRUE(BinaryTraceRead(OneChannel, destination));
  EXPECT_EQ(PopupTexts(), Texts{"Binary file was truncated to fit into memory."});
  EXPECT_EQ(Model.NumPoints, 100);
  EXPECT_EQ(destination[0], -129.394531F);
}

// -- OBF --

std::string Obf(std::int32_t runs, std::int32_t points, float interval, int samples) {
  std::string bytes(2048, '\0');
  bytes.replace(0, 3, "OBF");
  std::memcpy(&bytes[32], &runs, 4);
  std::memcpy(&bytes[48], &points, 4);
  std::memcpy(&bytes[128], &interval, 4);
  for (int k = 0; k < samples; ++k) {
    const float value = static_cast<float>(k) + 0.5F;
    bytes.append(reinterpret_cast<const char*>(&value), 4);
  }
  return bytes;
}

TEST_F(TraceReadTest, TheProgramsOwnLayoutIsReadAsFarAsItReaches) {
  static_assert(std::endian::native == std::endian::little, "the bytes above are written as they lie");
  using Case = std::tuple<std::int32_t, std::int32_t, float, int, int, float>;
  for (const auto& [runs, points, interval, samples, read, expectedInterval] :
       {Case{2, 5, 0.25F, 10, 10, 0.25F}, Case{2, 5, 0.25F, 7, 7, 0.25F}, Case{2, 5, 0.25F, 12, 10, 0.25F},
        Case{2'000'000'000, 2'000'000'000, 0.25F, 9, 9, 0.25F}, Case{1, 3, std::nanf(""), 3, 3, 0.01F},
        Case{1, 3, 0.0F, 3, 3, 0.01F}, Case{1, -3, 1.0F, 3, 0, 0.01F}, Case{1, 3, 1.0F, 0, 0, 0.01F}}) {
    const std::string path = folder.Written("a.obf", Obf(runs, points, interval, samples));
    const auto lines = Run("open " + path + "\n");
    EXPECT_EQ(lines[0],
              Message("Read Binary", path + " is not a valid ABF file\nProceeding to read binary (NOT ABF)"));
    EXPECT_EQ(Trace.TraceValid, read > 0 ? 1 : 0) << runs << ' ' << points << ' ' << samples;
    EXPECT_EQ(Model.NumPoints, read > 0 ? read : 10240);
    EXPECT_EQ(Model.ADInterval, expectedInterval);
    EXPECT_EQ(Trace.SimTrace[0], read > 0 ? 0.5F : 0.0F);
    EXPECT_EQ(Trace.SimTrace[static_cast<std::size_t>(read)], 0.0F);
  }
  Run("open " + folder.Written("short.obf", Obf(1, 3, 1.0F, 3).substr(0, 40)) + "\n");
  EXPECT_EQ(Trace.TraceValid, 0);
}

// -- The direct reader of ABF 1.x --

TEST_F(TraceReadTest, BothReadersOfAbf1AgreeOnTheFirstChannel) {
  for (const char* name :
       {"abf1/130618-1-12.abf", "abf1/190619B_0003.abf", "abf1/abf-v1.abf", "abf1/pclamp11_4ch_abf1.abf",
        "abf1/18425108_abf1.abf", "derived/float_episodic_2ch.abf", "derived/float_gapfree_1ch.abf"}) {
    SCOPED_TRACE(name);
    Run("reply ok\nopen " + Recordings + name + "\n");
    Floats episodes;
    for (int e = 1; e <= Trace.EpisodeCount; ++e) {
      GoToEpisode(e);
      const Floats episode = TraceNow();
      episodes.insert(episodes.end(), episode.begin(), episode.end());
    }
    const int count = Trace.EpisodeCount;
    const float interval = Model.ADInterval;
    const double gain = static_cast<double>(Trace.FinalGain);
    Floats direct(episodes.size() + 1);
    ASSERT_TRUE(AbfDirectRead(Trace.TraceFileName, direct));
    ASSERT_EQ(Model.NumPoints, static_cast<int>(episodes.size()));
    EXPECT_EQ(Trace.EpisodeCount, count);
    EXPECT_NEAR(Model.ADInterval, interval, 1e-6F * interval);
    // For floats the two readers give different gains, which no sample uses.
    if (!std::string_view(name).starts_with("derived")) {
      EXPECT_NEAR(static_cast<double>(Trace.FinalGain), gain, 1e-6 * gain);
    }
    float largest = 0.0F;
    for (const float value : episodes) largest = std::max(largest, std::abs(value));
    for (std::size_t k = 0; k < episodes.size(); ++k)
      ASSERT_NEAR(direct[k], episodes[k], 1e-6F * largest) << k;
  }
}

TEST_F(TraceReadTest, ACutRecordingIsNotedAndListedInItsInformation) {
  const std::string atf = ReadWholeFile(Recordings + "atf/sine_sweep_magnitude_20.atf");
  const std::string lastLine = std::to_string(std::count(atf.begin(), atf.end(), '\n'));
  const std::string within = " ends within line " + lastLine;
  answers = {true, true, true};
  using Case = std::pair<std::string, std::string>;
  for (const auto& [path, told] :
       {Case{Recordings + "broken/abf2_data_cut.abf", " ends early, with 369 of 738 samples"},
        Case{Recordings + "broken/abf1_data_60pc.abf", " ends early, with 600 of 1000 samples"},
        Case{folder.Written("a.atf", atf.substr(0, atf.size() - 3)),
             within + ", whose last number may lack digits"},
        Case{folder.Written("b.atf", atf.substr(0, atf.rfind('\t'))), within + ", which is left out"},
        Case{folder.Written("c.atf", atf), ""}}) {
    notes.clear();
    TraceReadFile(path);
    EXPECT_EQ(notes, told.empty() ? Texts{} : Texts{FileNameOf(path) + told + "."});
    EXPECT_EQ(Trace.FileInfo.back() == "File" + told, !told.empty());
  }
}

TEST_F(TraceReadTest, TheDirectReaderRefusesWhatIsNoAbf1) {
  using Case = std::pair<std::string, std::string>;
  Floats destination(10'000);
  for (const auto& [path, told] :
       {Case{folder.File("none"), "IO Error 100: FileOpen failed"},
        Case{folder.Written("a", "XBF"), "IO Error 103: Wrong File Format"},
        Case{OneChannel, " Invalid ABF file."},
        Case{Recordings + "broken/abf1_version_nan.abf", " Invalid ABF file."},
        Case{Recordings + "broken/abf1_channels_30000.abf", " Invalid ABF file."},
        Case{Recordings + "broken/abf1_block_max.abf", "abf1_block_max.abf holds no samples."}}) {
    popups.clear();
    EXPECT_FALSE(AbfDirectRead(path, destination));
    EXPECT_EQ(PopupTexts(), Texts{told}) << path;
  }
  popups.clear();
  EXPECT_TRUE(AbfDirectRead(Recordings + "broken/abf1_gain_zero.abf", destination));
  EXPECT_EQ(popups, (std::vector<SeenPopup>{{"! File I/O Error", "Gain=0\n"}}));
  for (const char* name : {"abf1_samples_max", "abf1_data_odd", "abf1_data_60pc"}) {
    EXPECT_TRUE(AbfDirectRead(Recordings + "broken/" + name + ".abf", destination)) << name;
    EXPECT_LE(Model.NumPoints, 1'280) << name;  // uses the bytes after the samples when the header says so
  }
}

}  // namespace
}  // namespace zelvane
