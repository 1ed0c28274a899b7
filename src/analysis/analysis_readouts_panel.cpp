// The two readout cursors of AnalysisPanel: times, samples and heights.
#include <cmath>
#include <span>

#include "analysis/analysis_plot_panels.h"
#include "analysis/analysis_store.h"
#include "analysis/analysis_views.h"
#include "analysis/analyze.h"
#include "model/model_events.h"
#include "screen/screen.h"
#include "trace/trace_store.h"

namespace zelvane {
namespace {

/// Returns the sample of the trace at a place of the axis; NaN outside the trace.
double TraceAt(double x) {
  const std::span<const float> trace = RecordedTrace();
  if (Trace.TraceValid == 0 || !(x >= 0.0 && x < static_cast<double>(trace.size()))) return std::nan("");
  return static_cast<double>(trace[static_cast<std::size_t>(x)]);
}

void FxnLockCursors(const ControlEvent&) {
  LockReadoutCursors();
  ShowCursorReadouts();
}

constexpr auto Switch = ControlKind::Switch;
constexpr auto Readout = ControlKind::Readout;

// clang-format off
constexpr ControlDecl ReadoutControls[] = {
    {.name = "AnalysisDisplay[1]", .kind = Switch, .label = "Lock on trace", .format = "%d",
     .command = "FxnLockCursors", .action = FxnLockCursors, .help = "Keep the two readout cursors on the trace.",
     .choices = "off|on"},
    {.name = "CursorTime[%d]", .kind = Readout, .label = "Cursor %d", .unit = "ms", .format = "%.6g",
     .help = "Time at readout cursor %d.", .first = 7, .last = 8},
    {.name = "CursorIndex[%d]", .kind = Readout, .label = "Sample %d", .format = "%.0f",
     .help = "Number of the sample at readout cursor %d.", .first = 7, .last = 8},
    {.name = "CursorValue[%d]", .kind = Readout, .label = "Value %d", .format = "%.6g",
     .help = "Height of readout cursor %d. While the cursors are locked, the height of the trace at this time.", .first = 7, .last = 8},
    {.name = "CursorTimeDifference", .kind = Readout, .label = "Time difference", .unit = "ms", .format = "%.6g",
     .help = "Time from readout cursor 7 to cursor 8."},
    {.name = "CursorIndexDifference", .kind = Readout, .label = "Samples between", .format = "%.0f",
     .help = "Samples from readout cursor 7 to cursor 8."},
    {.name = "CursorValueDifference", .kind = Readout, .label = "Value difference", .format = "%.6g",
     .help = "Height of readout cursor 8 minus height of readout cursor 7."},
};
// clang-format on

}  // namespace

void AddCursorReadouts() {
  AddControls(AnalysisPanelName, "view", ReadoutControls);
  ModelFileToSave.Add([] { StoreTyped("AnalysisDisplay[1]"); });
}

void ShowCursorReadouts() {
  const Cursor& first = AnalysisCursor(ReadFirstCursor);
  const Cursor& second = AnalysisCursor(ReadSecondCursor);
  const auto time = [](const Cursor& c) { return static_cast<double>(MsOf(c.x)); };
  ShowNumber("CursorTime[7]", time(first));
  ShowNumber("CursorTime[8]", time(second));
  ShowNumber("CursorIndex[7]", std::trunc(first.x));
  ShowNumber("CursorIndex[8]", std::trunc(second.x));
  ShowNumber("CursorValue[7]", first.y);
  ShowNumber("CursorValue[8]", second.y);
  ShowNumber("CursorTimeDifference", time(second) - time(first));
  ShowNumber("CursorIndexDifference", std::trunc(second.x) - std::trunc(first.x));
  ShowNumber("CursorValueDifference", second.y - first.y);
}

void SetCursorOnTrace(std::size_t cursor) {
  const double y = TraceAt(AnalysisCursor(cursor).x);
  if (std::isfinite(y)) AnalysisCursor(cursor).y = y;
}

void LockReadoutCursors() {
  if (Analysis.AnalysisDisplay[1] == 0) return;
  SetCursorOnTrace(ReadFirstCursor);
  SetCursorOnTrace(ReadSecondCursor);
}

}  // namespace zelvane
