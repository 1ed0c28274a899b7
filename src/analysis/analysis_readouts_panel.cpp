// The two readout cursors of AnalysisPanel: times, samples and heights.
#include <cmath>
#include <span>

#include "analysis/analysis_store.h"
#include "analysis/analyze.h"
#include "analysis/internal/analysis_plot.h"
#include "analysis/internal/analysis_views.h"
#include "screen/screen.h"
#include "trace/trace_store.h"

namespace zelvane {
namespace {

/// Sample of the trace at a place of the axis; nan where there is none.
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
    // name                  kind     label                unit  format  command                    action
    {"AnalysisDisplay[1]",   Switch,  "Lock on trace",     "",   "%d",   "FxnLockCursors",          FxnLockCursors,
     "Keep the two readout cursors on the trace.", 0, 0, "off|on"},
    {"CursorTime[%d]",       Readout, "Cursor %d",         "ms", "%.6g", "",                        nullptr,
     "Time at readout cursor %d.", 7, 8},
    {"CursorIndex[%d]",      Readout, "Sample %d",         "",   "%.0f", "",                        nullptr,
     "Number of the sample at readout cursor %d.", 7, 8},
    {"CursorValue[%d]",      Readout, "Value %d",          "",   "%.6g", "",                        nullptr,
     "Height of readout cursor %d. While the cursors are locked, the height of the trace at this time.", 7, 8},
    {"CursorTimeDifference", Readout, "Time difference",   "ms", "%.6g", "",                        nullptr,
     "Time from readout cursor 7 to cursor 8."},
    {"CursorIndexDifference", Readout, "Samples between",  "",   "%.0f", "",                        nullptr,
     "Samples from readout cursor 7 to cursor 8."},
    {"CursorValueDifference", Readout, "Value difference", "",   "%.6g", "",                        nullptr,
     "Height of readout cursor 8 minus height of readout cursor 7."},
};
// clang-format on

}  // namespace

void AddCursorReadouts() {
  AddControls(AnalysisPanelName, "view", ReadoutControls);
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
