// Live measures of AnalysisPanel: the values that an analysis would give, while the user moves a cursor or
// changes a setting. They show in the readouts and on the plot, and change no result.
#include <optional>

#include "analysis/analysis_panel.h"
#include "analysis/analysis_store.h"
#include "analysis/analysis_views.h"
#include "analysis/analyze.h"
#include "screen/screen.h"
#include "trace/trace_events.h"
#include "trace/trace_store.h"

namespace zelvane {
namespace {

std::optional<ShownMeasures>& Live() {
  static std::optional<ShownMeasures> live;
  return live;
}

void ShowBoth() {
  ShowMeasures();
  ShowAnalysisMarks();
}

void FxnMeasureWhileMoving(const ControlEvent& /*event*/) {
  if (Analysis.MeasureWhileMoving == 0)
    EndLiveMeasures();
  else
    ShowLiveMeasures(StoredMeasureSettings());
}

// clang-format off
constexpr ControlDecl LiveControls[] = {
    {.name = "MeasureWhileMoving", .kind = ControlKind::Switch, .label = "Measure while moving", .format = "%d",
     .command = "FxnMeasureWhileMoving", .action = FxnMeasureWhileMoving,
     .help = "Show live values in the readouts while you move a cursor or change a setting. Results, table and files "
     "change only with Analyze.", .choices = "off|on"},
};
// clang-format on

}  // namespace

void AddLiveMeasures() {
  Live().reset();
  AddControls(AnalysisPanelName, "view", LiveControls);
  TraceWillChange.Add(EndLiveMeasures);
  MeasuresChanged.Add([] { Live().reset(); });  // before the panel shows the new results
}

ShownMeasures MeasuresOnPanel() {
  return Live().value_or(ShownMeasures{Analysis.Measures, Analysis.MeasuredWith});
}

void ShowLiveMeasures(const MeasureSettings& settings) {
  if (Analysis.MeasureWhileMoving == 0 || Trace.TraceValid == 0 || settings.intervalMs == 0.0F) return;
  Live() = ShownMeasures{.settings = settings, .live = true};
  MeasureResponse(RecordedTrace(), settings, Live()->measures);
  ShowBoth();
}

void EndLiveMeasures() {
  if (!Live()) return;
  Live().reset();
  ShowBoth();
}

}  // namespace zelvane
