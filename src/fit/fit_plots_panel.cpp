// Plots of FitPanel: the waveform on display with its windows and stimulus, and the comparison with the model.
//
// The x axes count samples; their gain converts them to times.
#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

#include "fit/fit_panel.h"
#include "fit/fit_panels.h"
#include "fit/wave_compare.h"
#include "model/model_store.h"
#include "numerics/rounding.h"
#include "platform/index.h"
#include "screen/screen.h"

namespace zelvane {
namespace {

constexpr Colour Yellow{224, 192, 0};
constexpr Colour Red{208, 0, 0};
constexpr Colour Blue{0, 0, 208};
constexpr Colour Green{0, 144, 0};
constexpr Colour White{255, 255, 255};
constexpr Colour Grey{144, 144, 144};
constexpr Colour DarkGreen{0, 96, 0};
constexpr Colour DarkCyan{0, 128, 128};
constexpr Colour Magenta{208, 0, 208};

constexpr std::array<Colour, 10> WaveColours = {Green,    Red,       Blue,     Yellow,  Black,
                                                DarkBlue, DarkGreen, DarkCyan, Magenta, DarkRed};
constexpr std::array<Colour, FitCursorCount> CursorColours = {Yellow, Yellow, Red, Red, Blue, Yellow};
constexpr std::array<const char*, 4> ProfileTitles = {"Voltage (V)", "Drug1 (M)", "Drug2 (M)", "Drug3 (M)"};

// -- Cursors, counted from 0 --
constexpr std::size_t BaseStart = 0;
constexpr std::size_t BaseEnd = 1;
constexpr std::size_t FitStart = 2;
constexpr std::size_t AlignEnd = 3;
constexpr std::size_t FitEnd = 4;
constexpr std::size_t PeakPoint = 5;

/// What the user does with the plots; no store holds it.
struct FitView {
  int percent = 100;  // of the recording in view, from its first sample
  std::array<bool, FitCursorCount> moved{};
};

FitView& View() {
  static FitView view;
  return view;
}

int ShownWave() {
  return std::clamp(Fit.FitShownWave, 1, MaxFitWaveforms);
}

bool CursorsMove() {
  return ControlNumber("FitPositionButton") != 0.0;
}

// -- Recording and stimulus --

int SamplesOfShown() {
  const FitWaveform& wave = Fit.Wave[Index(ShownWave())];
  return std::max({wave.DataLength, wave.StimLength, 1});
}

void SetTimeAxis(Graph& graph) {
  const double end = std::max(1.0, (SamplesOfShown() - 1) * View().percent / 100.0);
  SetAxisRange(graph, 'x', 0.0, end);
  graph.x.gain = static_cast<double>(Model.ADInterval);
}

void PlaceCursors(const FitWindow& window, const WavePeak& peak) {
  Graph& graph = GraphNamed(FitDataGraph);
  const auto base = static_cast<double>(SampleAtTime(window.DataBaselineStart));
  const auto start = static_cast<double>(SampleAtTime(window.DataFitStart));
  const std::array<double, FitCursorCount> places = {base,
                                                     base + window.NumBaselinePts,
                                                     start,
                                                     start + window.NumAlignPts,
                                                     start + window.NumFitPts,
                                                     static_cast<double>(peak.sample)};
  for (std::size_t c = 0; c < places.size(); ++c) {
    graph.cursors[c].x = places[c];
    graph.cursors[c].colour = CursorColours[c];
  }
  graph.cursors[PeakPoint].y = static_cast<double>(peak.value);
  View().moved = {};
}

/// Draws the peak as a point, and a line over the stretch of its search.
void DrawPeak(const FitWindow& window, const WavePeak& peak) {
  Graph& graph = GraphNamed(FitDataGraph);
  const auto start = static_cast<double>(SampleAtTime(window.DataFitStart));
  const std::array<double, 2> span = {start, start + Fit.FitPeakSearchPts};
  const std::array<float, 2> level = {peak.value, peak.value};
  const std::array<double, 1> place = {static_cast<double>(peak.sample)};
  PlotPoints(graph, PlotStyle::Line, Yellow, span, level);
  PlotPoints(graph, PlotStyle::Points, Yellow, place, std::span(level).first(1));
}

void DrawRecording(int w) {
  Graph& graph = GraphNamed(FitDataGraph);
  ClearPlots(graph);
  const FitWaveform& wave = Fit.Wave[Index(w)];
  const FitWindow& window = Fit.Waveform[Index(w)];
  const WavePeak peak = PeakOfRecording(w, Fit.FitPeakSearchPts, BaselineOfRecording(w));
  if (wave.WaveLoaded != 0) {
    PlotWave(graph, PlotStyle::Line, Black, RecordingOf(wave), 0.0, 1.0);
    DrawPeak(window, peak);
  }
  PlaceCursors(window, peak);
  SetTimeAxis(graph);
}

void DrawStimulus(int w) {
  Graph& graph = GraphNamed(FitStimulusGraph);
  ClearPlots(graph);
  const FitWaveform& wave = Fit.Wave[Index(w)];
  const auto profile = Index(std::clamp(Fit.FitShownProfile, 0, static_cast<int>(ProfileTitles.size()) - 1));
  if (wave.StimLength > 0) {
    const auto samples = Index(std::min(wave.StimLength, MaxWaveformPoints));
    PlotWave(graph, PlotStyle::Line, DarkBlue, wave.WaveStim[profile].first(samples), 0.0, 1.0);
  }
  SetAxisTitle(graph, 'y', ProfileTitles[profile]);
  SetTimeAxis(graph);
}

void SetView(int percent) {
  View().percent = std::clamp(percent, 10, 100);
  SetTimeAxis(GraphNamed(FitDataGraph));
  SetTimeAxis(GraphNamed(FitStimulusGraph));
}

// -- Recordings and simulations --

Colour ColourOfWave(int w) {
  return WaveColours[Index(w - 1) % WaveColours.size()];
}

/// With one curve on display the waveforms after the fourth are black.
Colour ColourOfOne(int w) {
  return w <= 4 ? ColourOfWave(w) : Black;
}

void DrawCompared(int w, Colour colour) {
  const FitWaveform& wave = Fit.Wave[Index(w)];
  const auto points = Index(std::clamp(wave.FittedCount - 1, 0, MaxWaveformPoints));
  if (points > 1 && wave.FitX[points - 1] == 0.0F) return;  // no comparison yet
  const std::vector<double> x(wave.FitX.begin(), wave.FitX.begin() + static_cast<std::ptrdiff_t>(points));
  std::vector<float> difference(points);
  for (std::size_t j = 0; j < points; ++j) difference[j] = wave.FitData[j] - wave.FitSim[j];
  Graph& curves = GraphNamed(FitCurvesGraph);
  PlotPoints(curves, PlotStyle::Line, Grey, x, wave.FitData.first(points));
  PlotPoints(curves, PlotStyle::Line, colour, x, wave.FitSim.first(points));
  PlotPoints(GraphNamed(FitResidualGraph), PlotStyle::Line, colour, x, difference);
}

// -- Commands --

void FitExpand(const ControlEvent&) {
  SetView(View().percent - 10);
}

void FitCompress(const ControlEvent&) {
  SetView(View().percent + 10);
}

void FitFullScale(const ControlEvent&) {
  SetView(100);
}

float MsOfCursor(std::size_t cursor) {
  return static_cast<float>(GraphNamed(FitDataGraph).cursors[cursor].x) * Model.ADInterval;
}

/// Changes a count to the distance of two cursors, if the user has moved the second.
void TakeSpan(std::size_t from, std::size_t to, int& count) {
  if (!View().moved[to]) return;
  const Graph& graph = GraphNamed(FitDataGraph);
  const double span = graph.cursors[to].x - graph.cursors[from].x;
  if (span > 0.0) count = RoundCount(span);
}

/// Takes the cursors as the positions of the waveform on display: 1 and 3 are the starts, 2, 4, 5 and 6 the ends of
/// the spans that the user has changed.
void TakeCursors() {
  FitWindow& window = Fit.Waveform[Index(ShownWave())];
  // A cursor stands on a whole sample, so one that did not move would round the time that was typed.
  if (View().moved[BaseStart]) window.DataBaselineStart = std::max(MsOfCursor(BaseStart), 0.0F);
  window.SimBaselineStart = window.DataBaselineStart;
  if (View().moved[FitStart]) window.DataFitStart = std::max(MsOfCursor(FitStart), 0.0F);
  window.SimFitStart = window.DataFitStart;
  TakeSpan(BaseStart, BaseEnd, window.NumBaselinePts);
  TakeSpan(FitStart, AlignEnd, window.NumAlignPts);
  TakeSpan(FitStart, FitEnd, window.NumFitPts);
  TakeSpan(FitStart, PeakPoint, Fit.FitPeakSearchPts);
  WriteFitPanel();
}

void EnableCursors(bool enabled) {
  for (Cursor& cursor : GraphNamed(FitDataGraph).cursors) cursor.enabled = enabled;
}

void FitPositionButton(const ControlEvent& event) {
  const bool moves = event.control->number != 0.0;
  if (moves) {
    ReadFitPanel();
  } else {
    TakeCursors();
    ReadFitPanel();
  }
  FitPanelPlot();
  EnableCursors(moves);
}

/// Graphs one below the other with one time axis.
constexpr const char* SharedTime[][2] = {{FitDataGraph, FitStimulusGraph},
                                         {FitCurvesGraph, FitResidualGraph}};

/// Shows the stretch of time that is in view in `graph` in the other graph of its pair too.
void FollowTime(Graph& graph) {
  for (const auto& [above, below] : SharedTime) {
    if (graph.name != above && graph.name != below) continue;
    Graph& other = GraphNamed(graph.name == above ? below : above);
    if (graph.x.automatic) {
      SetAxisAuto(other, 'x');
    } else {
      SetAxisRange(other, 'x', graph.x.min, graph.x.max);
    }
  }
}

/// The ends of a window follow its start.
void FollowCursor(Graph& graph, int cursor) {
  const auto at = Index(cursor) - 1;
  View().moved[at] = true;
  const FitWindow& window = Fit.Waveform[Index(ShownWave())];
  if (at == BaseStart && !View().moved[BaseEnd])
    graph.cursors[BaseEnd].x = graph.cursors[at].x + window.NumBaselinePts;
  if (at != FitStart) return;
  if (!View().moved[AlignEnd]) graph.cursors[AlignEnd].x = graph.cursors[at].x + window.NumAlignPts;
  if (!View().moved[FitEnd]) graph.cursors[FitEnd].x = graph.cursors[at].x + window.NumFitPts;
}

constexpr auto Button = ControlKind::Button;

// clang-format off
constexpr ControlDecl PlotControls[] = {
    {.name = "FitPositionButton", .kind = ControlKind::Switch, .label = "Cursors", .format = "%d",
     .command = "FitPositionButton", .action = FitPositionButton,
     .help = "Move the cursors of the windows. A second press takes cursors 1 and 3 as the starts of baseline and "
     "fit.", .choices = "__VCursor|__Done"},
    {.name = "FitExpand", .kind = Button, .label = "Expand", .format = "", .command = "FitExpand",
     .action = FitExpand,
     .help = "Expand abscissa from origin by 10% (maximum expansion is to 10% of original length)"},
    {.name = "FitCompress", .kind = Button, .label = "Compress", .format = "", .command = "FitCompress",
     .action = FitCompress, .help = "Compress abscissa by 10%; cannot compress axis beyond original length"},
    {.name = "FitFullScale", .kind = Button, .label = "Full scale", .format = "", .command = "FitFullScale",
     .action = FitFullScale,
     .help = "Replot graph showing full time range as defined by the time interval and number of data points."},
};
// clang-format on

}  // namespace

void AddFitViewControls() {
  AddControls(FitPanelName, "plots", PlotControls);
  GraphNamed(FitDataGraph).cursorMoved = FollowCursor;
  for (const auto& pair : SharedTime) {
    for (const char* name : pair) GraphNamed(name).axisChanged = FollowTime;
  }
  View() = FitView{};
}

void FitPanelPlot() {
  const int w = ShownWave();
  DrawRecording(w);
  DrawStimulus(w);
  EnableCursors(CursorsMove());
}

void FitPlot() {
  for (const char* name : {FitCurvesGraph, FitResidualGraph}) {
    ClearPlots(GraphNamed(name));
    GraphNamed(name).x.gain = static_cast<double>(Model.ADInterval);
  }
  if (Fit.FitShowCurves <= 1) {
    if (Fit.Wave[Index(ShownWave())].WaveLoaded != 0) DrawCompared(ShownWave(), ColourOfOne(ShownWave()));
    return;
  }
  int drawn = 0;
  for (int w = 1; w <= MaxFitWaveforms && drawn < Fit.FitShowCurves; ++w) {
    if (Fit.Wave[Index(w)].WaveLoaded == 0) continue;
    DrawCompared(w, ColourOfWave(w));
    ++drawn;
  }
}

Colour FitCurveColour(int w) {
  return Fit.FitShowCurves <= 1 ? ColourOfOne(w) : ColourOfWave(w);
}

void PlotFitProgress(std::span<const double> evaluations, std::span<const float> residuals) {
  Graph& graph = GraphNamed(FitProgressGraph);
  ClearPlots(graph);
  PlotPoints(graph, PlotStyle::Line, Blue, evaluations, residuals);
  const bool positive = std::all_of(residuals.begin(), residuals.end(), [](float r) { return r > 0.0F; });
  SetAxisLog(graph, 'y', positive && !residuals.empty());
}

void WhitenFitCursors() {
  for (Cursor& cursor : GraphNamed(FitDataGraph).cursors) cursor.colour = White;
}

}  // namespace zelvane
