// The cursors of AnalysisPanel: a moved cursor changes its fields, and a changed field moves its cursor.
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>

#include "analysis/analysis_panel.h"
#include "analysis/analysis_plot_panels.h"
#include "analysis/analysis_store.h"
#include "analysis/analysis_views.h"
#include "analysis/analyze.h"
#include "platform/index.h"
#include "screen/screen.h"

namespace zelvane {
namespace {

constexpr Colour SearchColour{192, 0, 0};
constexpr Colour ZoomColour{192, 192, 192};
constexpr Colour ReadColour{0, 0, 128};

constexpr std::array<Colour, AnalysisCursorCount> CursorColours = {
    BaselineColour, BaselineColour, SearchColour, SearchColour, ZoomColour,
    ZoomColour,     ReadColour,     ReadColour,   LatencyColour};

int CountBetween(std::size_t from, std::size_t to) {
  return static_cast<int>(
      std::clamp(std::trunc(AnalysisCursor(to).x - AnalysisCursor(from).x), 0.0, 2147483647.0));
}

/// Sets the new length of a stretch whose end was moved. An end before the start returns to its place.
void MoveStretchEnd(std::size_t from, std::size_t to, int& count) {
  if (AnalysisCursor(to).x >= AnalysisCursor(from).x) count = CountBetween(from, to);
}

void CursorMoved(Graph& /*graph*/, int cursor) {
  const auto moved = Index(cursor) - 1;
  ReadAnalysisPanel();  // keeps a value that is typed elsewhere and not yet committed
  switch (moved) {
    case BaseStartCursor:
      Analysis.BaselineStart = MsOf(AnalysisCursor(moved).x);
      break;
    case BaseEndCursor:
      MoveStretchEnd(BaseStartCursor, BaseEndCursor, Analysis.BaselinePts);
      break;
    case SearchStartCursor:
      Analysis.StartAnalysis = MsOf(AnalysisCursor(moved).x);
      break;
    case SearchEndCursor:
      MoveStretchEnd(SearchStartCursor, SearchEndCursor, Analysis.PeakSearchPts);
      break;
    case LatencyCursor:
      Analysis.LatencyPos = MsOf(AnalysisCursor(moved).x);
      break;
    case ReadFirstCursor:
    case ReadSecondCursor:
      LockReadoutCursors();
      HideCursorsOutsideView();
      ShowCursorReadouts();
      return;
    case ZoomFirstCursor:
      PlaceFirstCorner();
      return;
    default:
      return;
  }
  FollowSettings();
}

/// Shows the measures that a cursor at x would give.
void CursorDragged(Graph& /*graph*/, int cursor, double x) {
  MeasureSettings settings = StoredMeasureSettings();
  const auto points = [x](std::size_t from) {
    return static_cast<int>(std::clamp(std::trunc(x - AnalysisCursor(from).x), 0.0, 2147483647.0));
  };
  switch (Index(cursor) - 1) {
    case BaseStartCursor:
      settings.baselineStart = MsOf(x);
      break;
    case BaseEndCursor:
      if (x >= AnalysisCursor(BaseStartCursor).x) settings.baselinePts = points(BaseStartCursor);
      break;
    case SearchStartCursor:
      settings.startAnalysis = MsOf(x);
      break;
    case SearchEndCursor:
      if (x >= AnalysisCursor(SearchStartCursor).x) settings.peakSearchPts = points(SearchStartCursor);
      break;
    case LatencyCursor:
      settings.latencyPos = MsOf(x);
      break;
    default:
      return;
  }
  ShowLiveMeasures(settings);
}

/// Puts a stretch at two places of the view and writes it to its fields.
void BringStretch(std::size_t from, double fromPart, double toPart, float& start, int& count) {
  ReadAnalysisPanel();
  const DataRange x = ViewRange(AnalysisGraph(), 'x');
  AnalysisCursor(from).x = std::trunc(x.min + (x.max - x.min) * fromPart);
  AnalysisCursor(from + 1).x = std::trunc(x.min + (x.max - x.min) * toPart);
  start = MsOf(AnalysisCursor(from).x);
  count = CountBetween(from, from + 1);
  FollowSettings();
}

/// Turns a stretch of negative length around.
void SortStretch(float& start, int& count) {
  if (count >= 0) return;
  start = MsOf(SampleOf(start) + count);
  count = static_cast<int>(-std::max<std::int64_t>(count, -2147483647));
}

// -- Callbacks --

void FxnBringBaseCursors(const ControlEvent&) {
  BringStretch(BaseStartCursor, 0.25, 0.5, Analysis.BaselineStart, Analysis.BaselinePts);
}

void FxnBringAnalysisCursors(const ControlEvent&) {
  BringStretch(SearchStartCursor, 1.0 / 3.0, 2.0 / 3.0, Analysis.StartAnalysis, Analysis.PeakSearchPts);
}

constexpr auto Button = ControlKind::Button;

// clang-format off
constexpr ControlDecl CursorControls[] = {
    {.name = "BringBaseButton", .kind = Button, .label = "Bring baseline", .format = "",
     .command = "FxnBringBaseCursors", .action = FxnBringBaseCursors,
     .help = "Move the two baseline cursors to one quarter and one half of the view. The baseline is then "
     "measured there."},
    {.name = "BringAnalysisButton", .kind = Button, .label = "Bring peak search", .format = "",
     .command = "FxnBringAnalysisCursors", .action = FxnBringAnalysisCursors,
     .help = "Move the two cursors of the peak search to one third and two thirds of the view. The peak is then "
     "searched there."},
};
// clang-format on

}  // namespace

void AddAnalysisCursors() {
  AddControls(AnalysisPanelName, "view", CursorControls);
  Graph& graph = AnalysisGraph();
  for (std::size_t c = 0; c < AnalysisCursorCount; ++c) {
    const bool zoomPair = c == ZoomFirstCursor || c == ZoomSecondCursor;
    graph.cursors[c] = {10.0 * static_cast<double>(c + 1), 50.0, !zoomPair, CursorColours[c]};
  }
  graph.cursorMoved = CursorMoved;
  graph.cursorDragged = CursorDragged;
}

Cursor& AnalysisCursor(std::size_t cursor) {
  return AnalysisGraph().cursors[cursor];
}

void SortAnalysisCursors() {
  ReadAnalysisPanel();
  SortStretch(Analysis.BaselineStart, Analysis.BaselinePts);
  SortStretch(Analysis.StartAnalysis, Analysis.PeakSearchPts);
  FollowSettings();
}

void PlaceAnalysisCursors() {
  AnalysisCursor(BaseStartCursor).x = SampleOf(Analysis.BaselineStart);
  AnalysisCursor(BaseEndCursor).x = AnalysisCursor(BaseStartCursor).x + Analysis.BaselinePts;
  AnalysisCursor(SearchStartCursor).x = SampleOf(Analysis.StartAnalysis);
  AnalysisCursor(SearchEndCursor).x = AnalysisCursor(SearchStartCursor).x + Analysis.PeakSearchPts;
  AnalysisCursor(LatencyCursor).x = SampleOf(Analysis.LatencyPos);
  for (const std::size_t c :
       {BaseStartCursor, BaseEndCursor, SearchStartCursor, SearchEndCursor, LatencyCursor})
    SetCursorOnTrace(c);
  HideCursorsOutsideView();
}

}  // namespace zelvane
