// Commands that read a recording, erase it or step through its episodes, and its readouts on MainPanel.
#include <optional>
#include <string>
#include <string_view>

#include "model/model_events.h"
#include "platform/folders.h"
#include "platform/start_program.h"
#include "screen/screen.h"
#include "stimulus/stimulus.h"
#include "trace/trace_dialogs.h"
#include "trace/trace_events.h"
#include "trace/trace_graph.h"
#include "trace/trace_panels.h"
#include "trace/trace_read.h"
#include "trace/trace_readers.h"
#include "trace/trace_store.h"
#include "trace/trace_write.h"
#include "trace/trace_write_panels.h"

namespace zelvane {
namespace {

constexpr char RecordingGroup[] = "recording";
constexpr char ReadTitle[] = "Read ASCII, ABF, ATF, or OBF Data File";
constexpr char ReadDefault[] = "*.abf";
constexpr char ReadFilter[] = "*.dat;*.atf;*.asc;*.abf;*.ave";
constexpr char AsciiTitle[] = "Read ASCII Data File";
constexpr char AsciiDefault[] = "*.asc;*.ATF;*.ave;*.nrm";
constexpr char AsciiFilter[] = "*.asc";
constexpr char WaveTitle[] = "Select Axon binary file to read";
constexpr char WaveFilter[] = "*.abf";
constexpr char ConversionTool[] = "ABFUtil1.exe";
constexpr char NoConversionTool[] =
    "The conversion tool ABFUtil1.exe is not in the program's folder, or cannot be started.";

void ShowRecording() {
  WriteControls(MainPanelName, RecordingGroup);
  RunSettingsChanged.Tell();
  ShowTraceUnits();
  ShowText("DataName", Trace.TraceFileName);
  StimFollowInterval();
}

// -- Commands --

std::optional<std::string> ChooseFile(const char* title, const char* proposed, const char* filter) {
  FileRequest request;
  request.title = title;
  request.defaultName = proposed;
  request.filter = filter;
  return FileSelectPopup(request);
}

/// Asks for a file of a kind. Returns nullopt when the user cancels, or while autosave is on.
std::optional<std::string> AskForTrace(const char* title, const char* proposed, const char* filter) {
  if (RefusedByAutosave()) return std::nullopt;
  return ChooseFile(title, proposed, filter);
}

void ReadIntoView() {
  if (const auto path = AskForTrace(ReadTitle, ReadDefault, ReadFilter)) TraceRead(*path);
}

void ReadFile() {
  Trace.ParseRequested = 0;
  if (const auto path = AskForTrace(ReadTitle, ReadDefault, ReadFilter)) TraceReadFile(*path);
}

void ReadText() {
  if (const auto path = AskForTrace(AsciiTitle, AsciiDefault, AsciiFilter)) ReadAsciiData(*path);
}

void ReadBinary() {
  static_cast<void>(ReadBinaryRecording());  // has told what failed
}

void ReadBinaryData() {
  Trace.ParseRequested = 0;
  ReadIntoView();
}

void ReadParseBinaryData() {
  Trace.ParseRequested = 1;
  ReadIntoView();
}

void LastSection() {
  StepEpisode(-1);
}

void NextSection() {
  StepEpisode(1);
}

void FxnRead(const ControlEvent& /*event*/) {
  ReadFile();
}

void FxnLastSection(const ControlEvent& /*event*/) {
  LastSection();
}

void FxnNextSection(const ControlEvent& /*event*/) {
  NextSection();
}

/// Reads the episode in the field. When the recording cannot be read again, keeps the present trace.
void FxnSectionRead(const ControlEvent& event) {
  const int typed = Trace.EpisodeIndex;
  Trace.EpisodeIndex = static_cast<int>(event.previous);
  GoToEpisode(typed);
  ShowRecording();
}

void FxnEraseData() {
  EraseTrace();
}

/// Starts the conversion tool, a separate program that may not be installed.
void FxnFileConversion() {
  if (!StartProgram(ProgramFile(ConversionTool))) MessagePopup(FileErrorTitle, NoConversionTool);
}

constexpr auto Button = ControlKind::Button;
constexpr auto Number = ControlKind::Number;
constexpr auto Readout = ControlKind::Readout;

// clang-format off
constexpr ControlDecl RecordingControls[] = {
    {.name = "ReadFile", .kind = Button, .label = "Read...", .format = "", .command = "FxnRead", .action = FxnRead,
     .help = "Read Binary or Ascii file."},
    {.name = "EpisodeIndex", .kind = Number, .label = "Episode", .format = "%d", .command = "FxnSectionRead",
     .action = FxnSectionRead,
     .help = "Number of the episode on display. Enter another number to read that episode."},
    {.name = "EpisodeCount", .kind = Readout, .label = "Episodes", .format = "%d",
     .help = "Number of episodes in the recording."},
    {.name = "LastSection", .kind = Button, .label = "Last episode", .format = "", .command = "FxnLastSection",
     .action = FxnLastSection, .help = "Read the previous episode. From the first episode it goes to the last."},
    {.name = "NextSection", .kind = Button, .label = "Next episode", .format = "", .command = "FxnNextSection",
     .action = FxnNextSection, .help = "Read the next episode. From the last episode it goes to the first."},
};

constexpr MenuDecl RecordingMenu[] = {
    {"File/Open Recording...",          "FxnRead",             ReadFile,            "Ctrl+Shift+O"},
    {"File/Open Part of Recording...",  "ReadParseBinaryData", ReadParseBinaryData},
    {"File/Open Text Recording...",     "ReadAsciiData",       ReadText},
    {"File/Open Binary Recording...",   "ReadBinaryRecording", ReadBinary},
    {"File/Read Recording into View...", "ReadBinaryData",     ReadBinaryData},
    {"Recording/Last Episode",          "FxnLastSection",      LastSection,         "PgDown"},
    {"Recording/Next Episode",          "FxnNextSection",      NextSection,         "PgUp"},
    {"Recording/File Information...",   "FxnFileInfo",         FxnFileInfo},
    {"Recording/Erase Data",            "EraseData",           FxnEraseData},
    {"Tools/File Conversion...",        "FxnFileConversion",   FxnFileConversion},
};
// clang-format on

// -- Keys --

void StepByKey(std::string_view key) {
  if (key == "PageDown") {
    LastSection();
  } else if (key == "PageUp") {
    NextSection();
  }
}

}  // namespace

Outcome ReadBinaryRecording() {
  Trace.ParseRequested = 0;
  const auto path = AskForTrace(WaveTitle, WaveFilter, WaveFilter);
  return path ? ReadWaveFile(*path) : Outcome::Refused;
}

void AddRecordingPanels() {
  AddControls(MainPanelName, RecordingGroup, RecordingControls);
  PanelNamed(MainPanelName).key = StepByKey;
  RecordingTaken.Add(ShowRecording);
  AddMenu(RecordingMenu);
  AddTraceWriteControls();
  AddFileInfoPanel();
  AddChannelChoicePanel();
  AddParseReadPanel();
}

}  // namespace zelvane
