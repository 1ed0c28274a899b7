// ParseReadPanel asks which samples of a long recording to read. It is modal; its fields act when they are
// typed.
#include <array>
#include <utility>

#include "model/model_store.h"
#include "platform/file_names.h"
#include "screen/screen.h"
#include "trace/parse_rules.h"
#include "trace/trace_dialogs.h"
#include "trace/trace_panels.h"
#include "trace/trace_store.h"

namespace zelvane {
namespace {

constexpr char PanelName[] = "ParseReadPanel";
constexpr char ParseGroup[] = "parse";
constexpr char Question[] = "Choose the samples to read.";
constexpr double MsPerMinute = 60'000.0;

/// Shows the part of the file to read as a bar along the length of the file.
void PlotBar() {
  const double length = Trace.ParseLength;
  if (!(length > 0.0)) return;
  const double begin = Trace.ParseStart;
  const double span = static_cast<double>(Trace.ParseCount) * Trace.ParseSkip;
  const std::array<double, 2> x = {begin / length, (begin + span) / length};
  const std::array<float, 2> y{};
  Graph& graph = GraphNamed(PanelName);
  ClearPlots(graph);
  PlotPoints(graph, PlotStyle::Line, DarkBlue, x, y);
}

void ShowParse() {
  WriteControls(PanelName, ParseGroup);
  const double lengthMs = static_cast<double>(Trace.ParseLength) * static_cast<double>(Model.ADInterval);
  ShowNumber("ParseFileSamples", Trace.ParseLength);
  ShowNumber("ParseFileMs", lengthMs);
  ShowNumber("ParseFileMinutes", lengthMs / MsPerMinute);
  ShowNumber("ParseMaximum", MaxStimPoints);
  PlotBar();
}

/// The command of a field whose value is already in the store: applies the rule and shows the fields again.
template <void (*Rule)()>
void After(const ControlEvent& /*event*/) {
  Rule();
  ShowParse();
}

void MaxPtsChanged() {}

void ReadAndAccept() {
  ReadControls(PanelName, ParseGroup);
  AcceptParse();
}

constexpr auto FxnNumPtsRead = After<ParseCountChanged>;
constexpr auto FxnReadTime = After<ParseDurationChanged>;
constexpr auto FxnReadAt = After<ParseStartChanged>;
constexpr auto FxnReadATTime = After<ParseStartTimeChanged>;
constexpr auto FxnParseRead = After<ParseSkipChanged>;
constexpr auto FxnMaxPtsRead = After<MaxPtsChanged>;

void FxnOKParse(const ControlEvent& /*event*/) {
  ReadAndAccept();
  HidePanel(PanelName);
}

void FxnCancelParse(const ControlEvent& /*event*/) {
  CancelParse();
  HidePanel(PanelName);
}

constexpr auto Number = ControlKind::Number;
constexpr auto Switch = ControlKind::Switch;
constexpr auto Button = ControlKind::Button;
constexpr auto Readout = ControlKind::Readout;
constexpr bool Acts = true;  // although the read that opened the panel still runs

// clang-format off
constexpr ControlDecl ParseControls[] = {
    {.name = "ParseStart", .kind = Number, .label = "Start at sample", .format = "%d", .command = "FxnReadAt",
     .action = FxnReadAt, .help = "First sample to read, from 0.", .whileBusy = Acts},
    {.name = "ParseStartTime", .kind = Number, .label = "Start at", .unit = "ms", .format = "%g",
     .command = "FxnReadATTime", .action = FxnReadATTime, .help = "Time of the first sample to read (in ms).",
     .whileBusy = Acts},
    {.name = "ParseCount", .kind = Number, .label = "Samples to keep", .format = "%d", .command = "FxnNumPtsRead",
     .action = FxnNumPtsRead, .help = "Number of samples to keep, at most 5,000,000.", .whileBusy = Acts},
    {.name = "ParseDuration", .kind = Number, .label = "Duration", .unit = "ms", .format = "%g",
     .command = "FxnReadTime", .action = FxnReadTime, .help = "Length of the samples to keep (in ms).",
     .whileBusy = Acts},
    {.name = "ParseSkip", .kind = Number, .label = "Keep every n-th", .format = "%d", .command = "FxnParseRead",
     .action = FxnParseRead, .help = "Keep every n-th sample.", .whileBusy = Acts},
    {.name = "ParseMaxPoints", .kind = Switch, .label = "As many as fit", .format = "%d", .command = "FxnMaxPtsRead",
     .action = FxnMaxPtsRead, .help = "Always try to read 5,000,000 samples.", .choices = "off|on",
     .whileBusy = Acts},
    {.name = "ParseInterval", .kind = Readout, .label = "Interval kept", .unit = "ms", .format = "%g",
     .help = "Time between kept samples (in ms)."},
    {.name = "ADInterval", .kind = Readout, .label = "Interval of file", .unit = "ms", .format = "%g",
     .help = "Time between the samples of the file (in ms)."},
};

constexpr ControlDecl FileControls[] = {
    {.name = "ParseFileName", .kind = Readout, .label = "File", .format = "", .help = "Name of the file."},
    {.name = "ParseFileSamples", .kind = Readout, .label = "Samples in file", .format = "%.0f",
     .help = "Samples of the channel in the file."},
    {.name = "ParseFileMs", .kind = Readout, .label = "Length of file", .unit = "ms", .format = "%g",
     .help = "Length of the file (in ms)."},
    {.name = "ParseFileMinutes", .kind = Readout, .label = "In minutes", .unit = "min", .format = "%g",
     .help = "Length of the file (in minutes)."},
    {.name = "ParseMaximum", .kind = Readout, .label = "Samples at most", .format = "%.0f",
     .help = "Samples that the trace can hold."},
};

/// In a window the dialog's own buttons do the same.
constexpr ControlDecl EndControls[] = {
    {.name = "OKParse", .kind = Button, .label = "OK", .format = "", .command = "FxnOKParse", .action = FxnOKParse,
     .help = "Read the chosen samples.", .whileBusy = Acts},
    {.name = "CancelParse", .kind = Button, .label = "Cancel", .format = "", .command = "FxnCancelParse",
     .action = FxnCancelParse, .help = "Read nothing.", .whileBusy = Acts},
};
// clang-format on

}  // namespace

void AddParseReadPanel() {
  AddPanel({.name = PanelName,
            .title = "Read part of a recording",
            .help = "Start, length and step of the samples to read from a long recording. The bar shows "
                    "their place in the file."});
  AddControls(PanelName, ParseGroup, ParseControls);
  AddControls(PanelName, "file", FileControls);
  AddControls(PanelName, "end", EndControls);
  SetVisible("OKParse", false);
  SetVisible("CancelParse", false);
  Graph& graph = AddGraph(PanelName, PanelName, "Part of the file", "");
  SetAxisRange(graph, 'x', 0.0, 1.0);
  SetAxisRange(graph, 'y', -1.0, 1.0);
}

ParseSettings AskParse(const std::string& path, int length, int skip, float intervalMs) {
  const ParseSettings former = StoredParse();
  const float formerInterval = std::exchange(Model.ADInterval, intervalMs);
  Trace.ParseRequested = 1;
  BeginParse(length, skip);
  ShowText("ParseFileName", FileNameOf(path));
  ShowParse();
  if (RunModalPanel(PanelName, Question)) {
    ReadAndAccept();
  } else {
    CancelParse();
  }
  const ParseSettings answer = StoredParse();
  StoreParse(former);
  Model.ADInterval = formerInterval;
  return answer;
}

}  // namespace zelvane
