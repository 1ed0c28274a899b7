// FitPanel while a session runs, and after it.
#include <chrono>

#include "fit/fit_events.h"
#include "fit/fit_panel.h"
#include "fit/fit_panels.h"
#include "fit/fit_progress.h"
#include "fit/session_store.h"
#include "model/model_panels.h"
#include "model/model_store.h"
#include "screen/memory_guard.h"

namespace zelvane {
namespace {

constexpr char DuringSession[] = "blue";
constexpr char WaitPanel[] = "WaitPanel";

using Clock = std::chrono::steady_clock;

/// Between two drawings: a little more than ten come in a second.
constexpr std::chrono::milliseconds DrawingGap{90};

/// Numbers, rates, curve and log come with every fifth drawing of the comparison: nobody reads them faster.
constexpr int DrawingsPerNumbers = 5;

Clock::time_point lastDrawing;
int drawings = 0;

void ShowNumbers(const char* colour) {
  ShowFitResults(colour);
  ShowNumber("FitEvalsPerSecond", EvaluationsPerSecond());
  ShowNumber("FitElapsed", FitSeconds());
}

/// Shows the rates of the form that is fitted.
void ShowRates() {
  if (Fit.FitKind != FitOfRates) return;
  if (Model.ModelIs2D != 0) {
    WriteGridRates();
  } else {
    WriteTableRates();
  }
}

/// Draws the comparison quickly or well.
void SetDraft(bool draft) {
  for (const char* name : {FitCurvesGraph, FitResidualGraph}) GraphNamed(name).draft = draft;
}

void ShowBegin() {
  SetDraft(true);
  WhitenFitCursors();
  ShowNumber("FitStop", 0.0);
  drawings = 0;
  ShowNumbers(DuringSession);
  ClearPlots(GraphNamed(FitProgressGraph));
  TellLinesChanged(TextBoxNamed(FitLogBoxName));
  UpdateDimming();
}

void ShowProgressOfFit() {
  const Clock::time_point now = Clock::now();
  if (now - lastDrawing < DrawingGap) return;
  lastDrawing = now;
  if (Fit.FitKind != FitOfRates) FitPanelPlot();  // the stimulus is what varies
  FitPlot();
  if (drawings++ % DrawingsPerNumbers != 0) return;
  ShowNumbers(DuringSession);
  ShowRates();
  PlotFitProgress(FitSession.progressEvals, FitSession.progressResidual);
  TellLinesChanged(TextBoxNamed(FitLogBoxName));
}

void ShowWait(bool waits) {
  if (waits)
    ShowPanel(WaitPanel);
  else
    HidePanel(WaitPanel);
}

void ShowEnd() {
  ShowRates();
  PlotFitProgress(FitSession.progressEvals, FitSession.progressResidual);
  ShowNumber("FitStop", 1.0);
  ShowFitResults();
  ShowNumber("FitElapsed", FitSession.seconds);
  FitPanelPlot();
  SetDraft(false);
  FitPlot();
  TellLinesChanged(TextBoxNamed(FitLogBoxName));
  UpdateDimming();
}

}  // namespace

void FollowSessions() {
  AddPanel({.name = WaitPanel,
            .title = "Please wait: the scheme runs once for each waveform",
            .help = "Shows while one step compares the scheme with the recordings."});
  FitComparing.Add(ShowWait);
  MemoryRanOut.Add([] { ShowWait(false); });
  FitBegan.Add(ShowBegin);
  FitProgressed.Add(ShowProgressOfFit);
  FitEnded.Add(ShowEnd);
}

}  // namespace zelvane
