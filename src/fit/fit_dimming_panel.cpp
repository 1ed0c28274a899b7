// What must wait while a session of a waveform fit runs, and what is offered after it.
#include "fit/fit_events.h"
#include "fit/fit_panel.h"
#include "fit/session_store.h"
#include "model/model_store.h"
#include "screen/memory_guard.h"
#include "screen/screen.h"

namespace zelvane {
namespace {

constexpr char SessionRuns[] = "A fit runs. Stop it first.";
constexpr char TakeBackLabel[] = "Take back";
constexpr char BringBackLabel[] = "Bring back";
constexpr char BeforeTitle[] = "Before";
constexpr char FittedTitle[] = "Fitted";
constexpr std::size_t BeforeColumn = 6;  // of FitRatesTable, from 0

/// Returns whether a press of the control starts a work that cannot run beside a fit.
bool MustWait(const Control& control) {
  if (control.whileBusy) return false;
  return control.kind == ControlKind::Button ||
         (control.kind == ControlKind::Switch && control.action != nullptr);
}

void DimDuringSession() {
  if (Model.FitActive == 0) return;
  for (Control& control : Screen.controls) {
    if (!MustWait(control)) continue;
    control.dimmed = true;
    control.whyDimmed = SessionRuns;
  }
}

/// Leaves the dimming to the other rules again.
void EndDimming() {
  for (Control& control : Screen.controls) {
    if (control.whyDimmed != SessionRuns) continue;
    control.dimmed = false;
    control.whyDimmed.clear();
  }
  UpdateDimming();
}

/// The other values are those of the time before the fit, or after "Take back" those of the fit.
void DimAfterSession() {
  SetDimmed("FitTakeBack", !FitSession.hasBefore);
  ControlNamed("FitTakeBack").label = FitSession.takenBack ? BringBackLabel : TakeBackLabel;
  TableNamed("FitRatesTable").columnTitles[BeforeColumn] = FitSession.takenBack ? FittedTitle : BeforeTitle;
}

}  // namespace

void DimForSessions() {
  Panel& panel = PanelNamed(FitPanelName);
  panel.dim.push_back(DimAfterSession);
  panel.dim.push_back(DimDuringSession);
  FitBegan.Add(DimDuringSession);  // after the rules of all panels
  FitEnded.Add(EndDimming);
  MemoryRanOut.Add(EndDimming);
}

}  // namespace zelvane
