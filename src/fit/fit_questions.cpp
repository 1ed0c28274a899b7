#include "fit/fit_questions.h"

#include <cmath>

#include "fit/fit_panel.h"
#include "fit/fit_rows.h"
#include "fit/fit_vertices.h"
#include "fit/session_store.h"
#include "fit/wave_compare.h"
#include "fit/wave_faults.h"
#include "fit/wave_set_panels.h"
#include "model/model_events.h"
#include "model/model_panels.h"
#include "model/model_store.h"
#include "parameters/fit_limits_panel.h"
#include "parameters/parameters_store.h"
#include "run/run_panel.h"
#include "screen/popups.h"

namespace zelvane {
namespace {

constexpr char StepTitle[] = "! Integration step is small";
constexpr char StepQuestion[] =
    "The current setting will run slowly; do you want to increase the integration step size?";
constexpr char LimitsTitle[] = "? ";
constexpr char LimitsQuestion[] =
    "Do you want to start waveform fitting with no parameter limits or constraints ?";
constexpr char IntervalsQuestion[] =
    "AD intervals for stimulus and fitted data file don't match. Do you want to proceed?";
constexpr char StepIntervalsQuestion[] =
    "Time interval for stimulus (%f) and data (%f) don't match. Proceed?";
constexpr char NormalizeQuestion[] = "Waveforms are not normalized. Do you want to normalize now?";
constexpr char UnnormalizedTitle[] = "? ";
constexpr char UnnormalizedQuestion[] = "Do you want to proceed without normalizing waveforms?";
constexpr char LogTitle[] = "?";
constexpr char LogQuestion[] = "Do you want to log results to text file?";
constexpr char AllFixed[] = "All rates are fixed. Free at least one before fitting.";
constexpr char OtherForm[] = "The fit changes the rates of the %s, which is not the form on display.";
constexpr char ReversedLimits[] = "The limits of row %d (%s) are the wrong way round: %g to %g.";
constexpr char EqualLimits[] = "Both limits of row %d (%s) are %g.";
constexpr char NoLimits[] = "A limit of row %d (%s) is not a number, and has no effect.";
constexpr char StimulusUnlimited[] =
    "Limits are off: a trial stimulus can be so strong that its simulation takes minutes.";
constexpr char IntervalsRefused[] =
    "The intervals of a stimulus and a recording differ: use --any-interval to fit all the same.";
constexpr char NoiseOn[] = "%s is on and acts on each simulation of the fit.";

/// Returns the answer of the caller, or asks the user.
bool Agreed(bool FitAnswers::*given, std::string_view title, std::string_view text) {
  return FitSession.answers ? (*FitSession.answers).*given : ConfirmPopup(title, text);
}

/// Copies what is typed on the panels to the stores, and makes the form of the fit the active one.
void ReadPanels() {
  const bool gridShown = Model.ModelIs2D != 0;
  ReadRunParameters();
  ReadActiveRates();
  TakeConstraintsPanel();
  TakeLoopsPanel();
  ReadFitPanel();
  SetFitMode(FitWaveforms);
  FitLimitsRead();
  Model.ModelIs2D = Fit.FitModelIs2D;
  if (gridShown != (Model.ModelIs2D != 0)) {
    Note(FormatText(OtherForm, Model.ModelIs2D != 0 ? "grid" : "table"));
    ReadActiveRates();
  }
}

void NoteLimitsOf(const FitRow& row) {
  const FitLimit& limit = Fit.WaveFitLimits[Index(row.row)];
  if (limit.lo < limit.hi || RowIsFixed(row.row)) return;
  const std::string name = FormatText("K%d,%d", row.from, row.to);
  if (limit.lo > limit.hi) {
    Note(FormatText(ReversedLimits, row.row, name.c_str(), limit.lo, limit.hi));
  } else if (limit.lo == limit.hi) {
    Note(FormatText(EqualLimits, row.row, name.c_str(), limit.lo));
  } else {
    Note(FormatText(NoLimits, row.row, name.c_str()));
  }
}

void NoteLimits() {
  if (Fit.FitKind == FitOfStimulus) {
    if (Fit.WaveFitLimitsOn == 0) Note(StimulusUnlimited);
  } else if (Fit.WaveFitLimitsOn != 0) {
    for (const FitRow& row : FitRowsInUse()) NoteLimitsOf(row);
  }
}

void NoteNoise() {
  if (Model.AutoNoise != 0) Note(FormatText(NoiseOn, "Automatic noise"));
  if (Model.AutoFilter != 0) Note(FormatText(NoiseOn, "The automatic filter"));
}

void OfferLongerStep() {
  const bool slow = Model.SimulatorKind == FixedStepIntegrator &&
                    static_cast<double>(Model.MaxStepSize) < 0.5 * static_cast<double>(Model.ADInterval);
  if (!slow || !Agreed(&FitAnswers::longerStep, StepTitle, StepQuestion)) return;
  Model.MaxStepSize = Model.ADInterval / 2.0F;
  RunSettingsChanged.Tell();
}

bool IntervalsDiffer() {
  const double difference =
      static_cast<double>(Fit.WaveDataInterval) - static_cast<double>(Fit.WaveStimInterval);
  return std::fabs(difference) > LargestIntervalDifference;
}

/// Asks whether to go on with different intervals. A caller that answers beforehand is told of every waveform.
bool IntervalsAccepted(std::string_view question) {
  const bool differ = IntervalsDiffer() || (FitSession.answers && WaveIntervalsDiffer());
  if (!differ || Agreed(&FitAnswers::anyInterval, WarningTitle.words, question)) return true;
  if (FitSession.answers) Note(IntervalsRefused);
  return false;
}

/// Asks about normalising. Returns false after two times no.
bool NormalizedAsWanted() {
  if (Fit.FitNormalized != 0) return true;
  if (Agreed(&FitAnswers::normalize, WarningTitle.words, NormalizeQuestion)) {
    SwitchNormalized();
    WriteFitPanel();
    return true;
  }
  return FitSession.answers || ConfirmPopup(UnnormalizedTitle, UnnormalizedQuestion);
}

/// Asks for a log if there is none. A log that is on without a name asks for it. Without a name there is no log.
void OfferLog() {
  if (FitSession.answers) return;
  if (Fit.FitLogOn == 0 && ConfirmPopup(LogTitle, LogQuestion)) Fit.FitLogOn = 1;
  if (Fit.FitLogOn != 0 && Fit.FitLogFile.empty()) AskForFitLog();
  WriteFitPanel();
}

}  // namespace

Outcome AskBeforeFit() {
  const bool ofRates = Fit.FitKind == FitOfRates;
  ReadPanels();
  static_cast<void>(WaveFitRowsBuild(RowLimits::Keep));  // tells when there are too many rates
  if (ofRates && FreeRates() == 0) {
    MessagePopup(WarningTitle, AllFixed);
    return Outcome::Refused;
  }
  TellWaveFaults();
  OfferLongerStep();
  if (ofRates && (Fit.WaveFitLimitsOn == 0 || Fit.WaveFitFixOn == 0) && !FitSession.answers &&
      !ConfirmPopup(LimitsTitle, LimitsQuestion)) {
    ShowFitLimits(FitWaveforms);
    return Outcome::Refused;
  }
  if (!IntervalsAccepted(IntervalsQuestion)) return Outcome::Refused;
  if (!NormalizedAsWanted()) return Outcome::Refused;
  if (!ofRates) AddFitLogLine("Normalize...\n");
  OfferLog();
  LimitsFollowRates();
  NoteLimits();
  NoteNoise();
  return Outcome::Done;
}

Outcome AskBeforeStep() {
  ReadPanels();
  TellWaveFaults();
  if (Fit.FitKind == FitOfRates && IntervalsDiffer() &&
      !ConfirmPopup(WarningTitle.words,
                    FormatText(StepIntervalsQuestion, static_cast<double>(Fit.WaveStimInterval),
                               static_cast<double>(Fit.WaveDataInterval)))) {
    return Outcome::Refused;
  }
  if (!NormalizedAsWanted()) return Outcome::Refused;
  static_cast<void>(WaveFitRowsBuild(RowLimits::Keep));  // tells when there are too many rates
  NoteNoise();
  return Outcome::Done;
}

}  // namespace zelvane
