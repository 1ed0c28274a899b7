// Writers of the trace: exact bytes, protected files, autosave run after run, and exports by extension.
#include "trace/trace_write.h"

#include <cstring>
#include <map>

#include "model/model_lines.h"
#include "platform/folders.h"
#include "run/run_panel.h"
#include "support/abf_sweeps.h"
#include "support/pressing.h"
#include "trace/trace_events.h"
#include "trace/trace_export.h"
#include "trace/trace_store.h"

namespace zelvane {
namespace {

class TraceWriteTest : public PanelTest {
 protected:
  TraceWriteTest() { SetTrace({1.5F, -2.0F, 0.25F}, 0.02F); }
  ~TraceWriteTest() override { SetProgramFolder(""); }

  static void SetTrace(const Floats& samples, float intervalMs) {
    std::copy(samples.begin(), samples.end(), Trace.SimTrace.begin());
    Trace.SimTraceUsed = Model.NumPoints = static_cast<int>(samples.size());
    Model.ADInterval = intervalMs;
    WriteRunParameters();
  }

  std::vector<Floats> ReadBack() { return AbfSweeps(path, header); }

  template <typename Number>
  static Number At(const std::string& bytes, std::size_t offset) {
    Number value{};
    std::memcpy(&value, bytes.data() + offset, sizeof value);
    return value;
  }

  std::string path = folder.File("out.abf");
  AbfHeader header;
};

TEST_F(TraceWriteTest, TextIsAtfOrASingleColumn) {
  choices = {path, path};
  answers = {true, false};
  PressCommand("SaveAsciiData");
  const std::string title = GraphNamed("MainPanel").y.title;
  const float samples[] = {1.5F, -2.0F, 0.25F};
  ASSERT_TRUE(WriteTraceFile(folder.File("trace.atf"), samples, 0.02F, title));
  EXPECT_EQ(ReadWholeFile(path), ReadWholeFile(folder.File("trace.atf")));
  EXPECT_EQ(popups.back(), (SeenPopup{"?", "Export ASCII in ATF format?"}));
  PressCommand("SaveAsciiData");
  EXPECT_EQ(ReadWholeFile(path), "2.000000e-02\n1.500000e+00\n-2.000000e+00\n2.500000e-01\n");
}

TEST_F(TraceWriteTest, AnAbfFileReadsBackWithItsIntervalAndUnits) {
  Floats samples(3000);
  for (std::size_t i = 0; i < samples.size(); ++i) samples[i] = static_cast<float>(i) / 7;
  SetTrace(samples, 0.02F);
  Trace.TraceUnits = TraceNanoamps;
  choices = {path};
  PressCommand("SaveBinaryData");
  EXPECT_EQ(ReadBack(), std::vector<Floats>{samples});
  EXPECT_EQ(header.operationMode, GapFreeMode);
  EXPECT_NEAR(header.sampleInterval, 20.0, 1e-5);
  EXPECT_EQ(header.channelUnits[0], "nA");
  EXPECT_GT(header.startDate, 20200000);
  EXPECT_EQ(TraceAbfWrite(path), Outcome::Done) << "a file of floats may be written over";
}

TEST_F(TraceWriteTest, ARecordingAndTheSourceOfTheTraceAreNotWrittenOver) {
  ASSERT_EQ(TraceAbfWrite(path), Outcome::Done);
  std::string recording = ReadWholeFile(path);
  recording[100] = 0;  // samples of 16 bits
  WriteWholeFile(path, recording);
  EXPECT_NE(TraceAbfWrite(path), Outcome::Done);
  EXPECT_EQ(popups.back(),
            (SeenPopup{"Error!", path + " is in integer format, which usually means it is an acquired "
                                        "data file.\nCannot overwrite an acquired data file"}));
  Trace.TraceFileName = folder.File("./out.abf");
  Trace.TraceFromFile = 1;
  popups.clear();
  for (const auto write : {TraceTextWrite, LegacyAbfWrite, AutosaveTextWrite, AutosaveAbfWrite}) {
    EXPECT_EQ(write(path), Outcome::Refused);
    EXPECT_EQ(popups.back().text, path + " is the file that the trace was read from. Choose another name.");
  }
  EXPECT_EQ(ReadWholeFile(path), recording);
  recording[100] = 1;
  WriteWholeFile(path, recording);
  Trace.TraceFromFile = 0;  // a simulation, after the recording
  for (const auto write : {AutosaveTextWrite, TraceAbfWrite, TraceTextWrite, LegacyAbfWrite})
    EXPECT_EQ(write(path), Outcome::Done);
}

TEST_F(TraceWriteTest, TheLegacyFileIsTheTemplateButForItsFields) {
  std::string sample(2048, '\x55');
  std::memcpy(sample.data(), "ABF ", 4);
  WriteWholeFile(folder.File("SAMPLABF.DAT"), sample);
  SetProgramFolder(folder.Path().string());
  choices = {path};
  PressCommand("SaveLegacyABFCallback");
  std::string bytes = ReadWholeFile(path);
  ASSERT_EQ(bytes.size(), 2048U + 12U);
  EXPECT_EQ(At<std::int16_t>(bytes, 8), 3);
  EXPECT_EQ(At<std::int32_t>(bytes, 10), 3);
  const int date = At<std::int32_t>(bytes, 20);
  EXPECT_TRUE(date > 0 && date < 1'000'000) << date << " has a year of two digits";
  EXPECT_LT(At<std::int32_t>(bytes, 24), 86'400);
  EXPECT_EQ(At<std::int16_t>(bytes, 100), 1);
  EXPECT_EQ(At<float>(bytes, 122), 20.0F);
  EXPECT_EQ(At<std::int16_t>(bytes, 266), 0);
  EXPECT_EQ(At<float>(bytes, 268), 1.0F);
  EXPECT_EQ(At<float>(bytes, 272), 10000.0F);
  EXPECT_EQ(At<float>(bytes, 276), 0.0F);
  EXPECT_EQ(bytes.substr(294, 16), std::string("Zelvane v2.0\0\0\0\0", 16));
  EXPECT_EQ(At<float>(bytes, 2052), -2.0F);
  // All other bytes are those of the template.
  for (const auto& [offset, length] : std::map<std::size_t, std::size_t>{
           {8, 2}, {10, 4}, {20, 8}, {100, 2}, {122, 4}, {266, 14}, {294, 16}}) {
    bytes.replace(offset, length, length, '\x55');
  }
  EXPECT_EQ(bytes.substr(0, 2048), sample);
}

TEST_F(TraceWriteTest, TheTemplatesBesideTheProgramAreThoseThatTheProgramMakes) {
  for (const char* name : {"SAMPLABF.DAT", "GAPFREE.ABF", "EPISODE-10.ABF"}) {
    const AbfTemplate made = AbfTemplateBytes(name);
    EXPECT_EQ(ReadWholeFile(std::string(ZELVANE_DATA "/") + name),
              std::string(reinterpret_cast<const char*>(made.data()), made.size()))
        << name << ": build make_templates and run it";
  }
}

TEST_F(TraceWriteTest, EveryRunBecomesAnEpisodeOfTheAutosaveFile) {
  choices = {path};
  Enter("Autosave", "on");
  EXPECT_EQ(fileRequests.back().title, "Append data to ABF File");
  EXPECT_EQ(Shown("AutosaveFileName"), path);
  AutosaveTrace();
  SetTrace({7.0F, 8.0F, 9.0F}, 0.02F);
  AutosaveTrace();
  const std::string bytes = ReadWholeFile(path);
  ASSERT_EQ(bytes.size(), 2048U + 24U);
  EXPECT_EQ(At<std::int16_t>(bytes, 8), 5);
  EXPECT_EQ(At<std::int32_t>(bytes, 10), 6);
  EXPECT_EQ(At<std::int32_t>(bytes, 16), 2);
  EXPECT_EQ(At<std::int32_t>(bytes, 138), 3);
  EXPECT_EQ(bytes.substr(294, 16), std::string("Zelvane v1.0\0\0\0\0", 16));
  EXPECT_EQ(ReadBack(), (std::vector<Floats>{{1.5F, -2.0F, 0.25F}, {7.0F, 8.0F, 9.0F}}));
}

TEST_F(TraceWriteTest, AutosavedTextHoldsABlockARun) {
  path = folder.File("runs.asc");
  choices = {path};
  Enter("AutosaveFormat", "ASCII");
  Enter("Autosave", "on");
  EXPECT_EQ(fileRequests.back().title, "Append data to single column ASCII File");
  AutosaveTrace();
  SetTrace({4.0F}, 0.5F);
  AutosaveTrace();
  const std::string columns =
      "2.000000e-02\n1.500000e+00\n-2.000000e+00\n2.500000e-01\n5.000000e-01\n4.000000e+00\n";
  EXPECT_EQ(ReadWholeFile(path), columns);
  StepsToWrite.Add([&](TraceSteps& steps) { steps = {{0.0, 12.5}, {4.0F, 1.0F}}; });
  AutosaveTrace();
  EXPECT_EQ(ReadWholeFile(path), columns + "ATF 1.0\n2 2\n\"Type=\"\n\"Comment=\"\n\"Time (s)\" \"" +
                                     GraphNamed("MainPanel").y.title +
                                     "\"\n0.000000e+00 4.000000e+00\n1.250000e-02 1.000000e+00\n");
}

TEST_F(TraceWriteTest, AutosaveStaysOffWithoutAFileAndKeepsOtherFilesOut) {
  Enter("Autosave", "on");
  EXPECT_EQ(Model.Autosave, 0);
  choices = {path};
  Enter("Autosave", "on");
  Enter("AutosaveFormat", "ASCII");
  EXPECT_EQ(
      popups.back().text,
      "If you change file type AFTER selecting the filename, the extension (*.abf,*.asc) may not match the "
      "filetype.");
  const std::size_t asked = fileRequests.size();
  for (const char* command : {"SaveAsciiData", "SaveBinaryData", "SaveLegacyABFCallback", "FxnRead",
                              "ReadBinaryData", "ReadParseBinaryData", "ReadAsciiData", "FxnWaveRead",
                              "FxnExportOpenTimes", "FxnExportClosedTimes", "FxnExportLatencies"}) {
    popups.clear();
    PressCommand(command);
    ASSERT_EQ(popups.size(), 1U) << command;
    EXPECT_EQ(popups.back(),
              (SeenPopup{"! Error", "Turn off autosave before reading or writing other datafiles."}));
  }
  EXPECT_EQ(fileRequests.size(), asked);
}

TEST_F(TraceWriteTest, AutosaveExtendsNoFileButItsOwnKind) {
  WriteWholeFile(folder.File("model.mod"), "no recording");
  EXPECT_NE(AutosaveAbfWrite(folder.File("model.mod")), Outcome::Done);
  EXPECT_EQ(ReadWholeFile(folder.File("model.mod")), "no recording");
  ASSERT_EQ(AutosaveAbfWrite(path), Outcome::Done);
  std::string tagged = ReadWholeFile(path) + "tags";
  tagged[44] = 5;  // the block where tags begin
  WriteWholeFile(path, tagged);
  EXPECT_NE(AutosaveAbfWrite(path), Outcome::Done)
      << "what follows on the samples would be taken for samples";
  EXPECT_EQ(ReadWholeFile(path), tagged);
}

TEST_F(TraceWriteTest, ASecondProgramDoesNotAppendToTheSameFile) {
  for (const auto append : {AutosaveAbfWrite, AutosaveTextWrite}) {
    path += "x";
    ASSERT_EQ(append(path), Outcome::Done);
    const std::string first = ReadWholeFile(path);
    FileLock other;
    EXPECT_EQ(other.Take(path), FileLock::State::InUse);
    AutosaveLock().Release();
    ASSERT_EQ(other.Take(path), FileLock::State::Held);
    EXPECT_EQ(append(path), Outcome::Failed);
    EXPECT_EQ(popups.back().text, path + " is in use: another program extends it. Choose another name.");
    EXPECT_EQ(ReadWholeFile(path), first);
    other.Release();
    EXPECT_EQ(append(path), Outcome::Done);
  }
}

TEST_F(TraceWriteTest, AutosaveGoesOnBehindARunWhoseWritingWasBrokenOff) {
  ASSERT_EQ(AutosaveAbfWrite(path), Outcome::Done);
  WriteWholeFile(path, ReadWholeFile(path) + "a part of an episode, longer than a run");
  ASSERT_EQ(AutosaveAbfWrite(path), Outcome::Done);
  EXPECT_EQ(ReadBack(), (std::vector<Floats>{{1.5F, -2.0F, 0.25F}, {1.5F, -2.0F, 0.25F}}));
  EXPECT_EQ(ReadWholeFile(path).size(), 2048U + 24U);

  const std::string column = folder.Written("runs.asc", "1\n2.34");
  ASSERT_EQ(AutosaveTextWrite(column), Outcome::Done);
  EXPECT_TRUE(ReadWholeFile(column).starts_with("1\n2.34\n2.000000e-02\n1.5"));
}

using TraceExportTest = StoreTest;

TEST_F(TraceExportTest, WritesEachFormatByItsExtension) {
  const float samples[] = {0.0F, -1.5F, 3.4e-7F};
  for (const auto& [file, content] :
       {std::pair{"a.txt", "1.000000e-02\n0.000000e+00\n-1.500000e+00\n3.400000e-07\n"},
        {"a.ATF",
         "ATF\t1.0\n3\t2\n\"Type=\"\n\"Comment=\"\n\"SignalsExported=Current pA\"\n\"Time (s)\"\t\"Current "
         "pA\"\n"
         "0.000000e+00\t0.000000e+00\n1.000000e-05\t-1.500000e+00\n2.000000e-05\t3.400000e-07\n"},
        {"a.csv", "time_ms,Current pA\n0,0\n0.01,-1.5\n0.02,3.40000014e-07\n"}}) {
    ASSERT_TRUE(WriteTraceFile(folder.File(file), samples, 0.01F, "Current pA")) << file;
    EXPECT_EQ(ReadWholeFile(folder.File(file)), content) << file;
  }
  for (const char* name : {"a.abf", "a", "a.", ".csv", "none/a.csv"})
    EXPECT_FALSE(WriteTraceFile(folder.File(name), samples, 0.01F, "Current pA")) << name;
}

TEST_F(TraceExportTest, QuotesTheNamesThatNeedIt) {
  const float sample[] = {1.0F};
  const std::string csv = folder.File("a.csv");
  const std::string atf = folder.File("a.atf");
  ASSERT_TRUE(WriteTraceFile(csv, sample, 1.0F, "a \"b\", c"));
  EXPECT_EQ(LinesOf(ReadWholeFile(csv))[0], "time_ms,\"a \"\"b\"\", c\"");
  ASSERT_TRUE(WriteTraceFile(atf, sample, 1.0F, "a \"b\"\tc\nd"));
  EXPECT_EQ(LinesOf(ReadWholeFile(atf))[4], "\"SignalsExported=a 'b' c d\"");
}

}  // namespace
}  // namespace zelvane
