#include "analysis/episodes.h"

#include "analysis/analysis_store.h"
#include "analysis/analyze.h"
#include "fit/fit_store.h"
#include "io/trace_read.h"
#include "screen/popups.h"
#include "trace/trace_events.h"
#include "trace/trace_store.h"

namespace zelvane {
namespace {

constexpr char OneEpisode[] =
    "This option only works on episodic data / simulations with more than one sweep.";
constexpr char EndOfFile[] = "You have reached the end of the file.";

bool CanAnalyzeEpisodes() {
  return Trace.TraceValid != 0 && Fit.FitMode != FitWaveforms;
}

void ReadAndShowEpisode() {
  TraceReloadEpisode();
  ResponseToShow.Tell();
}

}  // namespace

void AnalyzeAllEpisodes() {
  if (!CanAnalyzeEpisodes()) return;
  Analysis.StopAnalysis = 0;
  const int episodes = Trace.EpisodeCount;
  BeginSeries();
  for (int episode = 1; episode <= episodes; ++episode) {
    ProcessSystemEvents();
    if (Analysis.StopAnalysis != 0) break;
    ShowProgress(static_cast<double>(episode - 1) / static_cast<double>(episodes),
                 FormatText("Episode %d of %d", episode, episodes));
    Trace.EpisodeIndex = episode;
    ReadAndShowEpisode();
    AnalyzeTrace();
  }
  EndSeries();
  ResetProgress();
  Analysis.StopAnalysis = 1;
  Trace.EpisodeIndex = 1;
  Analysis.Measures.measured = 0;  // they belong to another episode than the one in view
  ReadAndShowEpisode();
}

void AnalyzeNextEpisode() {
  if (!CanAnalyzeEpisodes()) return;
  if (Trace.EpisodeCount <= 1) {
    MessagePopup(NoticeTitle, OneEpisode);
    return;
  }
  if (Trace.EpisodeIndex >= Trace.EpisodeCount) {
    Trace.EpisodeIndex = Trace.EpisodeCount;
    MessagePopup(NoticeTitle, EndOfFile);
    return;
  }
  ++Trace.EpisodeIndex;
  ReadAndShowEpisode();
  AnalyzeTrace();
}

}  // namespace zelvane
