#include "fit/wave_set.h"

#include <algorithm>
#include <filesystem>
#include <optional>
#include <vector>

#include "fit/fit_store.h"
#include "fit/internal/wave_set_panels.h"
#include "io/input_file.h"
#include "io/line_scanner.h"
#include "io/model_file.h"
#include "io/stimulus_file.h"
#include "io/trace_read.h"
#include "io/trace_store.h"
#include "model/model_store.h"
#include "platform/safe_file.h"
#include "platform/zero_pages.h"
#include "screen/popups.h"

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
constexpr char Magic[] = "LIST";

constexpr std::size_t LongestLine = 260;  // bytes; what a line has beyond them is lost
constexpr std::size_t ExtensionLength = 3;

/// Where the file's own name begins in a path of this system or of another one.
std::size_t NameStart(std::string_view path) {
  const std::size_t separator = path.find_last_of("/\\");
  return separator == std::string_view::npos ? 0 : separator + 1;
}

std::string BareName(std::string_view path) {
  return std::string(path.substr(NameStart(path)));
}

std::string Beside(const std::string& list, std::string_view path) {
  return (fs::path(list).parent_path() / BareName(path)).string();
}

bool Opens(const std::string& path) {
  return OpenInput(path).has_value();
}

/// A file of a pair: where the list says, beside the list, or where the user says. Nothing when it opens
/// nowhere.
std::optional<std::string> FindFile(const std::string& name, const std::string& list,
                                    const FileRequest& request) {
  if (Opens(name)) return name;
  if (std::string beside = Beside(list, name); Opens(beside)) return beside;
  auto chosen = FileSelectPopup(request);
  return chosen && Opens(*chosen) ? chosen : std::nullopt;
}

void ReadModelOfList(const std::string& line, const std::string& list) {
  const std::string former = Model.ModelFileName;
  Model.ModelFileName = Beside(list, CleanedName(line, ".mod"));
  if (!ModelFileRead()) Model.ModelFileName = former;
}

/// Loads the recording of a pair. False when there is none to use.
bool LoadData(FitWaveform& wave, const std::string& line, const std::string& list) {
  const auto path = FindFile(CleanedName(line, ""), list,
                             {.title = DataTitle, .defaultName = "*.abf", .filter = DataFilter});
  if (!path) return false;
  Trace.TraceFileName = *path;
  Trace.EpisodeIndex = 1;
  Trace.ParseRequested = 0;
  if (!BinaryTraceRead(wave.WaveData)) return false;
  wave.DataLength = Model.NumPoints;
  AddFitLogLine(FormatText("  DATA File: %s length=%d adinterval=%f", path->c_str(), wave.DataLength,
                           static_cast<double>(Model.ADInterval)));
  wave.DataName = BareName(*path);
  wave.DataOn = 1;
  wave.WaveLoaded = 1;
  wave.WaveDataInterval = Model.ADInterval;
  return true;
}

/// Loads the stimulus of a pair. False when there is none to use.
bool LoadStimulus(FitWaveform& wave, const std::string& line, const std::string& list) {
  const auto path = FindFile(CleanedName(line, ".stm"), list,
                             {.title = StimTitle, .defaultName = StimFilter, .filter = StimFilter});
  if (!path) return false;
  wave.StimLength = WaveStimFileRead(*path, wave);
  if (wave.StimLength == 0) return false;
  AddFitLogLine(FormatText("  STM File: %s length=%d adinterval=%f", path->c_str(), wave.StimLength,
                           static_cast<double>(wave.WaveStimInterval)));
  wave.StimOn = 1;
  return true;
}

/// The next line; an empty one at the end of the file.
std::string LineOf(LineReader& lines) {
  const auto line = lines.Next();
  return std::string(line.value_or(std::string_view{}));
}

void LoadPairs(LineReader& lines, const std::string& list) {
  ReadModelOfList(LineOf(lines), list);
  const std::string count = LineOf(lines);
  std::string_view rest = count;
  int pairs = 0;
  static_cast<void>(ScanNumber(rest, pairs));
  pairs = std::min(pairs, MaxFitWaveforms);
  for (int w = 1; w <= pairs; ++w) {
    FitWaveform& wave = Fit.Wave[static_cast<std::size_t>(w)];
    if (!LoadData(wave, LineOf(lines), list) || !LoadStimulus(wave, LineOf(lines), list)) return;
    Fit.FitWaveCount = w;
  }
}

std::string ListText() {
  std::string text = FormatText("%s\n%s\n%d\n", Magic, Model.ModelFileName.c_str(), Fit.FitWaveCount);
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

std::string CleanedName(std::string_view line, std::string_view extension) {
  const std::size_t stop = line.find('.', NameStart(line));
  std::string name(line.substr(0, stop));
  if (!extension.empty()) return name += extension;
  if (stop != std::string_view::npos) name += line.substr(stop, 1 + ExtensionLength);
  return name;
}

void WaveSetClear() {
  for (std::size_t w = 1; w <= MaxFitWaveforms; ++w) {
    FitWaveform& wave = Fit.Wave[w];
    ReleaseZeroPages(wave.WaveData);
    for (const std::span<float> profile : wave.WaveStim) ReleaseZeroPages(profile);
    const FitWaveform empty{.WaveData = wave.WaveData, .WaveStim = wave.WaveStim};
    wave = empty;
  }
  Fit.FitNormalized = 0;
  Fit.FitWaveCount = 0;
}

void ReadListNamed(const std::string& path) {
  auto file = OpenInput(path);
  if (!file) {
    FileErrorPopup(FileOpenFailed);
    return;
  }
  LineReader lines(std::move(*file), LongestLine);
  if (!LineOf(lines).starts_with(Magic)) {
    FileErrorPopup(WrongFileFormat);
    return;
  }
  Fit.FitListName = path;
  LoadPairs(lines, path);
  Fit.FitListOn = 1;
}

void ListFileRead() {
  if (const auto path = AskForList(ReadTitle, false)) ReadListNamed(*path);
}

void ListFileWrite() {
  const auto path = AskForList(WriteTitle, true);
  if (path && !ReplaceFile(*path, ListText())) FileErrorPopup(FileOpenFailed);
}

}  // namespace zelvane
