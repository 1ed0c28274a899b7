// The command language with a small test panel: the object, event and error of every command, word for word.
#include <sstream>
#include <vector>

#include "headless/drive/drive_session.h"
#include "screen/zoom_graph.h"
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
    {"Stop",        Button,               "Stop",   "",   "",      "FxnStop",      [](const ControlEvent&) { stopped = true; }, "", 0, 0, "", 0, true},
    {"Leave",       Button,               "Leave",  "",   "",      "FxnLeave",     [](const ControlEvent&) { QuitUserInterface(); }, ""},
};
constexpr ControlDecl ModalControls[] = {{"Channel", Number, "Channel"}};
constexpr MenuDecl TestMenu[] = {{"File/New", "MenuNew", [] { ConsoleLine("new"); }}};
// clang-format on

/// Returns the objects that commands write.
std::string Value(const std::string& name, const std::string& value) {
  return R"({"name":")" + name + R"(","value":)" + value + "}\n";
}
std::string Console(const std::string& line) {
  return R"({"console":")" + line + "\"}\n";
}
std::string Error(const std::string& text) {
  return R"({"error":")" + text + "\"}\n";
}
std::string Popup(const std::string& rest) {
  return R"({"popup":)" + rest + "}\n";
}

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

  /// Returns the output of the lines of a script.
  std::string Run(const std::string& script) {
    out.str("");
    std::istringstream in(script);
    RunLines(session, in);
    return out.str();
  }

  struct Case {
    const char* script;
    std::string written;
  };

  void ExpectWritten(const std::vector<Case>& cases) {
    for (const Case& c : cases) EXPECT_EQ(Run(c.script), c.written) << c.script;
  }

  std::ostringstream out;
  DriveSession session;
};

TEST_F(DriveLanguageTest, TypedValuesReachTheStoreWithACommit) {
  ExpectWritten({{"set NumPoints 77\nget NumPoints", Value("NumPoints", "10240")},
                 {"commit NumPoints\nget NumPoints", Value("NumPoints", "77")},
                 {"enter Temperature 36.6\nget Temperature", Value("Temperature", "36.5999985")},
                 {"enter ModelTitle \"two words\"\nget ModelTitle", Value("ModelTitle", "\"two words\"")},
                 {"enter DisplayUnits pA\nget DisplayUnits", Value("DisplayUnits", "2")},
                 {"press FxnNoise\nget AutoNoise\npress FxnNoise\nget AutoNoise",
                  Value("AutoNoise", "1") + Value("AutoNoise", "0")},
                 {"press MenuNew", Console("new")},
                 {"press NumPoints\nkey Main F5", Console("F5")}});
  EXPECT_FALSE(session.misunderstood);
}

TEST_F(DriveLanguageTest, ARefusalKeepsTheValueAndIsNoFaultOfTheScript) {
  SetDimmed("AutoNoise", true);
  ExpectWritten({{"set NumPoints many", Error("NumPoints: not a number")},
                 {"enter NumPoints nan", Error("NumPoints: not a finite number")},
                 {"enter Temperature 1e999", Error("Temperature: not a finite number")},
                 {"enter NumPoints 1.5", Error("NumPoints: not a whole number, or too large for this field")},
                 {"enter Temperature 1e39", Error("Temperature: too large for this field")},
                 {"press FxnNoise", Error("FxnNoise: dimmed")},
                 {"close Modal", Error("Modal: not open")},
                 {"strip Plain x 1 99", Error("Plain: no zoom strips on this graph")},
                 {"dump StateLabel /tmp/never", Error("StateLabel: texts, not numbers")},
                 {"enter-cell Grid 1 1 x", Error("Grid: not a number")},
                 {"help MenuNew", Error("MenuNew: a menu command has no help text")},
                 {"get NumPoints", Value("NumPoints", "10240")}});
  EXPECT_FALSE(session.misunderstood);
}

TEST_F(DriveLanguageTest, LinesThatNameNothingAreToldAndMarkTheRun) {
  // clang-format off
  Texts wrong{
      "frobnicate", "get", "get NumPoints extra", "get KOn[99]", "get KOn[1",
      "set Baseline 3", "commit Nothing", "press FxnNothing", "help FxnNothing", "close Nothing", "key Nothing x",
      "control KOn[1]", "text Grid", "cell Log 1 1", "cell Grid 3 1", "cell Grid 1 0",
      "graph Main", "cursor Trace 2 5", "cursor Trace 1 nan", "strip Trace z 1 9", "zoom Trace in",
      "page Trace x 1.5", "view Trace x 5", "answer maybe", "reply Channel",
      "during 0 press FxnStop", "during 1 enter FxnStop", "during 1 press FxnNothing",
      "slice KOn 0 1", "slice KOn 30 3", "slice KOn 1 -1", "slice KOn a 1", "slice NumPoints 0 1",
      "dump KOn /tmp/never 99", "set ModelTitle \"open"};
  // clang-format on
  wrong.emplace_back(1000001, 'x');
  wrong.emplace_back("\xff\x01\x00 \x80", 5);
  for (const std::string& line : wrong) {
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
            Value("NumPoints", "10240"));
  EXPECT_FALSE(session.misunderstood);
}

TEST_F(DriveLanguageTest, QuestionsAreAnsweredFromTheQueueInTurn) {
  const auto question = [](const char* answer) {
    return Popup(R"("confirm","title":"?","text":"Go on?","answer":)" + std::string(answer));
  };
  ExpectWritten({{"answer yes\nanswer no\npress FxnAsk\npress FxnAsk",
                  question("\"yes\"") + Console("went on") + question("\"no\"") + Console("stayed")},
                 {"press FxnAsk", question(R"("no","unanswered":true)") + Console("stayed")}});
}

TEST_F(DriveLanguageTest, FileDialogsTakeChoicesOrAreCancelled) {
  const auto dialog = [](const char* filter, const char* answer) {
    return Popup(R"("file","title":"Read","filter":")" + std::string(filter) + R"(","answer":)" + answer);
  };
  ExpectWritten(
      {{"choose \"a b.mod\"\npress FxnOpen", dialog("*.mod", "\"a b.mod\"") + Console("reading a b.mod")},
       {"choose cancel\npress FxnOpen", dialog("*.mod", "null")},
       {"press FxnOpen", dialog("*.mod", "null,\"unanswered\":true")},
       {"choose a b\npress FxnOpenMany", dialog("*.abf", R"(["a","b"])") + Console("a") + Console("b")}});
}

TEST_F(DriveLanguageTest, AReplyFillsAModalDialogAndLeavesIt) {
  const auto dialog = [](const char* answer, const char* console) {
    return Popup(R"("dialog","name":"Modal","text":"Which?","answer":)" + std::string(answer)) +
           Console(console);
  };
  ExpectWritten({{"reply Channel 3 ok\npress FxnDialog", dialog("\"ok\"", "1 channel 3")},
                 {"reply Channel 4\npress FxnDialog", dialog("\"ok\"", "1 channel 4")},
                 {"reply cancel\npress FxnDialog", dialog("\"cancel\"", "0 channel 4")},
                 {"press FxnDialog", dialog(R"("cancel","unanswered":true)", "0 channel 4")},
                 {"reply Channel x ok\npress FxnDialog",
                  Error("Channel: not a number") + dialog("\"ok\"", "1 channel 4")}});
  EXPECT_FALSE(session.misunderstood);
  ExpectWritten(
      {{"reply Chanel 5 ok\npress FxnDialog",
        Error("unknown field of Modal: Chanel; did you mean Channel?") + dialog("\"ok\"", "1 channel 4")}});
  EXPECT_TRUE(session.misunderstood);
}

TEST_F(DriveLanguageTest, AQueuedPressHappensAtItsMomentOfTheNextCommand) {
  const auto steps = [](int first, int last) {
    std::string written;
    for (int i = first; i <= last; ++i) written += Console("step " + std::to_string(i));
    return written;
  };
  ExpectWritten({{"during 2 press FxnStop\npress FxnWork", steps(1, 2)},
                 {"during 1 press FxnNoise\nduring 3 press FxnStop\nanswer no\npress FxnWork",
                  steps(1, 1) + Error("FxnNoise: a run is in progress") + steps(2, 3)},
                 {"during 1 press FxnStop\nget AutoNoise\npress FxnWork",  // the question came next
                  Value("AutoNoise", "0") + steps(1, 4)}});
}

TEST_F(DriveLanguageTest, LeavingTheProgramOrQuitEndsTheScript) {
  EXPECT_EQ(Run("press FxnLeave\nget NumPoints"), "");
  session.ended = false;
  EXPECT_EQ(Run("quit\nget NumPoints"), "");
}

TEST_F(DriveLanguageTest, ARightClickShowsHelpAndDoesNothingElse) {
  const std::string help = Popup(R"("message","title":"? Help","text":"How many.")");
  ExpectWritten({{"help FxnNumPoints\nhelp NumPoints", help + help},
                 {"help FxnNoise\nget AutoNoise",
                  Popup(R"("message","title":"? Help","text":"")") + Value("AutoNoise", "0")}});
}

TEST_F(DriveLanguageTest, ControlsTextBoxesTablesAndPanelsAreTold) {
  SetColour("Length", "green");
  ExpectWritten(
      {{"control Temperature",
        R"({"name":"Temperature","panel":"Main","value":25,"dimmed":false,"visible":true,"help":"",)"
        R"("callback":"FxnWarmth","label":"Warmth","unit":"C","shown":"25.0"})"
        "\n"},
       {"control Length",
        R"({"name":"Length","panel":"Main","value":"1.024e+02ms","dimmed":false,"visible":true,"help":"",)"
        R"("callback":"","colour":"green","label":"Length","shown":"1.024e+02ms"})"
        "\n"},
       {"get Length\nget Ask", Value("Length", "\"1.024e+02ms\"") + Value("Ask", "null")},
       {"text Log", "{\"name\":\"Log\",\"lines\":[\"one\",\"two\"]}\n"},
       {"cell Grid 2 1", Value("Grid", "\"\"")},
       {"enter-cell Grid 2 1 0.25\ncell Grid 2 1", Value("Grid", "0.25") + Value("Grid", "0.25")},
       {"panels", "{\"panels\":[\"Main\"],\"tag\":\"\"}\n"},
       {"close Main\npanels", "{\"panels\":[],\"tag\":\"\"}\n"}});
}

TEST_F(DriveLanguageTest, NumbersReadBackToTheSameValueAndLargeArraysAreRefused) {
  const auto slice = [](const char* name, int first, const char* values) {
    return FormatText(R"({"name":"%s","first":%d,"value":[%s]})", name, first, values) + "\n";
  };
  Model.Temperature = 0.1F;
  Model.KOn[1] = 0.1;
  Model.KOn[2] = 1.0 / 3.0;
  Model.VHold = std::numeric_limits<float>::quiet_NaN();
  Model.VRev = -std::numeric_limits<float>::infinity();
  ExpectWritten(
      {{"get Temperature", Value("Temperature", "0.100000001")},
       {"slice KOn 1 3", slice("KOn", 1, "0.1,0.3333333333333333,0")},
       {"slice KOn 32 0", slice("KOn", 32, "")},
       {"slice Occupancy[3] 1 2", slice("Occupancy[3]", 1, "0,0")},
       {"get VHold\nget VRev", Value("VHold", "\"nan\"") + Value("VRev", "\"-inf\"")},
       {"get DrugLabel", Value("DrugLabel", R"(["","","","","",""])")},
       {"get SimTrace", Error("SimTrace: 5000001 elements; slice SimTrace 0 COUNT writes some of them")}});
}

TEST_F(DriveLanguageTest, ADumpHoldsLittleEndianFloats) {
  Model.KOn[1] = 1.0;
  Model.KOn[2] = -2.5;
  const std::string path = folder.File("with blank.f32");
  EXPECT_EQ(Run("dump KOn \"" + path + "\" 2"), "{\"name\":\"KOn\",\"count\":2}\n");
  EXPECT_EQ(ReadWholeFile(path), std::string("\x00\x00\x80\x3f\x00\x00\x20\xc0", 8));
  Run("dump KOn \"" + path + "\"");
  EXPECT_EQ(ReadWholeFile(path).size(), 31U * 4U);
  EXPECT_EQ(Run("dump KOn " + folder.Path().string()), Error("cannot write " + folder.Path().string()));
  EXPECT_FALSE(session.misunderstood);
}

TEST_F(DriveLanguageTest, GraphsTellPlotsAxesCursorsAndWhereTheViewLies) {
  Graph& graph = GraphNamed("Trace");
  const Floats wave{0.0F, -31.2F, 0.4F};
  PlotWave(graph, PlotStyle::Stair, DarkBlue, wave, 0.0, 50.0);
  PlotWave(graph, PlotStyle::Points, Black, std::span<const float>{}, 0.0, 1.0);
  ZoomSetFullRange(graph, 'x', 0.0, 200.0);
  SetAxisRange(graph, 'y', -40.0, 5.0);
  const auto axis = [](const char* title, const char* scaling, const char* range) {
    return FormatText(R"({"title":"%s","scaling":"%s",%s,"log":false})", title, scaling, range);
  };
  const std::string unit = R"("min":0,"max":1)";
  ExpectWritten(
      {{"cursor Trace 1 33 66\ngraph Trace",
        R"({"graph":"Trace","plots":[{"style":"stair","colour":[0,0,128],"count":3,"x":[0,100],)"
        R"("y":[-31.2000008,0.400000006]},)"
        R"({"style":"points","colour":[0,0,0],"count":0,"x":null,"y":null}],"axes":{"x":)" +
            axis("Time (ms)", "auto", R"("min":0,"max":100)") +
            ",\"y\":" + axis("pA", "manual", R"("min":-40,"max":5)") +
            R"(},"cursors":[{"x":33,"y":66,"enabled":true,"colour":[0,0,0]}],)"
            R"("full":{"x":[0,200],"y":[0,1]},"thumb":{"x":[0,500],"y":[-2000,22500]}})"
            "\n"},
       {"graph Plain", R"({"graph":"Plain","plots":[],"axes":{"x":)" + axis("x", "auto", unit.c_str()) +
                           ",\"y\":" + axis("y", "auto", unit.c_str()) + "},\"cursors\":[]}\n"}});
}

TEST_F(DriveLanguageTest, StripsButtonsThumbsAndPagesMoveTheView) {
  Graph& graph = GraphNamed("Trace");
  ZoomSetFullRange(graph, 'x', 0.0, 1000.0);
  SetAxisRange(graph, 'x', 0.0, 1000.0);
  for (const auto& [line, min] : {std::pair{"strip Trace x 100 200", 100.0},
                                  {"zoom Trace right", 110.0},
                                  {"thumb Trace x -10", 100.0},
                                  {"page Trace x 2", 300.0},
                                  {"view Trace x 12.5 600", 12.5}}) {
    EXPECT_EQ(Run(line), "");
    EXPECT_EQ(ViewRange(graph, 'x').min, min) << line;
  }
  Run("view Plain y -2 3\nview Trace all");
  EXPECT_EQ(ViewRange(GraphNamed("Plain"), 'y').max, 3.0);
  EXPECT_TRUE(graph.x.automatic);
  EXPECT_EQ(Run("view Trace x 5 5"), Error("Trace: the smallest coordinate is not below the largest"));
  EXPECT_FALSE(session.misunderstood);
}

}  // namespace
}  // namespace zelvane
