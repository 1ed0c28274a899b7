#include "fit/wave_load.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <optional>
#include <string_view>
#include <utility>

#include "fit/fit_store.h"
#include "fit/wave_compare.h"
#include "fit/wave_set.h"
#include "fit/wave_set_panels.h"
#include "model/model_store.h"
#include "platform/file_names.h"
#include "platform/index.h"
#include "platform/zero_pages.h"
#include "screen/popups.h"
#include "trace/trace_read.h"
#include "trace/trace_store.h"

namespace zelvane {
namespace {

namespace fs = std::filesystem;

constexpr char NoNumbers[] =
    "%s has samples that are no numbers (%d). Keep the windows of the fit away from them.";
constexpr char AllEqual[] = "%s: all samples are %g.";
constexpr char NoPartner[] = "%s: no stimulus file (.stm) has its name. Load its stimulus on line %d.";
constexpr char NoRecording[] = "%s: no loaded recording without a stimulus has its name.";
constexpr char NoFreeLine[] = "%s is not loaded: all 15 lines are in use.";
constexpr char MuchMemory[] =
    "The waveforms of the fit need %d MB of memory so far; 15 of full length need 720 MB.";
constexpr char StimulusExtension[] = ".stm";

constexpr std::size_t RowsOfWaveform = 12;  // recording, seven profiles, four rows of the comparison
constexpr int TellMegabytes = 400;

FitWaveform& Wave(int w) {
  return Fit.Wave[Index(w)];
}

std::string StemOf(const std::string& path) {
  return fs::path(path).stem().string();
}

bool IsStimulus(const std::string& path) {
  return ExtensionOf(path) == StimulusExtension;
}

/// Returns the megabytes that the waveforms need when each is as long as its recording.
int MegabytesOfSet() {
  std::size_t samples = 0;
  for (const FitWaveform& wave : Fit.Wave) samples += Index(std::max(wave.DataLength, wave.StimLength));
  return static_cast<int>(samples * RowsOfWaveform * sizeof(float) / 1'000'000);
}

/// Tells once that the set has become large.
void TellMemory(int before) {
  const int now = MegabytesOfSet();
  if (before < TellMegabytes && now >= TellMegabytes) Note(FormatText(MuchMemory, now));
}

/// Tells of a recording that a fit cannot use as it is. The last sample can be one that a text reader has added.
void TellOddSamples(const FitWaveform& wave) {
  const std::span<const float> samples = RecordingOf(wave);
  const auto noNumbers =
      std::count_if(samples.begin(), samples.end(), [](float x) { return !std::isfinite(x); });
  if (noNumbers > 0) {
    Note(FormatText(NoNumbers, wave.DataName.c_str(), static_cast<int>(noNumbers)));
  } else if (samples.size() > 1 &&
             std::all_of(samples.begin(), samples.end() - 1, [&](float x) { return x == samples[0]; })) {
    Note(FormatText(AllEqual, wave.DataName.c_str(), static_cast<double>(samples[0])));
  }
}

int FreeLine() {
  for (int w = 1; w <= MaxFitWaveforms; ++w) {
    if (Wave(w).WaveLoaded == 0) return w;
  }
  return 0;
}

/// Returns the line of a recording with this stem that has no stimulus; 0 without one.
int LineWithoutStimulus(const std::string& stem) {
  for (int w = 1; w <= MaxFitWaveforms; ++w) {
    if (Wave(w).WaveLoaded != 0 && Wave(w).StimOn == 0 && StemOf(Wave(w).DataName) == stem) return w;
  }
  return 0;
}

/// Loads recordings. Returns the lines that they have got.
std::vector<int> AddRecordings(std::span<const std::string> paths, bool& allDone) {
  std::vector<int> lines;
  for (const std::string& path : paths) {
    if (IsStimulus(path)) continue;
    const int w = FreeLine();
    if (w == 0) {
      Note(FormatText(NoFreeLine, FileNameOf(path).c_str()));
      allDone = false;
    } else if (LoadWaveData(w, path, false) == Outcome::Done) {
      lines.push_back(w);
    } else {
      allDone = false;
    }
  }
  return lines;
}

void AddStimuli(std::span<const std::string> paths, bool& allDone) {
  for (const std::string& path : paths) {
    if (!IsStimulus(path)) continue;
    const int w = LineWithoutStimulus(StemOf(path));
    if (w == 0) {
      Note(FormatText(NoRecording, FileNameOf(path).c_str()));
      allDone = false;
    } else if (LoadWaveStimulus(w, path) != Outcome::Done) {
      allDone = false;
    }
  }
}

}  // namespace

void EmptyWave(int w) {
  FitWaveform& wave = Wave(w);
  FitWaveform empty;
  for (const auto row : {&FitWaveform::WaveData, &FitWaveform::FitX, &FitWaveform::FitData,
                         &FitWaveform::FitSim, &FitWaveform::FitSqDiff}) {
    ReleaseZeroPages(wave.*row);
    empty.*row = wave.*row;
  }
  for (const std::span<float> profile : wave.WaveStim) ReleaseZeroPages(profile);
  empty.WaveStim = wave.WaveStim;
  wave = std::move(empty);
}

void ClearWaveData(int w) {
  FitWaveform& wave = Wave(w);
  ReleaseZeroPages(wave.WaveData);
  wave.WaveLoaded = 0;
  wave.DataOn = 0;
  wave.DataLength = 0;
  wave.DataName.clear();
}

void ClearWaveStimulus(int w) {
  FitWaveform& wave = Wave(w);
  for (const std::span<float> profile : wave.WaveStim) ReleaseZeroPages(profile);
  wave.StimName.clear();
  wave.StimOn = 0;
  wave.StimLength = 0;
}

bool NoWaveLoaded() {
  return std::none_of(Fit.Wave.begin(), Fit.Wave.end(),
                      [](const FitWaveform& wave) { return wave.WaveLoaded != 0; });
}

void ForgetNormalizing() {
  Fit.FitNormalized = 0;
  Fit.WavesNormalized = 0;
}

void TakeRecording(FitWaveform& wave, const std::string& path, const SweepRead& read) {
  const int before = MegabytesOfSet();
  wave.DataLength = read.samples;
  wave.DataName = FileNameOf(path);
  wave.DataOn = 1;
  wave.WaveLoaded = 1;
  wave.WaveDataInterval = read.intervalMs;
  Fit.WaveDataInterval = read.intervalMs;
  AddFitLogLine(FormatText("  DATA File: %s length=%d adinterval=%f", path.c_str(), wave.DataLength,
                           static_cast<double>(read.intervalMs)));
  TellMemory(before);
  TellOddSamples(wave);
}

int LoadedWaves() {
  return static_cast<int>(std::count_if(Fit.Wave.begin(), Fit.Wave.end(),
                                        [](const FitWaveform& w) { return w.WaveLoaded != 0; }));
}

void CountWaves() {
  Fit.FitWaveCount = LoadedWaves();
  Fit.FitShowCurves = std::max(Fit.FitWaveCount, 1);
  Fit.FitTotalCurves = Fit.FitShowCurves;
}

namespace {

/// Loads the samples that `read` reads.
template <typename Read>
Outcome LoadWith(int w, const std::string& path, Read read) {
  FitWaveform& wave = Wave(w);
  ClearWaveData(w);
  if (NoWaveLoaded()) ForgetNormalizing();
  const std::optional<SweepRead> got = read(wave.WaveData);
  if (!got) {
    CountWaves();
    return Outcome::Failed;
  }
  if (w == 1) ForgetNormalizing();
  TakeRecording(wave, path, *got);
  CountWaves();
  return Outcome::Done;
}

}  // namespace

Outcome LoadWaveData(int w, const std::string& path, bool asksText) {
  Trace.EpisodeIndex = 1;
  Trace.ParseRequested = 0;
  return LoadWith(w, path, [&](std::span<float> samples) { return SweepReadInto(path, samples, asksText); });
}

Outcome LoadWaveData(int w, const std::string& path, const SweepChoice& choice) {
  return LoadWith(w, path, [&](std::span<float> samples) { return SweepReadInto(path, samples, choice); });
}

Outcome LoadWaveStimulus(int w, const std::string& path) {
  FitWaveform& wave = Wave(w);
  ClearWaveStimulus(w);
  wave.StimLength = WaveStimFileRead(path, wave);
  if (wave.StimLength == 0) {
    ClearWaveStimulus(w);  // what a cut file has left
    return Outcome::Failed;
  }
  wave.StimOn = 1;
  return Outcome::Done;
}

Outcome AddWaveFiles(std::span<const std::string> paths) {
  bool allDone = true;
  const std::vector<int> lines = AddRecordings(paths, allDone);
  AddStimuli(paths, allDone);
  for (const int w : lines) {
    if (Wave(w).StimOn == 0) Note(FormatText(NoPartner, Wave(w).DataName.c_str(), w));
  }
  return allDone ? Outcome::Done : Outcome::Failed;
}

}  // namespace zelvane
