#include "fit/wave_set.h"

#include <algorithm>
#include <filesystem>
#include <optional>

#include "fit/fit_store.h"
#include "fit/wave_list.h"
#include "fit/wave_load.h"
#include "fit/wave_set_panels.h"
#include "formats/input_file.h"
#include "model/model_file.h"
#include "model/model_store.h"
#include "platform/file_names.h"
#include "screen/popups.h"
#include "screen/save_file.h"
#include "stimulus/stimulus_file.h"
#include "trace/trace_read.h"
#include "trace/trace_store.h"

namespace zelvane {
namespace {

namespace fs = std::filesystem;

constexpr char ReadTitle[] = "Load File list from ascii file with \"stimfilename,datafilename\" on each row.";
constexpr char WriteTitle[] = "Export waveform files as List file.";
constexpr char DataTitle[] = "Read ASCII or Binary Data File to Fit";
constexpr char StimTitle[] = "Read Binary Stimulus Profile for Fitting";
constexpr char ListPattern[] = "*.lst";
constexpr char ListFilter[] = "*.lst;*.*";
constexpr char DataFilter[] = "*.abf;*.dat;*.asc";
constexpr char StimFilter[] = "*.stm";
constexpr char PairLeftOut[] = "Pair %zu (%s, %s) cannot be read and is left out.";
constexpr char PairsLeftOut[] = "%d of %zu pairs of %s are left out.";

std::string Beside(const std::string& list, std::string_view path) {
  return (fs::path(list).parent_path() / BareFileName(path)).string();
}

bool CanBeOpened(const std::string& path) {
  return OpenInput(path).has_value();
}

/// Finds a file of a pair: at the place in the list, in the folder of the list, or where the user says.
/// Returns nullopt when it cannot be opened anywhere.
std::optional<std::string> FindFile(const std::string& name, const std::string& list,
                                    const FileRequest& request) {
  if (CanBeOpened(name)) return name;
  if (std::string beside = Beside(list, name); CanBeOpened(beside)) return beside;
  auto chosen = FileSelectPopup(request);
  return chosen && CanBeOpened(*chosen) ? chosen : std::nullopt;
}

void ReadModelOfList(const std::string& model, const std::string& list) {
  const std::string former = Model.ModelFileName;
  Model.ModelFileName = Beside(list, model);
  if (ModelFileRead() == Outcome::Refused) Model.ModelFileName = former;
}

/// Loads the recording of a pair.
Outcome LoadData(FitWaveform& wave, const std::string& name, const std::string& list) {
  const auto path = FindFile(name, list, {.title = DataTitle, .defaultName = "*.abf", .filter = DataFilter});
  if (!path) return Outcome::Refused;
  Trace.EpisodeIndex = 1;
  Trace.ParseRequested = 0;
  const auto read = BinaryTraceRead(*path, wave.WaveData);
  if (!read) return Outcome::Failed;
  TakeRecording(wave, *path, *read);
  return Outcome::Done;
}

/// Loads the stimulus of a pair.
Outcome LoadStimulus(int w, const std::string& name, const std::string& list) {
  const auto path =
      FindFile(name, list, {.title = StimTitle, .defaultName = StimFilter, .filter = StimFilter});
  return path ? LoadWaveStimulus(w, *path) : Outcome::Refused;
}

/// Loads the pairs of a list, each into the waveform of its number, because the settings of the model belong to
/// these numbers. A pair that cannot be read leaves its waveform empty.
Outcome LoadPairs(const WaveList& list, const std::string& path, const std::string& model) {
  if (model.empty()) ReadModelOfList(list.model, path);
  int leftOut = 0;
  for (std::size_t p = 0; p < list.pairs.size(); ++p) {
    const WaveListPair& pair = list.pairs[p];
    const int w = static_cast<int>(p) + 1;
    Outcome outcome = LoadData(Fit.Wave[p + 1], pair.data, path);
    if (outcome == Outcome::Done) outcome = LoadStimulus(w, pair.stimulus, path);
    if (outcome == Outcome::Refused) return outcome;
    if (outcome == Outcome::Done) {
      Fit.FitWaveCount = w;
      continue;
    }
    EmptyWave(w);
    ++leftOut;
    Note(
        FormatText(PairLeftOut, p + 1, BareFileName(pair.data).c_str(), BareFileName(pair.stimulus).c_str()));
  }
  if (leftOut == 0) return Outcome::Done;
  Note(FormatText(PairsLeftOut, leftOut, list.pairs.size(), BareFileName(path).c_str()));
  return Outcome::Failed;
}

std::string ListText() {
  std::string text = FormatText("%s\n%s\n%d\n", WaveListMagic, Model.ModelFileName.c_str(), Fit.FitWaveCount);
  for (std::size_t w = 1; w <= MaxFitWaveforms; ++w) {
    const FitWaveform& wave = Fit.Wave[w];
    if (wave.WaveLoaded != 0) text += wave.DataName + '\n' + wave.StimName + '\n';
  }
  return text;
}

std::optional<std::string> AskForList(const char* title, bool save) {
  auto path =
      FileSelectPopup({.title = title, .defaultName = ListPattern, .filter = ListFilter, .save = save});
  if (!path) Fit.FitListOn = 0;
  return path;
}

}  // namespace

int WaveStimFileRead(const std::string& path, FitWaveform& wave) {
  const auto read = StimFileReadInto(path, wave.WaveStim);
  if (!read) return 0;
  wave.WaveStimInterval = read->intervalMs;
  Fit.WaveStimInterval = read->intervalMs;
  if (read->samples == 0) return 0;
  wave.StimName = FileNameOf(path);
  AddFitLogLine(FormatText("  STM File: %s length=%d adinterval=%f", path.c_str(), read->samples,
                           static_cast<double>(read->intervalMs)));
  return read->samples;
}

void WaveSetClear() {
  for (int w = 1; w <= MaxFitWaveforms; ++w) EmptyWave(w);
  Fit.FitNormalized = 0;
  Fit.WavesNormalized = 0;
  Fit.FitWaveCount = 0;
}

Outcome ReadListNamed(const std::string& path, const std::string& model) {
  auto file = OpenInput(path);
  if (!file) {
    FileErrorPopup(FileOpenFailed);
    Fit.FitListOn = 1;
    return Outcome::Failed;
  }
  const auto list = ReadWaveList(std::move(*file));
  if (!list) {
    FileErrorPopup(WrongFileFormat);
    return Outcome::Failed;
  }
  if (!list->fault.empty()) {
    TellNotRead(path, list->fault);
    return Outcome::Failed;
  }
  Fit.FitListName = path;
  const Outcome outcome = LoadPairs(*list, path, model);
  Fit.FitNormalized = 0;  // as the recordings are, whatever the model says
  Fit.FitShowCurves = std::max(Fit.FitWaveCount, 1);
  Fit.FitTotalCurves = Fit.FitShowCurves;
  Fit.FitListOn = 1;
  return outcome;
}

Outcome ListFileRead() {
  const auto path = AskForList(ReadTitle, false);
  return path ? ReadListNamed(*path) : Outcome::Refused;
}

Outcome ListFileWrite() {
  const auto path = AskForList(WriteTitle, true);
  if (!path) return Outcome::Refused;
  return SaveText(*path, ListText());
}

}  // namespace zelvane
