// Start-up, what every control must have for its user, and the end of the program.
#include "app/application.h"

#include <map>

#include "app/stores.h"
#include "app/undo.h"
#include "dwells/dwell_lists.h"
#include "dwells/dwell_store.h"
#include "model/model_file.h"
#include "noise/pair_files.h"
#include "screen/entry.h"
#include "stimulus/stimulus_file.h"
#include "stimulus/stimulus_store.h"
#include "support/small_disk.h"
#include "support/store_digest.h"
#include "support/store_test.h"
#include "trace/trace_store.h"
#include "trace/trace_write.h"

namespace zelvane {
namespace {

class ApplicationTest : public StoreTest {
 protected:
  void Start(Texts files = {}) {
    StartApplication({folder.Path().string(), std::move(files), {{1.0, 2.0, 3.0}}});
  }
};

TEST_F(ApplicationTest, AStartWithoutAReadableConfigStandsAtTheInitialValuesAndAsksNothing) {
  for (const bool junk : {false, true}) {
    if (junk) WriteWholeFile(folder.File("config.mod"), "this is no model");
    Start();
    EXPECT_TRUE(popups.empty() && fileRequests.empty());
    EXPECT_EQ(Model.NumPoints, 10240);
    EXPECT_EQ(Screen.PanelTag, "MN");
    EXPECT_TRUE(PanelVisible("MainPanel"));
    EXPECT_FALSE(PanelVisible("AboutPanel"));
    EXPECT_EQ(Stimulus.Profile[1][100], 0.005F) << "the automatic step is built before the first run";
    EXPECT_EQ(Stimulus.Profile[1][99], 0.0F);
  }
}

TEST_F(ApplicationTest, ARefusedFirstRunLeavesNothingToUndo) {
  Start();
  ASSERT_NE(Model.ReseedSimulation, 0) << "subunits force it to 0 in the run";
  Press(*FindCommand("AcquireData"));
  ASSERT_EQ(popups.size(), 1U) << "no state is on";
  EXPECT_FALSE(CanUndo());
  TypeInto(ControlNamed("NumPoints"), "500");
  Press(*FindCommand("AcquireData"));
  EXPECT_TRUE(CanUndo()) << "the run has taken the typed length";
}

TEST_F(ApplicationTest, EachTableOfFitLimitsHasItsDefaultsAfterStart) {
  Start();
  for (const auto& [name, value] : {std::pair{"SublevelFitLimits[8].hi", 10000.0},
                                    {"VarFitLimits[1].lo", -10.0},
                                    {"SpecFitLimits[4].lo", 1e-12},
                                    {"DwellFitLimits[10].hi", 100.0},
                                    {"ExpFitLimits[3].hi", 1000.0}}) {
    EXPECT_EQ(FieldNumber(FindField(name)), value) << name;
  }
}

/// Undo copies all settings at each action, so samples must not be settings.
TEST_F(ApplicationTest, SavedFieldsAreSettingsAndSettingsAreSmall) {
  Start();
  for (const auto& [name, field] : AllFields()) {
    EXPECT_TRUE(!field.kind.saved || field.kind.role == FieldRole::Setting) << name;
    if (field.kind.role != FieldRole::Setting) continue;
    for (const FieldIndex& index : field.index) EXPECT_LE(index.last, 4096) << name;
  }
}

TEST_F(ApplicationTest, ResetBringsEveryFieldBack) {
  const std::string before = StoreDigest();
  for (const auto& [name, field] : AllFields()) SetFieldText(EndOf(field, &FieldIndex::last), "77");
  EXPECT_NE(StoreDigest(), before);
  ResetStores();
  EXPECT_EQ(StoreDigest(), before);
}

TEST_F(ApplicationTest, ARightClickOnAnyControlExplainsItAndChangesNothing) {
  Start();
  const std::string before = StoreDigest();
  for (Control& control : Screen.controls) {
    popups.clear();
    RightClick(control);
    ASSERT_EQ(popups.size(), 1U) << control.name;
    const std::string longer = control.command == "FitHelp" ? "? Waveform Fitting Help" : "? Main Panel Help";
    EXPECT_EQ(popups[0].title, control.helpActs ? longer : "? Help") << control.name;
    EXPECT_FALSE(popups[0].text.empty()) << control.name << " (" << control.command << ") has no help";
  }
  EXPECT_EQ(StoreDigest(), before);
}

TEST_F(ApplicationTest, ATextThatIsNoNumberChangesNoControl) {
  Start();
  const std::string before = StoreDigest();
  for (Control& control : Screen.controls) {
    if (control.kind != ControlKind::Number) continue;
    const std::string shown = ShownText(control);
    for (const char* text : {"", "x", "1.000,5", "nan", "inf", "1e999"}) {
      EXPECT_NE(CheckTyped(control, text), "") << control.name << " <- " << text;
      EXPECT_NE(EnterTyped(control, text), "") << control.name << " <- " << text;
      EXPECT_NE(TypeInto(control, text), "") << control.name << " <- " << text;
    }
    EXPECT_EQ(ShownText(control), shown) << control.name;
  }
  EXPECT_EQ(StoreDigest(), before);
}

TEST_F(ApplicationTest, AWriterThatFailsTellsItAndLeavesTheFormerFile) {
  Start();
  Trace.SimTraceUsed = Model.NumPoints = 2000;
  Dwell.NumOpenTimes = 2000.0F;
  const Floats numbers(2000, 1.0F);
  struct Writer {
    const char* what;
    bool appends;
    std::function<Outcome(const std::string& path)> write;
  };
  const auto model = [](const std::string& path) {
    Model.ModelFileName = path;
    return ModelFileWrite();
  };
  for (const Writer& writer :
       {Writer{"the trace as text", false, TraceTextWrite}, Writer{"the trace as ABF", false, TraceAbfWrite},
        Writer{"the former ABF", false, LegacyAbfWrite}, Writer{"autosaved text", true, AutosaveTextWrite},
        Writer{"autosaved ABF", true, AutosaveAbfWrite}, Writer{"the model", false, model},
        Writer{"the stimulus", false, [](const std::string& path) { return StimFileWrite(path, 2000); }},
        Writer{"a profile", false, [](const std::string& path) { return StimAsciiExport(path, 2000); }},
        Writer{"pairs", false,
               [&](const std::string& path) { return PairTextWrite(path, numbers, numbers); }},
        Writer{"dwells", false,
               [](const std::string& path) { return ExportDwellList(DwellListKind::Open, path); }}}) {
    SCOPED_TRACE(writer.what);
    const std::string path = folder.File("out");
    std::filesystem::remove(path);
    ASSERT_EQ(writer.write(path), Outcome::Done);
    const std::string former = ReadWholeFile(path);
    const auto expectFailure = [&](const std::string& target) {
      popups.clear();
      EXPECT_NE(writer.write(target), Outcome::Done) << target;
      ASSERT_FALSE(popups.empty()) << target;
      EXPECT_EQ(popups.back().title, "! File error") << target;
    };
    {
      const SmallDisk disk(writer.appends ? former.size() * 3 / 2 : former.size() / 2);
      expectFailure(path);
    }
    std::filesystem::permissions(folder.Path(),
                                 std::filesystem::perms::owner_read | std::filesystem::perms::owner_exec);
    for (const std::string& target :
         {std::string("/dev/full"), folder.Path().string(), folder.File("none/out"), folder.File("new")})
      expectFailure(target);
    std::filesystem::permissions(folder.Path(), std::filesystem::perms::owner_all);
    EXPECT_EQ(ReadWholeFile(path), former);
    EXPECT_EQ(folder.Names(), Texts{"out"}) << "no temporary file is left";
  }
}

TEST_F(ApplicationTest, NamesAreUniqueAndEveryCommandLeadsSomewhere) {
  Start();
  std::map<std::string, const Control*> names;
  std::map<std::string, Action> actions;
  for (const Control& control : Screen.controls) {
    // Only a store's field may have a control on several panels.
    const auto [former, isFirst] = names.try_emplace(control.name, &control);
    EXPECT_TRUE(isFirst || (control.field && former->second->panel != control.panel)) << control.name;
    const auto [known, isNew] = actions.try_emplace(control.command, control.action);
    if (!control.command.empty()) {
      EXPECT_EQ(known->second, control.action) << control.command << " does two things";
    }
    const bool deadButton = control.kind == ControlKind::Button && control.action == nullptr;
    EXPECT_FALSE(deadButton) << control.name << " is a button that does nothing";
  }
  for (const MenuItem& item : Screen.menu) EXPECT_NE(item.action, nullptr) << item.path;
  for (const Panel& panel : Screen.panels) EXPECT_FALSE(panel.help.empty()) << panel.name << " has no help";
}

TEST_F(ApplicationTest, TheThreeWaysOutAskTheirQuestionAndNoDoesNothing) {
  bool ended = false;
  Start();
  FrontEnd frontEnd = SetFrontEnd({});
  frontEnd.quit = [&] { ended = true; };
  SetFrontEnd(frontEnd);
  Press(*FindCommand("Shutdown"));
  PressMenu(*FindMenu("ShutDown"));
  ClosePanel(PanelNamed("MainPanel"));
  const std::string asked = "Are you ready to exit Zelvane";
  EXPECT_EQ(PopupTexts(), (Texts{asked + "?", asked + " ?", asked + " ?"}));
  EXPECT_FALSE(ended);
  EXPECT_TRUE(PanelVisible("MainPanel"));
  answers = {true};
  Press(*FindCommand("Shutdown"));
  EXPECT_TRUE(ended);
}

}  // namespace
}  // namespace zelvane
