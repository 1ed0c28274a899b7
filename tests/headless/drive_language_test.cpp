// The command language over a small panel of the tests' own: every command's object, event and error, word
// for word.
#include <sstream>
#include <vector>

#include "headless/internal/drive_session.h"
#include "model/model_store.h"
#include "shell/zoom_graph.h"
#include "support/store_test.h"

namespace zelvane {
namespace {

void Ask(const ControlEvent&) {
  ConsoleLine(ConfirmPopup("?", "Go on?") ? "went on" : "stayed");
}

void Open(const ControlEvent&) {
  const auto path = FileSelectPopup({.title = "Read", .filter = "*.mod"});
  if (path) ConsoleLine("reading " + *path);
}

void OpenMany(const ControlEvent&) {
  for (const std::string& path : MultiFileSelectPopup({.title = "Read", .filter = "*.abf"}))
    ConsoleLine(path);
}

void Dialog(const ControlEvent&) {
  const bool accepted = RunModalPanel("Modal", "Which?");
  ConsoleLine(FormatText("%d channel %g", accepted ? 1 : 0, ControlNumber("Channel")));
}

bool stopped = false;

void Work(const ControlEvent&) {
  stopped = false;
  for (int i = 1; i <= 4 && !stopped; ++i) {
    ConsoleLine(FormatText("step %d", i));
    ProcessSystemEvents();
  }
}

void Stop(const ControlEvent&) {
  stopped = true;
}

void Leave(const ControlEvent&) {
  QuitUserInterface();
}

constexpr auto Number = ControlKind::Number;
constexpr auto Button = ControlKind::Button;

// clang-format off
constexpr ControlDecl TestControls[] = {
    {"NumPoints",   Number,               "Points", "",   "%d",    "FxnNumPoints", nullptr, "How many."},
    {"Temperature", Number,               "Warmth", "C",  "%.1f",  "FxnWarmth",    nullptr, ""},
    {"ModelTitle",  ControlKind::Text,    "Title",  "",   "",      "FxnTitle",     nullptr, ""},
    {"AutoNoise",   ControlKind::Switch,  "Noise",  "",   "%g",    "FxnNoise",     nullptr, ""},
    {"DisplayUnits",ControlKind::Choice,  "Units",  "",   "%g",    "FxnUnits",     nullptr, "", 0, 0, "#|pS|pA|Po"},
    {"Length",      ControlKind::Readout, "Length", "",   "%.3ems","",             nullptr, ""},
    {"Ask",         Button,               "Ask",    "",   "",      "FxnAsk",       Ask,     ""},
    {"Open",        Button,               "Open",   "",   "",      "FxnOpen",      Open,    ""},
    {"OpenMany",    Button,               "Many",   "",   "",      "FxnOpenMany",  OpenMany,""},
    {"Dialog",      Button,               "Dialog", "",   "",      "FxnDialog",    Dialog,  ""},
    {"Work",        Button,               "Work",   "",   "",      "FxnWork",      Work,    ""},
    {"Stop",        Button,               "Stop",   "",   "",      "FxnStop",      Stop,    "", 0, 0, "", 0, true},
    {"Leave",       Button,               "Leave",  "",   "",      "FxnLeave",     Leave,   ""},
};
constexpr ControlDecl ModalControls[] = {{"Channel", Number, "Channel"}};
constexpr MenuDecl TestMenu[] = {{"File/New", "MenuNew", [] { ConsoleLine("new"); }}};
// clang-format on

class DriveLanguageTest : public StoreTest {
 protected:
  DriveLanguageTest() {
    AddPanel({.name = "Main", .key = [](std::string_view key) { ConsoleLine(key); }});
    AddControls("Main", "all", TestControls);
    AddPanel({.name = "Modal"});
    AddControls("Modal", "all", ModalControls);
    AddMenu(TestMenu);
    AddTextBox("Main", "Log").lines = {"one", "two"};
    Table& table = AddTable("Main", "Grid", 2, 2);
    table.editable = true;
    AddGraph("Main", "Plain", "x", "y");
    ZoomGraphCreate(AddGraph("Main", "Trace", "Time (ms)", "pA", 1));
    ShowPanel("Main");
    WriteAllControls();
    ShowNumber("Length", 102.4);
    SetFrontEnd(DriveFrontEnd(session, {}));
    session.out = &out;
  }

  /// What the lines of a script write.
  std::string Run(const std::string& script) {
    out.str("");
    std::istringstream in(script);
    RunLines(session, in);
    return out.str();
  }

  struct Case {
    const char* script;
    const char* written;
  };

  void ExpectWritten(const std::vector<Case>& cases) {
    for (const Case& c : cases) EXPECT_EQ(Run(c.script), c.written) << c.script;
  }

  std::ostringstream out;
  DriveSession session;
};

TEST_F(DriveLanguageTest, TypedValuesReachTheStoreWithACommit) {
  ExpectWritten(
      {{"set NumPoints 77\nget NumPoints", "{\"name\":\"NumPoints\",\"value\":10240}\n"},
       {"commit NumPoints\nget NumPoints", "{\"name\":\"NumPoints\",\"value\":77}\n"},
       {"enter Temperature 36.6\nget Temperature", "{\"name\":\"Temperature\",\"value\":36.5999985}\n"},
       {"enter ModelTitle \"two words\"\nget ModelTitle",
        "{\"name\":\"ModelTitle\",\"value\":\"two words\"}\n"},
       {"enter DisplayUnits pA\nget DisplayUnits", "{\"name\":\"DisplayUnits\",\"value\":2}\n"},
       {"press FxnNoise\nget AutoNoise\npress FxnNoise\nget AutoNoise",
        "{\"name\":\"AutoNoise\",\"value\":1}\n{\"name\":\"AutoNoise\",\"value\":0}\n"},
       {"press MenuNew", "{\"console\":\"new\"}\n"},
       {"press NumPoints\nkey Main F5", "{\"console\":\"F5\"}\n"}});
  EXPECT_FALSE(session.misunderstood);
}

TEST_F(DriveLanguageTest, ARefusalKeepsTheValueAndIsNoFaultOfTheScript) {
  SetDimmed("AutoNoise", true);
  ExpectWritten({{"set NumPoints many", "{\"error\":\"NumPoints: not a number\"}\n"},
                 {"enter NumPoints nan", "{\"error\":\"NumPoints: not a finite number\"}\n"},
                 {"enter Temperature 1e999", "{\"error\":\"Temperature: not a finite number\"}\n"},
                 {"enter NumPoints 1.5",
                  "{\"error\":\"NumPoints: not a whole number, or too large for this field\"}\n"},
                 {"press FxnNoise", "{\"error\":\"FxnNoise: dimmed\"}\n"},
                 {"close Modal", "{\"error\":\"Modal: not open\"}\n"},
                 {"strip Plain x 1 99", "{\"error\":\"Plain: no zoom strips on this graph\"}\n"},
                 {"dump StateLabel /tmp/never", "{\"error\":\"StateLabel: texts, not numbers\"}\n"},
                 {"enter-cell Grid 1 1 x", "{\"error\":\"Grid: not a number\"}\n"},
                 {"help MenuNew", "{\"error\":\"MenuNew: a menu command has no help text\"}\n"},
                 {"get NumPoints", "{\"name\":\"NumPoints\",\"value\":10240}\n"}});
  EXPECT_FALSE(session.misunderstood);
}

TEST_F(DriveLanguageTest, LinesThatNameNothingAreToldAndMarkTheRun) {
  const std::string junk("\xff\x01\x00 \x80", 5);
  for (const std::string& line : {std::string("frobnicate"),
                                  std::string("get"),
                                  std::string("get NumPoints extra"),
                                  std::string("get KOn[99]"),
                                  std::string("get KOn[1"),
                                  std::string("set Baseline 3"),
                                  std::string("commit Nothing"),
                                  std::string("press FxnNothing"),
                                  std::string("help FxnNothing"),
                                  std::string("close Nothing"),
                                  std::string("key Nothing x"),
                                  std::string("control KOn[1]"),
                                  std::string("text Grid"),
                                  std::string("cell Log 1 1"),
                                  std::string("cell Grid 3 1"),
                                  std::string("cell Grid 1 0"),
                                  std::string("graph Main"),
                                  std::string("cursor Trace 2 5"),
                                  std::string("cursor Trace 1 nan"),
                                  std::string("strip Trace z 1 9"),
                                  std::string("zoom Trace in"),
                                  std::string("page Trace x 1.5"),
                                  std::string("answer maybe"),
                                  std::string("reply Channel"),
                                  std::string("during 0 press FxnStop"),
                                  std::string("during 1 enter FxnStop"),
                                  std::string("during 1 press FxnNothing"),
                                  std::string("slice KOn 0 1"),
                                  std::string("slice KOn 30 3"),
                                  std::string("slice KOn 1 -1"),
                                  std::string("slice KOn a 1"),
                                  std::string("slice NumPoints 0 1"),
                                  std::string("dump KOn /tmp/never 99"),
                                  std::string("set ModelTitle \"open"),
                                  std::string(1000001, 'x'),
                                  junk}) {
    SCOPED_TRACE(line.substr(0, 60));
    session.misunderstood = false;
    const std::string written = Run(line + "\n");
    EXPECT_EQ(written.substr(0, 10), "{\"error\":\"");
    EXPECT_LT(written.size(), 300U);
    EXPECT_TRUE(session.misunderstood);
  }
}

TEST_F(DriveLanguageTest, BlankLinesCommentsAndForeignLineEndsAreTaken) {
  EXPECT_EQ(Run("\xEF\xBB\xBF# a \"comment\r\n\r\n  \t\n  # more\nget NumPoints\r\n"),
            "{\"name\":\"NumPoints\",\"value\":10240}\n");
  EXPECT_FALSE(session.misunderstood);
}

TEST_F(DriveLanguageTest, QuestionsAreAnsweredFromTheQueueInTurn) {
  ExpectWritten(
      {{"answer yes\nanswer no\npress FxnAsk\npress FxnAsk",
        "{\"popup\":\"confirm\",\"title\":\"?\",\"text\":\"Go on?\",\"answer\":\"yes\"}\n{\"console\":\"went "
        "on\"}\n"
        "{\"popup\":\"confirm\",\"title\":\"?\",\"text\":\"Go "
        "on?\",\"answer\":\"no\"}\n{\"console\":\"stayed\"}\n"},
       {"press FxnAsk",
        "{\"popup\":\"confirm\",\"title\":\"?\",\"text\":\"Go on?\",\"answer\":\"no\",\"unanswered\":true}\n"
        "{\"console\":\"stayed\"}\n"}});
}

TEST_F(DriveLanguageTest, FileDialogsTakeChoicesOrAreCancelled) {
  ExpectWritten(
      {{"choose \"a b.mod\"\npress FxnOpen",
        "{\"popup\":\"file\",\"title\":\"Read\",\"filter\":\"*.mod\",\"answer\":\"a "
        "b.mod\"}\n{\"console\":\"reading a b.mod\"}\n"},
       {"choose cancel\npress FxnOpen",
        "{\"popup\":\"file\",\"title\":\"Read\",\"filter\":\"*.mod\",\"answer\":null}\n"},
       {"press FxnOpen",
        "{\"popup\":\"file\",\"title\":\"Read\",\"filter\":\"*.mod\",\"answer\":null,\"unanswered\":true}\n"},
       {"choose a b\npress FxnOpenMany",
        "{\"popup\":\"file\",\"title\":\"Read\",\"filter\":\"*.abf\",\"answer\":[\"a\",\"b\"]}\n{\"console\":"
        "\"a\"}\n"
        "{\"console\":\"b\"}\n"}});
}

TEST_F(DriveLanguageTest, AReplyFillsAModalDialogAndLeavesIt) {
  const std::string dialog = "{\"popup\":\"dialog\",\"name\":\"Modal\",\"text\":\"Which?\",\"answer\":";
  EXPECT_EQ(Run("reply Channel 3 ok\npress FxnDialog"), dialog + "\"ok\"}\n{\"console\":\"1 channel 3\"}\n");
  EXPECT_EQ(Run("reply Channel 4\npress FxnDialog"), dialog + "\"ok\"}\n{\"console\":\"1 channel 4\"}\n");
  EXPECT_EQ(Run("reply cancel\npress FxnDialog"), dialog + "\"cancel\"}\n{\"console\":\"0 channel 4\"}\n");
  EXPECT_EQ(Run("press FxnDialog"),
            dialog + "\"cancel\",\"unanswered\":true}\n{\"console\":\"0 channel 4\"}\n");
  EXPECT_EQ(Run("reply Channel x ok\npress FxnDialog"),
            "{\"error\":\"Channel: not a number\"}\n" + dialog + "\"ok\"}\n{\"console\":\"1 channel 4\"}\n");
  EXPECT_FALSE(session.misunderstood);
  EXPECT_EQ(Run("reply Chanel 5 ok\npress FxnDialog"),
            "{\"error\":\"unknown field of Modal: Chanel; did you mean Channel?\"}\n" + dialog +
                "\"ok\"}\n{\"console\":\"1 channel 4\"}\n");
  EXPECT_TRUE(session.misunderstood);
}

TEST_F(DriveLanguageTest, AQueuedPressHappensAtItsMomentOfTheNextCommand) {
  ExpectWritten(
      {{"during 2 press FxnStop\npress FxnWork", "{\"console\":\"step 1\"}\n{\"console\":\"step 2\"}\n"},
       {"during 1 press FxnNoise\nduring 3 press FxnStop\nanswer no\npress FxnWork",
        "{\"console\":\"step 1\"}\n{\"error\":\"FxnNoise: a run is in progress\"}\n{\"console\":\"step 2\"}\n"
        "{\"console\":\"step 3\"}\n"},
       {"during 1 press FxnStop\nget AutoNoise\npress FxnWork",  // the question came next
        "{\"name\":\"AutoNoise\",\"value\":0}\n{\"console\":\"step 1\"}\n{\"console\":\"step 2\"}\n"
        "{\"console\":\"step 3\"}\n{\"console\":\"step 4\"}\n"}});
}

TEST_F(DriveLanguageTest, LeavingTheProgramOrQuitEndsTheScript) {
  EXPECT_EQ(Run("press FxnLeave\nget NumPoints"), "");
  session.ended = false;
  EXPECT_EQ(Run("quit\nget NumPoints"), "");
}

TEST_F(DriveLanguageTest, ARightClickShowsHelpAndDoesNothingElse) {
  ExpectWritten({{"help FxnNumPoints\nhelp NumPoints",
                  "{\"popup\":\"message\",\"title\":\"? Help\",\"text\":\"How many.\"}\n"
                  "{\"popup\":\"message\",\"title\":\"? Help\",\"text\":\"How many.\"}\n"},
                 {"help FxnNoise\nget AutoNoise",
                  "{\"popup\":\"message\",\"title\":\"? "
                  "Help\",\"text\":\"\"}\n{\"name\":\"AutoNoise\",\"value\":0}\n"}});
}

TEST_F(DriveLanguageTest, ControlsTextBoxesTablesAndPanelsAreTold) {
  SetColour("Length", "green");
  ExpectWritten({{"control Temperature",
                  "{\"name\":\"Temperature\",\"panel\":\"Main\",\"value\":25,\"dimmed\":false,\"visible\":"
                  "true,\"help\":\"\","
                  "\"callback\":\"FxnWarmth\",\"label\":\"Warmth\",\"unit\":\"C\",\"shown\":\"25.0\"}\n"},
                 {"control Length",
                  "{\"name\":\"Length\",\"panel\":\"Main\",\"value\":\"1.024e+02ms\",\"dimmed\":false,"
                  "\"visible\":true,\"help\":\"\","
                  "\"callback\":\"\",\"colour\":\"green\",\"label\":\"Length\",\"shown\":\"1.024e+02ms\"}\n"},
                 {"get Length\nget Ask",
                  "{\"name\":\"Length\",\"value\":\"1.024e+02ms\"}\n{\"name\":\"Ask\",\"value\":null}\n"},
                 {"text Log", "{\"name\":\"Log\",\"lines\":[\"one\",\"two\"]}\n"},
                 {"cell Grid 2 1", "{\"name\":\"Grid\",\"value\":\"\"}\n"},
                 {"enter-cell Grid 2 1 0.25\ncell Grid 2 1",
                  "{\"name\":\"Grid\",\"value\":0.25}\n{\"name\":\"Grid\",\"value\":0.25}\n"},
                 {"panels", "{\"panels\":[\"Main\"],\"tag\":\"\"}\n"},
                 {"close Main\npanels", "{\"panels\":[],\"tag\":\"\"}\n"}});
}

TEST_F(DriveLanguageTest, NumbersReadBackToTheSameValue) {
  Model.Temperature = 0.1F;
  Model.KOn[1] = 0.1;
  Model.KOn[2] = 1.0 / 3.0;
  Model.VHold = std::numeric_limits<float>::quiet_NaN();
  Model.VRev = -std::numeric_limits<float>::infinity();
  Model.StateConductance[2] = 1e-30F;
  ExpectWritten({{"get Temperature", "{\"name\":\"Temperature\",\"value\":0.100000001}\n"},
                 {"slice KOn 1 3", "{\"name\":\"KOn\",\"first\":1,\"value\":[0.1,0.3333333333333333,0]}\n"},
                 {"get VHold\nget VRev",
                  "{\"name\":\"VHold\",\"value\":\"nan\"}\n{\"name\":\"VRev\",\"value\":\"-inf\"}\n"},
                 {"slice StateConductance 0 3",
                  "{\"name\":\"StateConductance\",\"first\":0,\"value\":[0,0,1e-30]}\n"}});
}

TEST_F(DriveLanguageTest, ArraysAreWrittenWholeOrRefusedWithTheWayToSlices) {
  ExpectWritten({{"get DrugLabel", "{\"name\":\"DrugLabel\",\"value\":[\"\",\"\",\"\",\"\",\"\",\"\"]}\n"},
                 {"get SimTrace",
                  "{\"error\":\"SimTrace: 5000001 elements; slice SimTrace 0 COUNT writes some of them\"}\n"},
                 {"slice Occupancy[3] 1 2", "{\"name\":\"Occupancy[3]\",\"first\":1,\"value\":[0,0]}\n"},
                 {"slice KOn 32 0", "{\"name\":\"KOn\",\"first\":32,\"value\":[]}\n"}});
}

TEST_F(DriveLanguageTest, ADumpHoldsLittleEndianFloats) {
  const TemporaryFolder folder;
  Model.KOn[1] = 1.0;
  Model.KOn[2] = -2.5;
  const std::string path = folder.File("with blank.f32");
  EXPECT_EQ(Run("dump KOn \"" + path + "\" 2"), "{\"name\":\"KOn\",\"count\":2}\n");
  EXPECT_EQ(ReadWholeFile(path), std::string("\x00\x00\x80\x3f\x00\x00\x20\xc0", 8));
  Run("dump KOn \"" + path + "\"");
  EXPECT_EQ(ReadWholeFile(path).size(), 31U * 4U);
  EXPECT_EQ(Run("dump KOn " + folder.Path().string()),
            "{\"error\":\"cannot write " + folder.Path().string() + "\"}\n");
  EXPECT_FALSE(session.misunderstood);
}

TEST_F(DriveLanguageTest, GraphsTellPlotsAxesCursorsAndWhereTheViewLies) {
  Graph& graph = GraphNamed("Trace");
  const std::vector<float> wave{0.0F, -31.2F, 0.4F};
  PlotWave(graph, PlotStyle::Stair, DarkBlue, wave, 0.0, 50.0);
  PlotWave(graph, PlotStyle::Points, Black, std::span<const float>{}, 0.0, 1.0);
  ZoomSetFullRange(graph, 'x', 0.0, 200.0);
  SetAxisRange(graph, 'y', -40.0, 5.0);
  ExpectWritten(
      {{"cursor Trace 1 33 66\ngraph Trace",
        "{\"graph\":\"Trace\",\"plots\":[{\"style\":\"stair\",\"colour\":[0,0,128],\"count\":3,\"x\":[0,100],"
        "\"y\":[-31.2000008,0.400000006]},{\"style\":\"points\",\"colour\":[0,0,0],\"count\":0,\"x\":null,"
        "\"y\":null}],"
        "\"axes\":{\"x\":{\"title\":\"Time (ms)\",\"scaling\":\"auto\",\"min\":0,\"max\":100,\"log\":false},"
        "\"y\":{\"title\":\"pA\",\"scaling\":\"manual\",\"min\":-40,\"max\":5,\"log\":false}},"
        "\"cursors\":[{\"x\":33,\"y\":66,\"enabled\":true,\"colour\":[0,0,0]}],"
        "\"full\":{\"x\":[0,200],\"y\":[0,1]},\"thumb\":{\"x\":[0,500],\"y\":[-2000,22500]}}\n"},
       {"graph Plain",
        "{\"graph\":\"Plain\",\"plots\":[],"
        "\"axes\":{\"x\":{\"title\":\"x\",\"scaling\":\"auto\",\"min\":0,\"max\":1,\"log\":false},"
        "\"y\":{\"title\":\"y\",\"scaling\":\"auto\",\"min\":0,\"max\":1,\"log\":false}},\"cursors\":[]}"
        "\n"}});
}

TEST_F(DriveLanguageTest, StripsButtonsThumbsAndPagesMoveTheView) {
  Graph& graph = GraphNamed("Trace");
  ZoomSetFullRange(graph, 'x', 0.0, 1000.0);
  SetAxisRange(graph, 'x', 0.0, 1000.0);
  const auto min = [&graph] { return ViewRange(graph, 'x').min; };
  EXPECT_EQ(Run("strip Trace x 100 200"), "");
  EXPECT_EQ(min(), 100.0);
  Run("zoom Trace right");
  EXPECT_EQ(min(), 110.0);
  Run("thumb Trace x -10");
  EXPECT_EQ(min(), 100.0);
  Run("page Trace x 2");
  EXPECT_EQ(min(), 300.0);
  Run("view Trace x 12.5 600\nview Plain y -2 3");
  EXPECT_EQ(min(), 12.5);
  EXPECT_EQ(ViewRange(GraphNamed("Plain"), 'y').max, 3.0);
  Run("view Trace all");
  EXPECT_TRUE(graph.x.automatic);
  EXPECT_EQ(Run("view Trace x 5 5"),
            "{\"error\":\"Trace: the smallest coordinate is not below the largest\"}\n");
  EXPECT_FALSE(session.misunderstood);
  Run("view Trace x 5");
  EXPECT_TRUE(session.misunderstood);
}

}  // namespace
}  // namespace zelvane
