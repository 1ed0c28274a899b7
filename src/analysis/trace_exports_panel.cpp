#include <algorithm>

#include "analysis/analysis_panel.h"
#include "analysis/trace_exports.h"
#include "model/model_events.h"
#include "model/model_store.h"
#include "platform/index.h"
#include "screen/save_file.h"
#include "screen/screen.h"
#include "trace/trace_export.h"
#include "trace/trace_store.h"
#include "trace/trace_write.h"

namespace zelvane {
namespace {

constexpr char ExportTitle[] =
    "Export data as it appears on the screen into 1-column ascii file (time interval is first value).";
constexpr char NoTrace[] = "There is no trace to export.";
constexpr char NoFit[] = "No exponential fit has been made: there is no curve to export.";
constexpr char AsciiFiles[] = "*.asc";

/// Returns the samples between the ends of the analysis plot.
std::span<const float> ViewedSamples() {
  const SampleRange view = SamplesInView();
  const int samples = std::clamp(Model.NumPoints, 0, static_cast<int>(Trace.SimTrace.size()));
  const int end = std::min(view.last, samples - 1) + 1;
  const int first = std::min(view.first, end);
  return Trace.SimTrace.subspan(Index(first), Index(end - first));
}

// clang-format off
constexpr ControlDecl ExportControls[] = {
    {.name = "ExportTraceButton", .kind = ControlKind::Button, .label = "Export trace...", .format = "",
     .command = "ExportTrace", .action = Run<ExportTrace>,
     .help = "Export data as it appears on the screen into 1-column ascii file with time interval in ms as first value."},
    {.name = "ExportCurveButton", .kind = ControlKind::Button, .label = "Export fitted curve...", .format = "",
     .command = "ExportAnalysis", .action = Run<ExportAnalysis>,
     .help = "Export fitted curve as 2 column ASCII file (ATF Format)."},
};
constexpr MenuDecl TraceMenu[] = {
    {"Tools/Export trace...",        "ExportTrace",    ExportTrace},
    {"Tools/Export fitted curve...", "ExportAnalysis", ExportAnalysis},
};
// clang-format on

}  // namespace

void ExportTrace() {
  if (Trace.TraceValid == 0) {
    MessagePopup(NoticeTitle, NoTrace);
    return;
  }
  const auto path =
      FileSelectPopup({.title = ExportTitle, .defaultName = AsciiFiles, .filter = AsciiFiles, .save = true});
  if (!path || RefuseSourceOfTrace(*path)) return;
  RunSettingsWanted.Tell();
  const NextBlock column = TraceTextBlocks(TraceFormat::SingleColumn, ViewedSamples(), Model.ADInterval, {});
  ExtendFile(*path, BehindLastLine(*path, column));
}

void ExportAnalysis() {
  MessagePopup(NoticeTitle, NoFit);
}

void AddTraceExports() {
  AddControls("AnalysisPanel", "shell", ExportControls);
  AddMenu(TraceMenu);
}

}  // namespace zelvane
