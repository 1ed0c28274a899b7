#include "model/model_file.h"

#include "analysis/analysis_store.h"
#include "model/model_lines.h"
#include "model/model_text.h"
#include "rscm/rscm_store.h"
#include "stimulus/stimulus_store.h"
#include "support/pressing.h"

namespace zelvane {
namespace {

namespace fs = std::filesystem;

constexpr char CannotWrite[] =
    "Either file cannot be created (e.g. no space on disk) or cannot overwrite Read-only file.";

class ModelFileTest : public PanelTest {
 protected:
  /// Writes a file with a scheme of two states, different from that of the stores.
  std::string WriteModel(const std::string& name) {
    const ModelStore former = Model;
    Model.ModelTitle = "Saved";
    Model.StateOn[1] = Model.StateOn[2] = 1;
    Model.KOn[1] = 250;
    const std::string path = folder.File(name);
    WriteWholeFile(path, ModelText());
    Model = former;
    return path;
  }
};

TEST_F(ModelFileTest, TheMenuReadsTheChosenFileAndShowsItOnEveryPanel) {
  const std::string path = WriteModel("two.mod");
  choices = {path};
  PressCommand("OpenParameterFile");
  EXPECT_EQ(fileRequests.at(0).title, "Read Parameters");
  EXPECT_EQ(fileRequests[0].filter, "*.mod");
  EXPECT_FALSE(fileRequests[0].save);
  EXPECT_EQ(Model.ModelFileName, path);
  EXPECT_EQ(ControlNamed("ModelFileName").text, path);
  EXPECT_EQ(ControlNamed("ModelTitle").text, "Saved");
  EXPECT_EQ(ControlNumber("KOn[1]"), 250);
  EXPECT_EQ(ControlNumber("NumPoints"), 100'000);
  EXPECT_TRUE(ControlNamed("KOn[1]").visible) << "both states of the link are on";
  EXPECT_TRUE(popups.empty());
}

TEST_F(ModelFileTest, TheMenuSavesWhatThePanelsShowCommittedOrNot) {
  const std::string path = folder.File("saved.mod");
  TypeOnly("KOn[3]", "77");
  TypeOnly("NumChannels", "12");
  TypeOnly("AutoValue", "0.25");
  TypeOnly("ModelTitle", "Typed");
  TypeOnly("BaselinePts", "31");
  TypeOnly("StateConductance[2]", "40");
  TypeOnly("StartOccupancy[2]", "0.5");
  TypeOnly("RsCmAuto", "on");
  TypeOnly("StateOn[7]", "on");
  TypeOnly("AnalysisDisplay[1]", "on");
  choices = {path};
  PressCommand("SaveParameters");
  EXPECT_EQ(fileRequests.at(0).title, "Save Parameters");
  EXPECT_TRUE(fileRequests.at(0).save);
  EXPECT_EQ(ControlNamed("ModelFileName").text, path);
  ASSERT_TRUE(ReadModelText(ReadWholeFile(path)));
  EXPECT_EQ(Model.KOn[3], 77);
  EXPECT_EQ(Model.NumChannels, 12);
  EXPECT_EQ(Stimulus.AutoValue, 0.25F);
  EXPECT_EQ(Model.ModelTitle, "Typed");
  EXPECT_EQ(Analysis.BaselinePts, 3100) << "typed in ms";
  EXPECT_EQ(Model.StateConductance[2], 40.0F);
  EXPECT_EQ(Model.StartOccupancy[2], 0.5F);
  EXPECT_EQ(RsCm.RsCmAuto, 1);
  EXPECT_EQ(Model.StateOn[7], 1);
  EXPECT_EQ(Analysis.AnalysisDisplay[1], 1);
}

TEST_F(ModelFileTest, AsksTwiceForANameWhileTheFileCannotBeOpened) {
  const std::string path = WriteModel("two.mod");
  Model.ModelFileName = folder.File("missing.mod");
  choices = {folder.Path().string(), path};  // a folder cannot be opened either
  EXPECT_EQ(ModelFileRead(), Outcome::Done);
  EXPECT_EQ(fileRequests.size(), 2U);
  EXPECT_EQ(Model.ModelFileName, path);

  Model.ModelFileName = folder.File("missing.mod");
  Model.ModelTitle = "kept";
  choices = {"", folder.File("none"), path};
  EXPECT_NE(ModelFileRead(), Outcome::Done);
  EXPECT_EQ(choices.size(), 1U) << "there is no third question";
  EXPECT_EQ(Model.ModelTitle, "kept");
  EXPECT_EQ(Model.ModelFileName, folder.File("missing.mod"));
}

TEST_F(ModelFileTest, WhatIsNoModelChangesNothingAndAsksNothing) {
  const std::string text = folder.Written("trace.mod", "ATF\t1.0\n3\t2\n");
  Model.ModelFileName = "former.mod";
  Model.KOn[1] = 5;
  for (const std::string& path :
       {text, folder.Path().string(), folder.File("missing.mod"), std::string("/dev/zero"), std::string()}) {
    EXPECT_NE(ModelFileReadNamed(path), Outcome::Done) << path;
  }
  EXPECT_EQ(Model.ModelFileName, "former.mod");
  EXPECT_EQ(Model.KOn[1], 5);
  EXPECT_TRUE(fileRequests.empty());
  EXPECT_TRUE(popups.empty());
}

TEST_F(ModelFileTest, AFileOfAnySizeIsReadUpToABound) {
  const std::string path = folder.File("huge.mod");
  WriteWholeFile(path, "4ZV\nhuge\n");
  fs::resize_file(path, std::uintmax_t{1} << 36);  // sparse: 64 GB of NUL
  EXPECT_EQ(ModelFileReadNamed(path), Outcome::Done);
  EXPECT_EQ(Model.ModelTitle, "huge");
}

TEST_F(ModelFileTest, AFailedSaveIsToldACancelledDialogIsNotAndTheFormerNameStays) {
  Model.ModelFileName = "former.mod";
  choices = {folder.File("no/such/folder.mod")};
  SaveParameters();
  OpenParameterFile();  // these two are cancelled
  SaveParameters();
  EXPECT_EQ(popups, (std::vector<SeenPopup>{{"! File error", CannotWrite}}));
  EXPECT_EQ(Model.ModelFileName, "former.mod");
  EXPECT_TRUE(folder.Names().empty());
}

TEST_F(ModelFileTest, ReadingRebuildsTheStimulusAndShowsTheGridsLabelsOfAnOlderFile) {
  Model.StateLabel[2] = "open";
  Model.TableStateLabel[2] = "two";
  Stimulus.AutoValue = 0.5F;
  const std::string path = folder.File("old.mod");
  WriteWholeFile(path, InOlderFormat(ModelText(), 2));
  Stimulus.AutoValue = 0.125F;
  ASSERT_EQ(ModelFileReadNamed(path), Outcome::Done);
  EXPECT_EQ(ControlNamed("TableStateLabel[2]").text, "open");
  EXPECT_EQ(Stimulus.Profile[1][500], 0.5F);
}

}  // namespace
}  // namespace zelvane
