#include "app/stores.h"

#include <algorithm>
#include <iterator>

#include "analysis/analysis_fields.h"
#include "analysis/analysis_store.h"
#include "dwells/dwell_fields.h"
#include "dwells/dwell_fit_store.h"
#include "dwells/dwell_store.h"
#include "model/constraints_store.h"
#include "model/model_fields.h"
#include "model/model_store.h"
#include "parameters/fit_fields.h"
#include "parameters/fit_store.h"
#include "platform/zero_pages.h"
#include "rscm/rscm_fields.h"
#include "rscm/rscm_store.h"
#include "run/result_fields.h"
#include "run/result_store.h"
#include "screen/popups_store.h"
#include "stimulus/stimulus_fields.h"
#include "stimulus/stimulus_store.h"
#include "trace/noise_store.h"
#include "trace/trace_fields.h"
#include "trace/trace_store.h"

namespace zelvane {
namespace {

/// Room of one stimulus profile: a bit more than it holds, so that the seven do not fall on the same sets of
/// the cache.
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
};

/// Working lists, the copy of the open times, the class lists and the latencies.
constexpr std::size_t DwellLists = 4 + MaxAmplitudeClasses;
constexpr std::size_t IdealRows = 3;  // duration, class, amplitude
constexpr std::size_t SpansOfWaveform = 1 + MaxDrugs + 1;

LargeArrays& Arrays() {
  static LargeArrays arrays{TakeZeroPages(ProfileRoom * (MaxDrugs + 1)),
                            TakeZeroPages(static_cast<std::size_t>(OccupancyPoints) * (MaxStates + 1)),
                            TakeZeroPages(OccupancyPoints),
                            TakeZeroPages(MaxStimPoints),
                            TakeZeroPages(MaxStimPoints),
                            TakeZeroPages(DwellLists * MaxDwells),
                            TakeZeroPages(IdealRows * MaxIdealEvents),
                            TakeZeroPages(MaxFitWaveforms * SpansOfWaveform * MaxWaveformPoints)};
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
    Fit.Wave[w].WaveData = next();
    for (std::span<float>& profile : Fit.Wave[w].WaveStim) profile = next();
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
}

// -- Default limits of the fits --

struct LimitRow {
  int first;
  int last;
  int step;
  FitLimit limit;
};

constexpr LimitRow SublevelLimits[] = {{1, 4, 1, {0, 1}}, {5, 7, 1, {0, 100}}, {8, 8, 1, {0, 10000}}};
constexpr LimitRow VarLimits[] = {{1, 1, 1, {-10, 10}}, {2, 2, 1, {0, 5000}}, {3, 3, 1, {0, 10}}};
constexpr LimitRow SpecLimits[] = {{1, 3, 2, {0.001, 1}}, {2, 4, 2, {1e-12, 1}}};
constexpr LimitRow DwellLimits[] = {{1, 9, 2, {0.01, 100000}},     // time constants 1 to 5
                                    {2, 10, 2, {0.001, 100}},      // areas
                                    {11, 11, 1, {0.05, 100000}}};  // time constant 6
constexpr LimitRow ExpLimits[] = {{1, 1, 1, {0.01, 100000}},
                                  {2, 2, 1, {0.01, 10000}},
                                  {3, 3, 1, {0.01, 1000}},
                                  {4, 4, 1, {0.001, 100000}},
                                  {5, 5, 1, {0.01, 10000}}};

void SetLimits(FitLimitTable& table, std::span<const LimitRow> rows) {
  for (const LimitRow& row : rows) {
    for (int r = row.first; r <= row.last; r += row.step) table[static_cast<std::size_t>(r)] = row.limit;
  }
}

void SetDefaultFitLimits() {
  SetLimits(Fit.SublevelFitLimits, SublevelLimits);
  SetLimits(Fit.VarFitLimits, VarLimits);
  SetLimits(Fit.SpecFitLimits, SpecLimits);
  SetLimits(Fit.DwellFitLimits, DwellLimits);
  SetLimits(Fit.ExpFitLimits, ExpLimits);
}

}  // namespace

void AllocateStores() {
  static const bool done = [] {
    AttachArrays();
    SetDefaultFitLimits();
    RegisterModelFields();
    RegisterStimulusFields();
    RegisterResultFields();
    RegisterTraceFields();
    RegisterRscmFields();
    RegisterAnalysisFields();
    RegisterDwellFields();
    RegisterFitFields();
    return true;
  }();
  static_cast<void>(done);
}

void ResetStores() {
  for (const std::span<float> array :
       {Arrays().profiles, Arrays().occupancy, Arrays().savedTime, Arrays().trace, Arrays().filtered,
        Arrays().dwells, Arrays().ideal, Arrays().waveforms}) {
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
  Fit = FitStore{};
  AttachArrays();
  SetDefaultFitLimits();
}

}  // namespace zelvane
