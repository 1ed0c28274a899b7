// Stimulus files: the written bytes, the questions, and the result of short and wrong files.
#include "stimulus/stimulus_file.h"

#include <cstring>

#include "fit/wave_set.h"
#include "run/run_panel.h"
#include "stimulus/stimulus.h"
#include "stimulus/stimulus_store.h"
#include "support/pressing.h"

namespace zelvane {
namespace {

constexpr char OpenFailed[] = "IO Error 100: FileOpen failed";
constexpr char WrongFormat[] = "IO Error 103: Wrong File Format";

class StimulusFileTest : public PanelTest {
 protected:
  StimulusFileTest() {
    WriteRunParameters();
    StimPanelRefresh();
  }

  /// Returns the bytes of a file whose profile p has 100 p + i at sample i.
  static std::string FileBytes(float interval, int samples) {
    std::string bytes(8 + 28 * static_cast<std::size_t>(samples), '\0');
    std::memcpy(bytes.data(), &interval, 4);
    std::memcpy(bytes.data() + 4, &samples, 4);
    for (int p = 0; p < 7; ++p) {
      for (int i = 0; i < samples; ++i) {
        const float value = static_cast<float>(100 * p + i);
        std::memcpy(bytes.data() + 8 + 4 * (p * samples + i), &value, 4);
      }
    }
    return bytes;
  }

  std::string Made(float interval, int samples, std::size_t cut = std::string::npos) {
    return folder.Written("a.stm", FileBytes(interval, samples).substr(0, cut));
  }

  /// Returns a short file whose header has another number of samples than the file.
  std::string Claiming(float interval, int samples) {
    std::string bytes = FileBytes(interval, 1);
    std::memcpy(bytes.data() + 4, &samples, 4);
    return folder.Written("a.stm", bytes);
  }
};

TEST_F(StimulusFileTest, AFileHoldsTheSevenProfilesAndNothingElse) {
  Enter("NumPoints", "3");
  Enter("ADInterval", "0.25");
  Stimulus.StimMode = StimManual;
  StimPanelRefresh();
  for (std::size_t p = 0; p < 7; ++p) {
    for (std::size_t i = 0; i < 5; ++i) Stimulus.Profile[p][i] = static_cast<float>(100 * p + i);
  }
  Enter("ExportPoints", "5");
  choices = {folder.File("out.stm")};
  PressCommand("ButtonSaveStim");
  EXPECT_EQ(fileRequests.back().title, "Save Full Stimulus Profile to Binary File");
  EXPECT_EQ(ReadWholeFile(folder.File("out.stm")), FileBytes(0.25F, 5));
}

TEST_F(StimulusFileTest, AReadFileDrivesTheModelAndProposesItsIntervalAndLength) {
  choices = {Made(0.5F, 200)};
  answers = {true, true};
  PressCommand("LoadStim");
  EXPECT_EQ(
      PopupTexts(),
      (Texts{"Replace current interval (0.010000 ms) with new stimulus interval (0.500000 ms)?",
             "Replace current number of data pts (10240) with number specified in stimulus file (199)?"}));
  EXPECT_EQ(popups[0].title, "! New timeinterval specified");
  EXPECT_EQ(popups[1].title, "! New number of points specified");
  EXPECT_EQ(ControlNamed("NumPoints").number, 199);
  EXPECT_EQ(Stimulus.StimMode, StimUser);
  EXPECT_EQ(Stimulus.StimFromFile, 1);
  EXPECT_EQ(Shown("StimFile"), "a.stm");
  EXPECT_EQ(Shown("MainStimFile"), "a.stm");
  EXPECT_EQ(GraphNamed("StimulusPanel").plots.front().y[1], 101.0F);
  EXPECT_EQ(GraphNamed("StimulusPanel").plots.front().step, 0.5);
}

TEST_F(StimulusFileTest, IntervalAndLengthStayWhereTheUserRefusesOrAScriptCannotBeAsked) {
  const std::vector<SeenPopup> told = {
      {"!",
       "Current time interval (0.010000 ms) does not match stimulus interval "
       "(0.500000 ms); original time interval used?"}};
  for (const bool script : {false, true}) {
    Stimulus.ScriptRunning = script ? 1 : 0;
    popups.clear();
    EXPECT_EQ(StimFileRead(Made(0.5F, 200)), Outcome::Done);
    EXPECT_EQ(popups.size(), script ? 1U : 2U);
    EXPECT_EQ(popups == told, script);
    EXPECT_EQ(Model.ADInterval, 0.01F);
    EXPECT_EQ(Model.NumPoints, 10240);
    EXPECT_EQ(Stimulus.Profile[1][7], 107.0F);
  }
}

TEST_F(StimulusFileTest, AnIntervalIsHeldToItsLimits) {
  for (const auto& [inFile, taken] : {std::pair{0.0F, 1e-6F}, {-3.0F, 1e-6F}, {INFINITY, 1e6F}}) {
    answers = {true};
    EXPECT_EQ(StimFileRead(Made(inFile, 4)), Outcome::Done);
    EXPECT_EQ(Model.ADInterval, taken);
  }
}

TEST_F(StimulusFileTest, WhatAShortFileLacksIsZeroAndNotTold) {
  Model.NumPoints = 99;
  for (std::size_t p = 0; p < 7; ++p) Stimulus.Profile[p][150] = 5.0F;
  const std::size_t begin = 8 + 24 * 100;  // of the last profile
  EXPECT_EQ(StimFileRead(Made(0.01F, 100, begin + 4 * 3 + 2)), Outcome::Done);
  EXPECT_EQ(Stimulus.Profile[5][99], 599.0F);
  EXPECT_EQ(Stimulus.Profile[6][2], 602.0F);
  EXPECT_EQ(Stimulus.Profile[6][3], 0.0F);
  EXPECT_EQ(Stimulus.Profile[0][150], 0.0F);
  EXPECT_NE(StimFileRead(Made(0.01F, 100, begin + 3)), Outcome::Done);
  EXPECT_TRUE(popups.empty());
}

TEST_F(StimulusFileTest, AFileThatIsNoneChangesNothing) {
  Stimulus.Profile[3][5] = 0.25F;
  constexpr char TooLarge[] = "Stimulus file larger than current array size; cannot complete operation.";
  answers = {true, true, true, true};
  const auto refuse = [this](const std::string& path, const char* told) {
    EXPECT_NE(StimFileRead(path), Outcome::Done);
    EXPECT_EQ(popups.back().text, told);
  };
  refuse(folder.File("missing.stm"), OpenFailed);
  refuse(folder.Path().string(), OpenFailed);
  refuse(Made(0.5F, 10, 7), WrongFormat);
  refuse(Made(NAN, 10), WrongFormat);
  refuse(Claiming(0.5F, 0), WrongFormat);
  refuse(Claiming(0.5F, -7), WrongFormat);
  refuse(Claiming(0.5F, 5'000'002), TooLarge);
  EXPECT_EQ(Stimulus.Profile[3][5], 0.25F);
  EXPECT_EQ(Model.ADInterval, 0.01F);
  EXPECT_EQ(Stimulus.StimFileName, "");
}

TEST_F(StimulusFileTest, AFileOfFullLengthIsWrittenAndReadBack) {
  Stimulus.Profile[6][5'000'000] = 0.5F;
  Stimulus.StimMode = StimManual;
  StimPanelRefresh();
  choices = {folder.File("full.stm"), folder.File("full.stm")};
  answers = {true};
  PressCommand("SaveStimulus");
  EXPECT_EQ(std::filesystem::file_size(folder.File("full.stm")), 140'000'036U);
  Stimulus.Profile[6][5'000'000] = 0.0F;
  PressCommand("OpenStimulus");
  EXPECT_EQ(Model.NumPoints, 5'000'000);
  EXPECT_EQ(Stimulus.Profile[6][5'000'000], 0.5F);
}

TEST_F(StimulusFileTest, AWaveformKeepsItsOwnIntervalAndNameAndWhatTheFileLacks) {
  FitWaveform& wave = Fit.Wave[2];
  wave.WaveStim[0][200] = 7.0F;
  EXPECT_EQ(WaveStimFileRead(Made(0.01005F, 200), wave), 200);
  EXPECT_TRUE(popups.empty()) << "the intervals count as equal";
  EXPECT_EQ(wave.WaveStimInterval, 0.01005F);
  EXPECT_EQ(wave.StimName, "a.stm");
  EXPECT_EQ(wave.WaveStim[6][199], 799.0F);
  EXPECT_EQ(wave.WaveStim[0][200], 7.0F);
  Stimulus.ScriptRunning = 1;
  EXPECT_EQ(WaveStimFileRead(Made(0.5F, 3), wave), 3);
  EXPECT_EQ(popups.back().title, "! New time interval specified") << "asked, script or no script";
  EXPECT_EQ(Model.NumPoints, 10240);
  EXPECT_EQ(WaveStimFileRead(Claiming(0.01F, 1'000'002), wave), 0);
  EXPECT_EQ(popups.back(),
            (SeenPopup{"! Error",
                       "Stimulus file larger than current array size; reset #export pts on Stim "
                       "panel and save new *.stm file."}));
}

TEST_F(StimulusFileTest, AColumnGoesToTheProfileShownAndComesBack) {
  Stimulus.StimTarget = 3;
  Stimulus.StimMode = StimManual;
  StimPanelRefresh();
  Stimulus.Profile[3][0] = 1e-5F;
  Stimulus.Profile[3][1] = -0.1F;
  Stimulus.Profile[3][2] = 1234567.0F;
  Enter("ExportPoints", "3");
  choices = {folder.File("out.asc")};
  PressCommand("ExportStim");
  EXPECT_EQ(ReadWholeFile(folder.File("out.asc")), "1.000000e-02\n1e-05\n-0.1\n1.23457e+06\n");
  Stimulus.Profile[3][1] = 0.0F;
  answers = {true};
  choices = {folder.File("out.asc")};
  PressCommand("ImportStim");
  EXPECT_EQ(Stimulus.Profile[3][1], -0.1F);
  EXPECT_EQ(Model.NumPoints, 3) << "the count, not the count less one";
  EXPECT_EQ(Stimulus.StimMode, StimUser);
  EXPECT_EQ(Shown("StimFile"), "") << "100 samples or fewer show no name";
}

TEST_F(StimulusFileTest, ColumnsOfEveryKindOfTextAreRead) {
  using Case = std::pair<const char*, Floats>;
  for (const auto& [text, samples] :
       {Case{"0.01\n1\n2\n3", {1, 2, 3}}, Case{"\xEF\xBB\xBF 0.01\r\n1\r\n2\r\n", {1, 2}},
        Case{"0.01\r1\r2\r", {1, 2}}, Case{"0.01\n\nx\n4 and more\nnan\n1e99\n", {0, 0, 4, 4, 4}},
        Case{"0.01\n", {}}, Case{"", {}}}) {
    EXPECT_EQ(ReadStimColumn(folder.Written("a.asc", text))->samples, samples) << text;
  }
}

TEST_F(StimulusFileTest, AnImportIsAResultFrom101SamplesOn) {
  Stimulus.Profile[1][101] = -9.0F;
  std::string text = "0.01\n";
  for (int i = 0; i < 100; ++i) text += "2\n";
  EXPECT_EQ(StimAsciiImport(folder.Written("a.asc", text)), 0);
  EXPECT_EQ(StimAsciiImport(folder.Written("a.asc", text + std::string(1'000'000, '3') + "\n")), 1)
      << "a line without measure is one line";
  EXPECT_EQ(Stimulus.Profile[1][101], -9.0F) << "the samples after those of the file stay";
  EXPECT_EQ(StimAsciiImport(folder.File("missing.asc")), std::nullopt);
  EXPECT_EQ(popups.back().text, OpenFailed);
}

}  // namespace
}  // namespace zelvane
