// Episodes on AnalysisPanel: stepping, analysing many, and back from a row of the table to its sweep.
#include <algorithm>
#include <string>

#include "analysis/analysis_panel.h"
#include "analysis/analysis_store.h"
#include "analysis/analysis_views.h"
#include "analysis/analyze.h"
#include "analysis/episodes.h"
#include "analysis/results_table.h"
#include "platform/index.h"
#include "screen/screen.h"
#include "trace/trace_read.h"
#include "trace/trace_store.h"

namespace zelvane {
namespace {

constexpr char OtherFile[] = "Re-load the datafile you want to view.";
constexpr int EpisodeColumn = 3;
constexpr std::size_t ExtensionLength = 4;  // with its full stop

constexpr double LargestSection = 1e9;  // beyond any file; a typed number may be larger than an int

void ShowSection(int episode) {
  if (Trace.TraceValid == 0) return;
  GoToEpisode(episode);
}

void FxnAnLastSection(const ControlEvent&) {
  ShowSection(Trace.EpisodeIndex - 1);
}

void FxnAnNextSection(const ControlEvent&) {
  ShowSection(Trace.EpisodeIndex + 1);
}

void FxnAnSectionRead(const ControlEvent& event) {
  ShowSection(static_cast<int>(std::clamp(event.control->number, 0.0, LargestSection)));
}

void AN_AutoAnalyzeButton(const ControlEvent&) {
  AnalyzeAllEpisodes();
}

void AN_AnalyzeNextButton(const ControlEvent&) {
  AnalyzeNextEpisode();
}

void FxnStopAn(const ControlEvent&) {
  Analysis.StopAnalysis = 1;
}

void PressAnalysisKey(std::string_view key) {
  if (key == "PageDown") ShowSection(Trace.EpisodeIndex - 1);
  if (key == "PageUp") ShowSection(Trace.EpisodeIndex + 1);
  if (key == "Home") ShowSection(1);
  if (key == "End") ShowSection(Trace.EpisodeCount);
}

/// Returns whether a row of the table comes from the present data file.
bool OfPresentFile(const std::string& rowName) {
  const std::size_t stem = rowName.size() > ExtensionLength ? rowName.size() - ExtensionLength : 0;
  return DataFileName().starts_with(rowName.substr(0, stem));
}

/// Shows the sweep of a clicked episode and measures it again.
void FxnAnTable(Table& /*table*/, int row, int column) {
  if (column != EpisodeColumn) return;
  const AnalysisRow& chosen = Analysis.Rows[Index(row)];
  if (!chosen.filled || Trace.TraceValid == 0) return;
  MarkTableRow(row);
  if (!OfPresentFile(chosen.fileName)) {
    MessagePopup(NoticeTitle, OtherFile);
    return;
  }
  if (chosen.episode != Trace.EpisodeIndex && GoToEpisode(chosen.episode) != Outcome::Done) return;
  if (ReanalyzeTrace() == Outcome::Done) RewriteRow(row);
}

constexpr auto Button = ControlKind::Button;
constexpr auto Number = ControlKind::Number;

// clang-format off
constexpr ControlDecl SectionControls[] = {
    {.name = "AutoAnalyzeButton", .kind = Button, .label = "Analyze all", .format = "",
     .command = "AN_AutoAnalyzeButton", .action = AN_AutoAnalyzeButton,
     .help = "Measure every episode of the recording. Each episode adds a row to the table."},
    {.name = "AnalyzeNextButton", .kind = Button, .label = "Analyze next", .format = "",
     .command = "AN_AnalyzeNextButton", .action = AN_AnalyzeNextButton,
     .help = "Read the next episode and measure it."},
    {.name = "StopAnalysisButton", .kind = Button, .label = "Stop", .format = "", .command = "FxnStopAn",
     .action = FxnStopAn, .help = "Stop the analysis of all episodes before the next episode.", .whileBusy = true},
    {.name = "SectionNumber", .kind = Number, .label = "Episode", .format = "%.0f", .command = "FxnAnSectionRead",
     .action = FxnAnSectionRead, .help = "Number of the episode in view. Enter another number to read that episode."},
    {.name = "AnalysisLast", .kind = Button, .label = "Last episode", .format = "", .command = "FxnAnLastSection",
     .action = FxnAnLastSection, .help = "Read the previous episode. From the first episode it goes to the last."},
    {.name = "AnalysisNext", .kind = Button, .label = "Next episode", .format = "", .command = "FxnAnNextSection",
     .action = FxnAnNextSection, .help = "Read the next episode. From the last episode it goes to the first."},
};
// clang-format on

}  // namespace

void AddAnalysisSections() {
  AddControls(AnalysisPanelName, "sections", SectionControls);
  TableNamed(AnalysisTableName).clicked = FxnAnTable;
  PanelNamed(AnalysisPanelName).key = PressAnalysisKey;
}

}  // namespace zelvane
