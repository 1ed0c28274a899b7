#include "stimulus/stimulus.h"

#include <algorithm>
#include <bit>
#include <cassert>
#include <cstddef>
#include <cstdint>

#include "model/model_store.h"
#include "platform/index.h"
#include "platform/zero_pages.h"
#include "screen/popups.h"
#include "screen/window_reporter.h"
#include "stimulus/gaussian_filter.h"
#include "stimulus/profile_builder.h"
#include "stimulus/stimulus_file.h"
#include "stimulus/stimulus_store.h"
#include "stimulus/stimulus_views.h"

namespace zelvane {
namespace {

constexpr char StopBeyondEnd[] = "Stop position is past end of arra; increase number of simulated points.";
constexpr char ModeUnavailable[] =
    "This option will be available soon/it is undergoing development and testing.";

int RunSamples() {
  return std::clamp(Model.NumPoints, 0, MaxStimPoints);
}

/// Returns the samples of a run in the profile that is shown and edited.
std::span<float> TargetSamples() {
  const auto profile = Index(std::clamp(Stimulus.StimTarget, 0, MaxDrugs));
  return Stimulus.Profile[profile].first(Index(RunSamples()));
}

std::int64_t IndexOf(float timeMs) {
  return TimeIndex(timeMs, Model.ADInterval);
}

float HoldingVolts() {
  return Model.VHold / 1000.0F;
}

/// Sets samples to a level. For a level of 0 returns their memory to the system instead of writing to it.
void SetLevel(std::span<float> samples, float level) {
  if (std::bit_cast<std::uint32_t>(level) == 0) {
    ReleaseZeroPages(samples);
  } else {
    FillLevel(samples, level);
  }
}

void SetStep(std::span<float> profile, float outside, float inside, std::int64_t first, std::int64_t last) {
  const std::span<float> step = SamplesWithin(profile, first, last);
  const auto before = Index(step.data() - profile.data());
  SetLevel(profile.first(before), outside);
  SetLevel(step, inside);
  SetLevel(profile.subspan(before + step.size()), outside);
}

/// Builds the step of voltage or Drug1 over all samples, so that it is also right for a longer run.
void BuildAutomaticStep() {
  const std::int64_t start = IndexOf(Stimulus.AutoStart);
  const std::int64_t stop = IndexOf(Stimulus.AutoStop);
  const float hold = HoldingVolts();
  if (Stimulus.AutoDrugOrVolt == 1) {
    SetStep(Stimulus.Profile[0], hold, hold + Stimulus.AutoValue, start, stop);
  } else {
    SetLevel(Stimulus.Profile[0], hold);
    SetStep(Stimulus.Profile[1], 0.0F, Stimulus.AutoValue, start, stop);
    if (Stimulus.AutoFilterOn != 0 && Stimulus.StimTarget == 1) {
      GaussianFilter(Stimulus.Profile[1].first(Index(RunSamples())), Stimulus.FilterFc, WindowReporter());
    }
  }
  Stimulus.StimFromFile = 0;
}

/// Asks for a stimulus file and reads it.
Outcome ReadUserStimulus() {
  FileRequest request;
  request.title = "Read Stimulus Profile";
  request.filter = "*.stm";
  const auto path = FileSelectPopup(request);
  return path ? StimFileRead(*path) : Outcome::Refused;
}

/// Reads the profiles of USER mode from a file, if necessary. On failure selects AUTOMATIC mode.
void RebuildUserStimulus() {
  if (Stimulus.StimFromFile != 0 || Model.FitActive != 0) return;
  Stimulus.StimMode = StimAutomatic;  // unless the reading succeeds
  const bool read = ReadUserStimulus() == Outcome::Done;
  if (read) {
    Stimulus.StimMode = StimUser;
    Stimulus.StimFromFile = 1;
  }
  StimPanelRefresh();
  if (!read) BuildAutomaticStep();
}

void LeaveUnavailableMode() {
  if (Model.FitActive == 0) MessagePopup(NoticeTitle, ModeUnavailable);
  Stimulus.StimMode = StimUser;
  StimPanelRefresh();
}

EdgedPulse EdgedStep(std::int64_t samples) {
  return {Stimulus.StepAmp, Stimulus.StepRiseTau, Stimulus.StepDecayTau, samples};
}

ExponentialPulse ExponentialWave() {
  return {.offset = Stimulus.ExpOffset,
          .amp1 = Stimulus.ExpAmp1,
          .amp2 = Stimulus.ExpAmp2,
          .tau1 = Stimulus.ExpTau1,
          .tau2 = Stimulus.ExpTau2,
          .riseTau = Stimulus.ExpRiseTau,
          .components = Stimulus.ExpComponents,
          .rises = Stimulus.ExpRiseFlag != 0};
}

/// Returns the length of a step pulse of a train. It is one quotient, so that all pulses have the same
/// length.
std::int64_t TrainStepSamples() {
  const double length = static_cast<double>(Stimulus.StepStop) - static_cast<double>(Stimulus.StepStart);
  return SampleIndex(length / static_cast<double>(Model.ADInterval));
}

Pulse TrainPulse() {
  if (Stimulus.TrainExpFlag != 0) return ExponentialWave();
  if (Stimulus.TrainRiseFlag != 0) return EdgedStep(TrainStepSamples());
  return SquarePulse{Stimulus.StepAmp, TrainStepSamples()};
}

/// Lets the stop button work and moves the progress bar during a train of very many samples.
bool PollStop(double fraction) {
  if (Model.FitActive != 0) return true;
  ShowProgress(fraction);
  ProcessSystemEvents();
  return !StopAsked();
}

void AddToTarget(const Pulse& pulse, const PulseTrain& train) {
  // Room for one pulse, taken once per process; between uses the system has its pages.
  static const std::span<float> room = TakeZeroPages(MaxStimPoints);
  const std::span<float> target = TargetSamples();
  if (target.empty()) return;
  ForgetStop();
  AddTrain(target, pulse, train, Model.ADInterval, room.first(target.size()), PollStop);
  ReleaseZeroPages(room.first(target.size()));
  if (Model.FitActive == 0) ResetProgress();
}

}  // namespace

Outcome StimRebuild() {
  StimReadControls();
  if (Stimulus.StimMode == StimAutomatic && Model.FitActive == 0) BuildAutomaticStep();
  if (Stimulus.StimMode == StimUser) RebuildUserStimulus();
  // Comes last: it selects USER mode, which asks for its file at the next rebuild.
  const bool unavailable = Stimulus.StimMode == StimUnavailable;
  if (unavailable) LeaveUnavailableMode();
  ShowStimulusFacts();
  StimPlot();
  Stimulus.BuiltInterval = Model.ADInterval;
  return unavailable ? Outcome::Refused : Outcome::Done;
}

void StimFollowInterval() {
  const bool same =
      std::bit_cast<std::uint32_t>(Stimulus.BuiltInterval) == std::bit_cast<std::uint32_t>(Model.ADInterval);
  if (same || (Stimulus.StimMode == StimUser && Stimulus.StimFromFile == 0)) return;
  StimRebuild();
}

void CreateStim() {
  StimReadControls();
  Stimulus.StimFromFile = 0;
  const auto add = Stimulus.StepRamp != 0 ? AddRamp : AddStep;
  add(TargetSamples(), Stimulus.StepAmp, IndexOf(Stimulus.StepStart), IndexOf(Stimulus.StepStop));
  StimPlot();
}

Outcome CreateExpStim() {
  StimReadControls();
  Stimulus.StimFromFile = 0;
  const std::int64_t start = IndexOf(Stimulus.StepStart);
  const std::int64_t stop = IndexOf(Stimulus.StepStop);
  if (stop >= RunSamples()) {
    MessagePopup(ErrorTitle, StopBeyondEnd);
    return Outcome::Refused;
  }
  AddToTarget(EdgedStep(stop - start), {.first = static_cast<double>(start)});
  StimPlot();
  return Outcome::Done;
}

void CreateExp() {
  StimReadControls();
  Stimulus.StimFromFile = 0;
  AddToTarget(ExponentialWave(), {.first = static_cast<double>(IndexOf(Stimulus.ExpStart))});
  StimPlot();
}

void CreateTrain() {
  StimReadControls();
  const double interval = Model.ADInterval;
  AddToTarget(TrainPulse(), {.first = static_cast<double>(Stimulus.TrainDelay) / interval,
                             .step = static_cast<double>(Stimulus.TrainInterval) / interval,
                             .count = Stimulus.TrainCount});
  StimPlot();
}

void EraseStim() {
  StimReadControls();
  SetLevel(TargetSamples(), 0.0F);
  StimRebuild();
}

void FilterStim() {
  StimReadControls();
  GaussianFilter(TargetSamples(), Stimulus.FilterFc, WindowReporter());
  StimPlot();
}

void FillVoltage(int first, int last) {
  SetLevel(SamplesWithin(Stimulus.Profile[0], first, last), HoldingVolts());
}

StimulusValues StimulusAt(int point) {
  const auto sample = Index(point);
  assert(point >= 0 && sample < Stimulus.Profile[0].size());
  StimulusValues values;
  for (std::size_t k = 0; k < values.size(); ++k) values[k] = Stimulus.Profile[k][sample];
  return values;
}

}  // namespace zelvane
