#include "analysis/episodes.h"

#include <utility>

#include "analysis/analysis_store.h"
#include "analysis/analyze.h"
#include "analysis/series.h"
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

/// Reads an episode and shows it; a simulation has none to read and stays. Returns false when the episode
/// cannot be read; the present one then stays.
bool ShowEpisode(int episode) {
  if (!ReadEpisode(episode)) return false;
  ResponseToShow.Tell();
  return true;
}

}  // namespace

bool ReadEpisode(int episode) {
  const int former = std::exchange(Trace.EpisodeIndex, episode);
  if (TraceReloadEpisode() != Outcome::Failed) return true;
  Trace.EpisodeIndex = former;
  return false;
}

Outcome AnalyzeAllEpisodes() {
  if (!CanAnalyzeEpisodes()) return Outcome::Refused;
  Analysis.StopAnalysis = 0;
  ForgetStop();
  const int episodes = Trace.EpisodeCount;
  Outcome outcome = Outcome::Done;
  BeginSeries();
  for (int episode = 1; episode <= episodes; ++episode) {
    const double finished = static_cast<double>(episode - 1) / static_cast<double>(episodes);
    ProcessSystemEvents();
    Breathe(finished);
    if (Analysis.StopAnalysis != 0 || StopAsked()) {
      outcome = Outcome::Stopped;
      break;
    }
    ShowProgress(finished, FormatText("Episode %d of %d", episode, episodes));
    if (!ShowEpisode(episode)) {
      outcome = Outcome::Failed;
      break;
    }
    AnalyzeTrace();
  }
  EndSeries();
  ResetProgress();
  Analysis.StopAnalysis = 1;
  if (outcome == Outcome::Failed) return outcome;
  ForgetMeasures();  // they belong to another episode than the visible one
  return ShowEpisode(1) ? outcome : Outcome::Failed;
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
  return ShowEpisode(Trace.EpisodeIndex + 1) ? AnalyzeTrace() : Outcome::Failed;
}

}  // namespace zelvane
