#include <algorithm>
#include <charconv>
#include <string>

#include "analysis/analysis_fit_store.h"
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
constexpr char CurveTitle[] = "Export Fitted Curve as ASCII File (ATF format)";
constexpr char CurveHead[] = "ATF 1.0\n2 2\n\"Type=\"\n\"Comment=\"\n\"Time (s)\" \"Simulated Data\"\n";
constexpr char NoTrace[] = "There is no trace to export.";
constexpr char NoFit[] = "No exponential fit has been made: there is no curve to export.";
constexpr char AsciiFiles[] = "*.asc";

/// Returns a number as "%.7e" writes it, with a full stop in every locale.
std::string Exponential(double value) {
  char digits[32];
  return {digits, std::to_chars(digits, digits + sizeof digits, value, std::chars_format::scientific, 7).ptr};
}

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
  const FittedCurve& curve = AnalysisFit.Curve;
  if (curve.sample.empty()) {
    MessagePopup(NoticeTitle, NoFit);
    return;
  }
  const auto path =
      FileSelectPopup({.title = CurveTitle, .defaultName = AsciiFiles, .filter = AsciiFiles, .save = true});
  if (!path || RefuseSourceOfTrace(*path)) return;
  std::string text = CurveHead;
  for (std::size_t i = 0; i < curve.sample.size(); ++i) {
    const double seconds = curve.sample[i] * static_cast<double>(Model.ADInterval) / 1000.0;
    text += Exponential(seconds) + ' ' + Exponential(static_cast<double>(curve.value[i])) + '\n';
  }
  SaveText(*path, text);
}

void AddTraceExports() {
  AddControls("AnalysisPanel", "shell", ExportControls);
  AddMenu(TraceMenu);
}

}  // namespace zelvane
