#include "analysis/wave_panel.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <utility>

#include "analysis/analysis_views.h"
#include "analysis/analyze.h"
#include "analysis/averages.h"
#include "analysis/averages_files.h"
#include "analysis/averages_store.h"
#include "analysis/shown_counts.h"
#include "analysis/wave_views.h"
#include "model/model_store.h"
#include "platform/index.h"
#include "screen/save_file.h"
#include "screen/screen.h"
#include "trace/trace_events.h"
#include "trace/trace_export.h"
#include "trace/trace_panels.h"
#include "trace/trace_read.h"
#include "trace/trace_store.h"
#include "trace/trace_write.h"

namespace zelvane {
namespace {

constexpr char SettingsGroup[] = "settings";
constexpr char PanelHelp[] =
    "Average sweeps of recordings. Each sweep is measured, laid on the first one by its rise, its peak or a cursor, and "
    "added. Sweeps of several files can go into one average.";
constexpr char ClearQuestion[] = "This will erase all data saved as averages. Do you want to continue?";
constexpr char TraceTitle[] =
    "Export raw data as it appears on the screen in expanded window into 1-column ascii file (time interval in ms is first "
    "value).";
constexpr char TraceFilter[] = "*.asc";
constexpr char NoTrace[] = "There is no trace to export.";
constexpr double LargestSection = 1e9;

// Stretches of a record that was too short for those before.
constexpr int SpareBaseline = 55;  // samples before its end
constexpr int ShortBaseline = 50;
constexpr int SparePeak = 510;
constexpr int ShortSearch = 500;

bool PastEnd(float startMs, int count) {
  const float interval = Model.ADInterval;
  return startMs + static_cast<float>(count) * interval > static_cast<float>(Model.NumPoints) * interval;
}

float MsBeforeEnd(int samples) {
  return static_cast<float>(std::max(Model.NumPoints - samples, 0)) * Model.ADInterval;
}

void KeepStretchesInside() {
  if (Trace.TraceValid == 0) return;
  if (PastEnd(Averages.WaveBaselineStart, Averages.WaveBaselinePts)) {
    Averages.WaveBaselineStart = MsBeforeEnd(SpareBaseline);
    Averages.WaveBaselinePts = ShortBaseline;
  }
  if (PastEnd(Averages.WaveStartAnalysis, Averages.WavePeakSearchPts)) {
    Averages.WavePeakSearchPts = ShortSearch;
    Averages.WaveStartAnalysis = MsBeforeEnd(SparePeak);
  }
}

// -- Settings --

void FxnWaveSetting(const ControlEvent&) {
  ReadWavePanel();
  RefreshWavePanel();
}

void FxnWaveBaselineLength(const ControlEvent&) {
  ReadWavePanel();
  CutStretch(Averages.WaveBaselineStart, Averages.WaveBaselinePts);
  RefreshWavePanel();
}

void FxnWaveSearchLength(const ControlEvent&) {
  ReadWavePanel();
  CutStretch(Averages.WaveStartAnalysis, Averages.WavePeakSearchPts);
  RefreshWavePanel();
}

void FxnManualRise(const ControlEvent&) {
  MoveFreeCursor(Averages.ManualRise);
  RefreshWavePanel();
}

void FxnShowAverageTrace(const ControlEvent&) {
  ReadWavePanel();
  RefreshWavePanel();
}

// -- Commands --

void OpenWavePanel() {
  ShowTask(WavePanelName);
  RefreshWavePanel();
}

void FxnWaveRead(const ControlEvent&) {
  if (ReadBinaryRecording() != Outcome::Done) return;
  BeginWaveView();
}

void ShowSection(int episode) {
  if (Trace.TraceValid == 0) return;
  GoToEpisode(episode);
  RefreshWavePanel();
}

void FxnWaveLastSection(const ControlEvent&) {
  ShowSection(Trace.EpisodeIndex - 1);
}

void FxnWaveNextSection(const ControlEvent&) {
  ShowSection(Trace.EpisodeIndex + 1);
}

void FxnWaveSectionRead(const ControlEvent& event) {
  ShowSection(static_cast<int>(std::clamp(event.control->number, 0.0, LargestSection)));
}

void AddAverageButton(const ControlEvent&) {
  WaveAddAverage();
}

void FxnAverageNextButton(const ControlEvent&) {
  WaveAddAverage();
  ShowSection(Trace.EpisodeIndex + 1);
}

void FxnAverageAll(const ControlEvent&) {
  ReadWavePanel();
  Averages.ShowAverage = 1;
  ShowWaveSettings();
  static_cast<void>(AverageAllSweeps());  // has told what failed
  RefreshWavePanel();
}

void ClearAverageButton(const ControlEvent&) {
  if (ConfirmPopup(WarningTitle, ClearQuestion)) ClearAverage();
}

void ShowAverageButton(const ControlEvent&) {
  ReadWavePanel();
  Averages.ShowAverage = 1;
  RefreshWavePanel();
}

void FxnCompressedWavePlot(const ControlEvent&) {
  ReadWavePanel();
  TakeCompressedRange();
}

void FxnUpdateWavePlot(const ControlEvent&) {
  ReadWavePanel();
  RefreshWavePanel();
}

/// Appends the samples between the compressed cursors, as they stand.
void ExportWaveTrace() {
  if (Trace.TraceValid == 0) {
    MessagePopup(NoticeTitle, NoTrace);
    return;
  }
  const auto path =
      FileSelectPopup({.title = TraceTitle, .defaultName = TraceFilter, .filter = TraceFilter, .save = true});
  if (!path || RefuseSourceOfTrace(*path)) return;
  const std::span<const float> trace = RecordedTrace();
  const auto within = [&](double x) {
    return static_cast<std::size_t>(std::clamp(std::trunc(x), 0.0, static_cast<double>(trace.size())));
  };
  const CompressedEnds ends = CompressedCursors();
  const std::size_t first = within(ends.first);
  const std::size_t last = std::max(within(ends.second), first);
  static_cast<void>(ExtendFile(  // has told what failed
      *path,
      BehindLastLine(*path, TraceTextBlocks(TraceFormat::SingleColumn, trace.subspan(first, last - first),
                                            Model.ADInterval, {}))));
}

void FxnWaveDone(const ControlEvent&) {
  LeaveTask(WavePanelName);
}

void PressWaveKey(std::string_view key) {
  if (key == "PageDown") ShowSection(Trace.EpisodeIndex - 1);
  if (key == "PageUp") ShowSection(Trace.EpisodeIndex + 1);
}

void DimWavePanel() {
  SetDimmed("AlignRange", Averages.AlignMode != AlignByFit);
  SetDimmed("ManualRise", Averages.AlignMode != AlignAtCursor);
}

// clang-format off
constexpr auto Number = ControlKind::Number;
constexpr auto Choice = ControlKind::Choice;
constexpr auto Switch = ControlKind::Switch;
constexpr auto Button = ControlKind::Button;
constexpr auto Readout = ControlKind::Readout;

constexpr ControlDecl SettingControls[] = {
    {.name = "WaveBaselineStart", .kind = Number, .label = "Start Baseline", .unit = "ms", .format = "%g",
     .command = "FxnWaveAnBaselineStart", .action = FxnWaveSetting,
     .help = "Time (ms) at which the baseline of a sweep begins: cursor 1. The measure starts at the whole millisecond before "
     "it."},
    {.name = "WaveBaselinePts", .kind = Number, .label = "Length of baseline", .unit = "ms", .format = "%g",
     .command = "FxnWaveAnBaselinePts", .action = FxnWaveBaselineLength, .help = "Length (ms) of the baseline, to cursor 2.",
     .toShown = CountToMs, .toStored = MsToCount},
    {.name = "WaveStartAnalysis", .kind = Number, .label = "Start Analysis", .unit = "ms", .format = "%g",
     .command = "FxnWaveAnStartAnalysis", .action = FxnWaveSetting,
     .help = "Time (ms) at which the search for the peak begins: cursor 3."},
    {.name = "WavePeakSearchPts", .kind = Number, .label = "Length of peak search", .unit = "ms", .format = "%g",
     .command = "FxnWaveAnPeakSearchPts", .action = FxnWaveSearchLength,
     .help = "Length (ms) of the search for the peak, to cursor 4.", .toShown = CountToMs, .toStored = MsToCount},
    {.name = "WavePeakAve", .kind = Number, .label = "Peak Average Pts", .format = "%d", .command = "FxnWaveAnPeakAve",
     .action = FxnWaveSetting, .help = "Number of samples whose mean is the peak."},
    {.name = "WaveRiseStartFrac", .kind = Number, .label = "Rise from", .format = "%g", .command = "FxnWaveAnRiseStartFrac",
     .action = FxnWaveSetting, .help = "Fraction of the amplitude at which the rise begins."},
    {.name = "WaveRiseEndFrac", .kind = Number, .label = "Rise to", .format = "%g", .command = "FxnWaveAnRiseEndFrac",
     .action = FxnWaveSetting, .help = "Fraction of the amplitude at which the rise ends."},
    {.name = "WaveLatencyPos", .kind = Number, .label = "Latency from", .unit = "ms", .format = "%g",
     .command = "FxnWaveAnLatencyPos", .action = FxnWaveSetting, .help = "Time (ms) of cursor 9, for example of the stimulus."},
    {.name = "WaveLatencyFrac", .kind = Number, .label = "Latency to fraction", .format = "%g",
     .command = "FxnWaveAnLatencyFrac", .action = FxnWaveSetting,
     .help = "Fraction of the amplitude at which the latency of the rise ends."},
    {.name = "AlignMode", .kind = Choice, .label = "Align at", .format = "%d", .command = "FxnAlignMode",
     .action = FxnWaveSetting,
     .help = "What lays a sweep on the first one: the best fit of its rise to the average so far, cursor 7, the steepest "
     "rise, or the peak. With none it is added as it lies.",
     .choices = "fit of the rise|cursor 7|steepest rise|peak|none", .choiceBase = 1},
    {.name = "AlignRange", .kind = Number, .label = "Range of the fit", .unit = "rises", .format = "%d",
     .command = "FxnWaveAnAlignRange", .action = FxnWaveSetting,
     .help = "Length over which sweeps are compared when the rise is fitted, as a multiple of the samples of the rise."},
    {.name = "SlopePoints", .kind = Number, .label = "Slope points", .format = "%d", .command = "FxnSlopePoints",
     .action = FxnWaveSetting, .help = "Samples over which the steepest rise is searched."},
    {.name = "WaveBaselineCorrect", .kind = Switch, .label = "Subtract baseline", .format = "%d",
     .command = "FxnWaveAnBaselineCorrect", .action = FxnWaveSetting,
     .help = "Subtract the baseline of each sweep before it is added.", .choices = "off|on"},
    {.name = "ShowAverage", .kind = Switch, .label = "Show average", .format = "%d", .command = "FxnShowAverageTrace",
     .action = FxnShowAverageTrace,
     .help = "Show the average in green over the sweep, with one standard deviation on both sides and up to 200 of its sweeps "
     "behind it.", .choices = "off|on"},
    {.name = "ManualRise", .kind = Number, .label = "Cursor 7 at", .unit = "ms", .format = "%g", .command = "FxnManualRise",
     .action = FxnManualRise, .help = "Move the free cursor 7 to this time (ms). Sweeps can be aligned there."},
};
constexpr ControlDecl ResultControls[] = {
    {.name = "AverageCount", .kind = Readout, .label = "Sweeps averaged", .format = "%g",
     .help = "Number of sweeps in the average."},
    {.name = "WaveBaseline", .kind = Readout, .label = "Baseline", .format = "%.5g",
     .help = "Mean of the baseline of this sweep."},
    {.name = "WavePeak", .kind = Readout, .label = "Peak", .format = "%.5g",
     .help = "Peak of this sweep. The baseline is not subtracted."},
    {.name = "WaveRiseTime", .kind = Readout, .label = "Risetime", .unit = "ms", .format = "%.5g",
     .help = "Time between the two rise levels of this sweep."},
    {.name = "WaveRisePoints", .kind = Readout, .label = "Risepts", .format = "%g",
     .help = "Number of samples between the rise levels."},
    {.name = "SteepestPos", .kind = Readout, .label = "Steepest at sample", .format = "%g",
     .help = "Sample of the steepest rise."},
    {.name = "SteepestTime", .kind = Readout, .label = "Steepest at", .unit = "ms", .format = "%.6g",
     .help = "Time of the steepest rise."},
    {.name = "SteepestValue", .kind = Readout, .label = "Value there", .format = "%.5g",
     .help = "Height of the sweep at its steepest rise."},
    {.name = "ManualRiseIndex", .kind = Readout, .label = "Cursor 7 sample", .format = "%.0f",
     .help = "Sample at cursor 7."},
    {.name = "ManualRiseValue", .kind = Readout, .label = "Cursor 7 value", .format = "%.5g",
     .help = "Height of the sweep at cursor 7."},
    {.name = "ManualRiseStep", .kind = Readout, .label = "Cursor 7 step", .format = "%.5g",
     .help = "Change of the sweep from cursor 7 to the next sample."},
    {.name = "WaveDataName", .kind = Readout, .label = "Data", .format = "", .help = "Name of the recording or model."},
};
constexpr ControlDecl CommandControls[] = {
    {.name = "WaveRead", .kind = Button, .label = "Open...", .format = "", .command = "FxnWaveRead", .action = FxnWaveRead,
     .help = "Read a recording (ABF). The average keeps its sweeps."},
    {.name = "AddAverage", .kind = Button, .label = "Add", .format = "", .command = "AddAverageButton",
     .action = AddAverageButton, .help = "Add this sweep to the average."},
    {.name = "AverageNext", .kind = Button, .label = "Add, next", .format = "", .command = "FxnAverageNextButton",
     .action = FxnAverageNextButton, .help = "Add this sweep to the average and go to the next one."},
    {.name = "AverageAll", .kind = Button, .label = "Add all", .format = "", .command = "FxnAverageAll",
     .action = FxnAverageAll, .help = "Add every sweep of the recording to the average."},
    {.name = "ClearAverage", .kind = Button, .label = "Clear", .format = "", .command = "ClearAverageButton",
     .action = ClearAverageButton, .help = "Empty the average."},
    {.name = "ShowAverageNow", .kind = Button, .label = "Plot average", .format = "", .command = "ShowAverageButton",
     .action = ShowAverageButton, .help = "Show the average in green over the sweep."},
    {.name = "WaveSection", .kind = Number, .label = "Episode", .format = "%.0f", .command = "FxnWaveSectionRead",
     .action = FxnWaveSectionRead, .help = "Number of the episode in view. Enter another number to read that episode."},
    {.name = "WaveEpisodes", .kind = Readout, .label = "Episodes", .format = "%g", .help = "Number of episodes."},
    {.name = "WaveLast", .kind = Button, .label = "Last episode", .format = "", .command = "FxnWaveLastSection",
     .action = FxnWaveLastSection, .help = "Read the previous episode. From the first episode it goes to the last."},
    {.name = "WaveNext", .kind = Button, .label = "Next episode", .format = "", .command = "FxnWaveNextSection",
     .action = FxnWaveNextSection, .help = "Read the next episode. From the last episode it goes to the first."},
    {.name = "CompressedRange", .kind = Button, .label = "Expand range", .format = "", .command = "FxnCompressedWavePlot",
     .action = FxnCompressedWavePlot,
     .help = "Show the stretch between the two cursors of the whole record, and search baseline and peak in it."},
    {.name = "UpdateWavePlot", .kind = Button, .label = "Update", .format = "", .command = "FxnUpdateWavePlot",
     .action = FxnUpdateWavePlot, .help = "Measure the sweep again and draw it."},
    {.name = "ExportWaveTraceButton", .kind = Button, .label = "Export trace...", .format = "", .command = "ExportWaveTrace",
     .action = Run<ExportWaveTrace>,
     .help = "Append the samples between the two cursors of the whole record to a text file."},
    {.name = "ExportWaveAverageButton", .kind = Button, .label = "Export average...", .format = "",
     .command = "ExportWaveAverage", .action = Run<ExportWaveAverage>,
     .help = "Write the average to a text file. The readers of recordings can read it."},
    {.name = "ExportWaveNormalizedButton", .kind = Button, .label = "Export normalized...", .format = "",
     .command = "ExportWaveNormalized", .action = Run<ExportWaveNormalized>,
     .help = "Append the mean of the sweeps, each in percent of its peak, to a text file."},
    {.name = "ExportWaveVarianceButton", .kind = Button, .label = "Export variance...", .format = "",
     .command = "ExportWaveVariance", .action = Run<ExportWaveVariance>,
     .help = "Write mean and variance at each time as comma-separated text."},
    {.name = "WaveDone", .kind = Button, .label = "Done", .format = "", .command = "FxnWaveDone", .action = FxnWaveDone,
     .help = "Close the panel. The program keeps the average."},
};
constexpr MenuDecl WaveMenu[] = {{"Analysis/Average Sweeps...", "Waveform", OpenWavePanel}};
// clang-format on

void ShowIf(const char* control, bool known, double value) {
  if (known)
    ShowNumber(control, value);
  else
    ShowText(control, "");
}

/// Writes the unit of the trace behind the names of heights.
void ShowWaveUnits() {
  const std::string unit = TraceUnitWord();
  for (const auto& [control, name] :
       {std::pair{"WaveBaseline", "Baseline"}, std::pair{"WavePeak", "Peak"},
        std::pair{"SteepestValue", "Value there"}, std::pair{"ManualRiseValue", "Cursor 7 value"},
        std::pair{"ManualRiseStep", "Cursor 7 step"}})
    ControlNamed(control).label = unit.empty() ? name : std::string(name) + " (" + unit + ')';
}

void ReadForAdding() {
  if (PanelVisible(WavePanelName)) ReadWavePanel();
}

void RefreshIfVisible() {
  if (PanelVisible(WavePanelName)) RefreshWavePanel();
}

void ShowAverageState() {
  ShowNumber("AverageCount", Averages.AverageCount);
  if (Averages.ShowAverage != 0 || Averages.AverageCount == 0) RefreshIfVisible();
}

void CloseWavePanel() {
  LeaveTask(WavePanelName);
}

}  // namespace

void ReadWavePanel() {
  ReadControls(WavePanelName, SettingsGroup);
  Averages.AlignMode = std::clamp(Averages.AlignMode, 1, AlignNot);
  Averages.AlignRange = std::max(Averages.AlignRange, 1);
}

void RefreshWavePanel() {
  KeepStretchesInside();
  WaveMeasure();
  ShowWaveSettings();
  PlaceWaveCursors();
  ShowWaveResults();
  DrawWaves();
}

void ShowWaveSettings() {
  WriteControls(WavePanelName, SettingsGroup);
}

void ShowWaveResults() {
  ShowWaveUnits();
  const bool known = Averages.WaveMeasured != 0;
  const std::span<const float> trace = RecordedTrace();
  const auto steepest = Index(std::max(Averages.SteepestPos, 0));
  ShowNumber("AverageCount", Averages.AverageCount);
  ShowIf("WaveBaseline", known, static_cast<double>(Averages.WaveBaseline));
  ShowIf("WavePeak", known, static_cast<double>(Averages.WavePeak));
  ShowIf("WaveRiseTime", known, static_cast<double>(Averages.WaveRiseTime));
  ShowIf("WaveRisePoints", known, Averages.WaveRisePoints);
  ShowIf("SteepestPos", known, Averages.SteepestPos);
  ShowIf("SteepestTime", known,
         static_cast<double>(static_cast<float>(Averages.SteepestPos) * Model.ADInterval));
  ShowIf("SteepestValue", known && steepest < trace.size(),
         steepest < trace.size() ? static_cast<double>(trace[steepest]) : 0.0);
  ShowNumber("WaveSection", Trace.EpisodeIndex);
  ShowNumber("WaveEpisodes", Trace.EpisodeCount);
  ShowText("WaveDataName", DataFileName());
  ShowFreeCursor();
}

void AddWavePanel() {
  AddPanel({.name = WavePanelName,
            .title = "Averages",
            .tag = "WV",
            .dim = DimWavePanel,
            .close = CloseWavePanel,
            .key = PressWaveKey,
            .help = PanelHelp});
  AddControls(WavePanelName, SettingsGroup, SettingControls);
  AddControls(WavePanelName, "results", ResultControls);
  AddControls(WavePanelName, "commands", CommandControls);
  for (Control* control : PanelNamed(WavePanelName).controls) {
    if (control->group == "results") control->field = FieldRef{};  // empty while nothing was measured
  }
  AddWaveGraphs();
  AddMenu(WaveMenu);
  WaveSettingsWanted.Add(ReadForAdding);
  AverageChanged.Add(ShowAverageState);
  TraceChanged.Add(RefreshIfVisible);
  TraceWillChange.Add([] { Averages.WaveMeasured = 0; });
}

}  // namespace zelvane
