#include "app/stores.h"

#include "analysis/analysis_fields.h"
#include "analysis/analysis_fit_store.h"
#include "analysis/analysis_store.h"
#include "analysis/averages_fields.h"
#include "analysis/averages_store.h"
#include "analysis/dose_fields.h"
#include "analysis/dose_store.h"
#include "dwells/dwell_fields.h"
#include "dwells/dwell_fit_store.h"
#include "dwells/dwell_store.h"
#include "fit/fit_fields.h"
#include "fit/fit_rows.h"
#include "fit/fit_store.h"
#include "model/constraints_store.h"
#include "model/model_fields.h"
#include "model/model_store.h"
#include "noise/noise_fields.h"
#include "noise/noise_fit_store.h"
#include "parameters/parameters_fields.h"
#include "parameters/parameters_store.h"
#include "parameters/vertex_store.h"
#include "platform/index.h"
#include "platform/zero_pages.h"
#include "rscm/rscm_fields.h"
#include "rscm/rscm_store.h"
#include "run/result_fields.h"
#include "run/result_store.h"
#include "screen/popups_store.h"
#include "screen/screen.h"
#include "stimulus/stimulus_fields.h"
#include "stimulus/stimulus_store.h"
#include "trace/noise_store.h"
#include "trace/trace_fields.h"
#include "trace/trace_store.h"

namespace zelvane {
namespace {

/// Size of one stimulus profile: a bit more than its samples, so that the seven profiles do not use the same
/// sets of the cache.
constexpr std::size_t ProfileRoom = MaxStimPoints + 47;

struct LargeArrays {
  std::span<float> profiles;
  std::span<float> occupancy;
  std::span<float> savedTime;
  std::span<float> trace;
  std::span<float> filtered;
  std::span<float> dwells;
  std::span<float> ideal;
  std::span<float> waveforms;
  std::span<float> averages;
};

/// Working lists, the copy of the open times, the class lists and the latencies.
constexpr std::size_t DwellLists = 4 + MaxAmplitudeClasses;
constexpr std::size_t IdealRows = 3;  // duration, class, amplitude
/// Recording, seven profiles, and the four rows of the comparison.
constexpr std::size_t SpansOfWaveform = 1 + MaxDrugs + 1 + 4;

constexpr std::size_t SumsOfAverage = 3;

LargeArrays& Arrays() {
  static LargeArrays arrays{TakeZeroPages(ProfileRoom * (MaxDrugs + 1)),
                            TakeZeroPages(Index(OccupancyPoints) * (MaxStates + 1)),
                            TakeZeroPages(OccupancyPoints),
                            TakeZeroPages(MaxStimPoints),
                            TakeZeroPages(MaxStimPoints),
                            TakeZeroPages(DwellLists * MaxDwells),
                            TakeZeroPages(IdealRows * MaxIdealEvents),
                            TakeZeroPages(MaxFitWaveforms * SpansOfWaveform * MaxWaveformPoints),
                            TakeZeroPages(SumsOfAverage * MaxAveragePoints)};
  return arrays;
}

void AttachDwellLists(std::span<float> dwells, std::span<float> ideal) {
  const auto list = [dwells](std::size_t k) { return dwells.subspan(k * MaxDwells, MaxDwells); };
  Dwell.OpenTimes = list(0);
  Dwell.ClosedTimes = list(1);
  Dwell.RawOpenTimes = list(2);
  Dwell.Latencies = list(3);
  for (std::size_t c = 1; c <= MaxAmplitudeClasses; ++c) Dwell.ClassOpenTimes[c] = list(3 + c);
  Dwell.IdealDuration = ideal.subspan(0, MaxIdealEvents);
  Dwell.IdealClass = ideal.subspan(MaxIdealEvents, MaxIdealEvents);
  Dwell.IdealAmplitude = ideal.subspan(2 * MaxIdealEvents, MaxIdealEvents);
}

void AttachWaveforms(std::span<float> waveforms) {
  std::size_t k = 0;
  const auto next = [&] { return waveforms.subspan(k++ * MaxWaveformPoints, MaxWaveformPoints); };
  for (std::size_t w = 1; w <= MaxFitWaveforms; ++w) {
    FitWaveform& wave = Fit.Wave[w];
    wave.WaveData = next();
    for (std::span<float>& profile : wave.WaveStim) profile = next();
    for (std::span<float>* row : {&wave.FitX, &wave.FitData, &wave.FitSim, &wave.FitSqDiff}) *row = next();
  }
}

/// Points the stores to their arrays.
void AttachArrays() {
  LargeArrays& arrays = Arrays();
  for (std::size_t k = 0; k < Stimulus.Profile.size(); ++k) {
    Stimulus.Profile[k] = arrays.profiles.subspan(k * ProfileRoom, MaxStimPoints);
  }
  for (std::size_t s = 0; s < Result.Occupancy.size(); ++s) {
    Result.Occupancy[s] = arrays.occupancy.subspan(s * OccupancyPoints, OccupancyPoints);
  }
  Result.SavedTime = arrays.savedTime;
  Trace.SimTrace = arrays.trace;
  Noise.FilteredTrace = arrays.filtered;
  AttachDwellLists(arrays.dwells, arrays.ideal);
  AttachWaveforms(arrays.waveforms);
  const auto sum = [&](std::size_t k) {
    return arrays.averages.subspan(k * MaxAveragePoints, MaxAveragePoints);
  };
  Averages.WaveSum = sum(0);
  Averages.WaveCount = sum(1);
  Averages.WaveNormSum = sum(2);
}

}  // namespace

void AllocateStores() {
  static const bool done = [] {
    AttachArrays();
    RegisterModelFields();
    RegisterStimulusFields();
    RegisterResultFields();
    RegisterTraceFields();
    RegisterRscmFields();
    RegisterAnalysisFields();
    RegisterDoseFields();
    RegisterAveragesFields();
    RegisterParametersFields();
    RegisterDwellFields();
    RegisterNoiseFields();
    RegisterFitFields();
    RegisterFitRows();
    RegisterWorkingFields({
        ScalarField("PanelTag", Screen.PanelTag),
        ScalarField("PreviousPanelTag", Screen.PreviousPanelTag),
    });
    return true;
  }();
  static_cast<void>(done);
}

void ResetStores() {
  for (const std::span<float> array :
       {Arrays().profiles, Arrays().occupancy, Arrays().savedTime, Arrays().trace, Arrays().filtered,
        Arrays().dwells, Arrays().ideal, Arrays().waveforms, Arrays().averages}) {
    ReleaseZeroPages(array);
  }
  Model = ModelStore{};
  Constraints = ConstraintsStore{};
  Stimulus = StimulusStore{};
  Result = ResultStore{};
  Trace = TraceStore{};
  Requests = UserRequests{};
  Analysis = AnalysisStore{};
  RsCm = RsCmStore{};
  Noise = NoiseStore{};
  DwellFit = DwellFitStore{};
  Dwell = DwellStore{};
  Parameters = ParametersStore{};
  Vertices = VertexStore{};
  AnalysisFit = AnalysisFitStore{};
  Dose = DoseStore{};
  Averages = AveragesStore{};
  NoiseFit = NoiseFitStore{};
  Fit = FitStore{};
  Screen.PanelTag.clear();
  Screen.PreviousPanelTag.clear();
  AttachArrays();
}

}  // namespace zelvane
