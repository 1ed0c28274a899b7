#include "analysis/episodes.h"

#include "analysis/analysis_store.h"
#include "analysis/analyze.h"
#include "parameters/parameters_store.h"
#include "screen/popups.h"
#include "trace/trace_events.h"
#include "trace/trace_read.h"
#include "trace/trace_store.h"

namespace zelvane {
namespace {

constexpr char OneEpisode[] =
    "This option only works on episodic data / simulations with more than one sweep.";
constexpr char EndOfFile[] = "You have reached the end of the file.";

bool CanAnalyzeEpisodes() {
  return Trace.TraceValid != 0 && Parameters.FitMode != FitWaveforms;
}

void ReadAndShowEpisode() {
  TraceReloadEpisode();
  ResponseToShow.Tell();
}

}  // namespace

Outcome AnalyzeAllEpisodes() {
  if (!CanAnalyzeEpisodes()) return Outcome::Refused;
  Analysis.StopAnalysis = 0;
  const int episodes = Trace.EpisodeCount;
  Outcome outcome = Outcome::Done;
  BeginSeries();
  for (int episode = 1; episode <= episodes; ++episode) {
    ProcessSystemEvents();
    if (Analysis.StopAnalysis != 0) {
      outcome = Outcome::Stopped;
      break;
    }
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
  Analysis.Measures.measured = 0;  // they belong to another episode than the visible one
  ReadAndShowEpisode();
  return outcome;
}

Outcome AnalyzeNextEpisode() {
  if (!CanAnalyzeEpisodes()) return Outcome::Refused;
  if (Trace.EpisodeCount <= 1) {
    MessagePopup(NoticeTitle, OneEpisode);
    return Outcome::Refused;
  }
  if (Trace.EpisodeIndex >= Trace.EpisodeCount) {
    Trace.EpisodeIndex = Trace.EpisodeCount;
    MessagePopup(NoticeTitle, EndOfFile);
    return Outcome::Refused;
  }
  ++Trace.EpisodeIndex;
  ReadAndShowEpisode();
  return AnalyzeTrace();
}

}  // namespace zelvane
