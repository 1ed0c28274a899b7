#include "analysis/dose_runs.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "analysis/analysis_fit_store.h"
#include "analysis/analysis_store.h"
#include "analysis/analyze.h"
#include "analysis/dose_store.h"
#include "analysis/series.h"
#include "model/model_store.h"
#include "parameters/parameters_store.h"
#include "platform/index.h"
#include "run/run.h"
#include "screen/popups.h"
#include "screen/window_reporter.h"
#include "stimulus/stimulus_store.h"

namespace zelvane {
namespace {

constexpr char NoStimulus[] = "The stimulus of drug %d is empty, so that no dose can scale it.";
constexpr float MostBaselineMs = 1000.0F;
constexpr double SteadyPart = 0.1;  // of the pulse, at its end

/// Samples of the profile that a run uses: one for each of its points, and the one before.
std::span<float> ProfileOf(int drug) {
  const auto samples = Index(std::clamp(Model.NumPoints, 0, MaxPoints)) + 1;
  const std::span<float> profile = Stimulus.Profile[Index(std::clamp(drug, 1, MaxDrugs))];
  return profile.first(std::min(samples, profile.size()));
}

float MeanAtEnd(const PulseSpan& pulse) {
  const std::span<const float> trace = RecordedTrace();
  const int length = pulse.last - pulse.first + 1;
  const int samples = std::max(static_cast<int>(length * SteadyPart), 1);
  const int end = std::min(pulse.last + 1, static_cast<int>(trace.size()));
  const int begin = std::max(end - samples, 0);
  double sum = 0.0;
  for (int i = begin; i < end; ++i) sum += static_cast<double>(trace[Index(i)]);
  return end > begin ? static_cast<float>(sum / (end - begin)) : 0.0F;
}

float ResponseOf(int measure, const PulseSpan& pulse) {
  const ResponseMeasures& m = Analysis.Measures;
  if (measure == DoseArea) return m.Integral;
  return (measure == DoseSteady ? MeanAtEnd(pulse) : m.PeakValue) - m.Baseline;
}

/// Gives a profile its samples back.
class KeptProfile {
 public:
  explicit KeptProfile(std::span<float> profile)
      : profile_(profile), samples_(profile.begin(), profile.end()), fitMode_(Parameters.FitMode) {
    Parameters.FitMode = 0;  // no exponential is fitted to the responses
  }
  ~KeptProfile() {
    std::copy(samples_.begin(), samples_.end(), profile_.begin());
    Parameters.FitMode = fitMode_;
  }
  KeptProfile(const KeptProfile&) = delete;
  KeptProfile& operator=(const KeptProfile&) = delete;

  /// Scales the profile so that its largest sample becomes `dose`.
  void ScaleTo(float dose, float largest) {
    const double factor = static_cast<double>(dose) / static_cast<double>(largest);
    for (std::size_t i = 0; i < samples_.size(); ++i) {
      const float sample = samples_[i];
      profile_[i] = sample == largest ? dose : static_cast<float>(factor * static_cast<double>(sample));
    }
  }

 private:
  std::span<float> profile_;
  std::vector<float> samples_;
  int fitMode_;
};

}  // namespace

PulseSpan PulseOf(int drug) {
  const std::span<const float> profile = ProfileOf(drug);
  PulseSpan pulse;
  for (const float sample : profile) pulse.largest = std::max(pulse.largest, sample);
  const float half = pulse.largest / 2.0F;
  const auto inside = [half](float sample) { return sample > half; };
  if (!(pulse.largest > 0.0F)) return pulse;
  pulse.first = static_cast<int>(std::find_if(profile.begin(), profile.end(), inside) - profile.begin());
  pulse.last = static_cast<int>(profile.rend() - std::find_if(profile.rbegin(), profile.rend(), inside)) - 1;
  return pulse;
}

bool WindowOfPulse(const PulseSpan& pulse) {
  const float interval = Model.ADInterval;
  if (!(interval > 0.0F)) return false;  // the run will be refused
  const double begin = static_cast<double>(Analysis.StartAnalysis / interval);
  const double end = begin + Analysis.PeakSearchPts;
  if (Analysis.PeakSearchPts > 1 && begin <= pulse.last && end > pulse.first) return false;
  const float start = static_cast<float>(pulse.first) * interval;
  Analysis.BaselineStart = std::max(std::floor(start - MostBaselineMs), 0.0F);
  const int baselineFirst = static_cast<int>(Analysis.BaselineStart / interval);
  Analysis.BaselinePts = std::max(pulse.first - baselineFirst - 1, 1);
  Analysis.StartAnalysis = start;
  Analysis.PeakSearchPts = std::max(Model.NumPoints - pulse.first - 1, 1);
  AnalysisFit.AnalysisFitPts = Analysis.PeakSearchPts;
  AnalysisFit.AnalysisParse = 1;
  return true;
}

Outcome SimulateDoses(std::span<const float> concentrations, int drug, int measure, std::span<float> response,
                      const std::function<void(int)>& afterRun) {
  const PulseSpan pulse = PulseOf(drug);
  if (!(pulse.largest > 0.0F)) {
    MessagePopup(NoticeTitle, FormatText(NoStimulus, drug));
    return Outcome::Refused;
  }
  ForgetStop();
  KeptProfile profile(ProfileOf(drug));
  const SeriesOfRuns series;
  const auto count = static_cast<int>(concentrations.size());
  for (int i = 0; i < count; ++i) {
    ShowProgress(static_cast<double>(i) / count, FormatText("Dose %d of %d", i + 1, count));
    profile.ScaleTo(concentrations[Index(i)], pulse.largest);
    const Outcome run = RunSimulation(Model.NumPoints, ChosenStart(), WindowReporter());
    if (run != Outcome::Done) return run;
    if (MeasureTrace() != Outcome::Done) return Outcome::Refused;
    response[Index(i)] = ResponseOf(measure, pulse);
    if (afterRun) afterRun(i);
    ProcessSystemEvents();
    if (StopAsked() && i + 1 < count) return Outcome::Stopped;
  }
  return Outcome::Done;
}

}  // namespace zelvane
