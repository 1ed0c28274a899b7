#include "io/stimulus_file.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <limits>
#include <string_view>
#include <vector>

#include "io/input_file.h"
#include "io/internal/row_blocks.h"
#include "io/internal/save_file.h"
#include "io/internal/stimulus_file_panels.h"
#include "io/line_scanner.h"
#include "io/number_text.h"
#include "model/model_store.h"
#include "platform/zero_pages.h"
#include "screen/popups.h"
#include "stimulus/stimulus_store.h"

namespace zelvane {
namespace {

static_assert(std::endian::native == std::endian::little, "stimulus files hold numbers as memory does");
static_assert(StimFileProfiles == MaxDrugs + 1);

constexpr std::size_t HeadBytes = 8;
constexpr std::size_t BlockSamples = 64 * 1024;
constexpr std::size_t LongestLine = 300;  // bytes
constexpr int LeastImport = 100;          // an import of no more samples does not show its name
constexpr float SameInterval = 0.0001F;   // ms, between a waveform and its stimulus

constexpr char IntervalTitle[] = "! New timeinterval specified";
constexpr char ColumnIntervalTitle[] = "! New time interval specified";
constexpr char PointsTitle[] = "! New number of points specified";
constexpr char IntervalQuestion[] = "Replace current interval (%f ms) with new stimulus interval (%f ms)?";
constexpr char ColumnIntervalQuestion[] = "Replace time interval (%f ms) with new time interval (%f ms)?";
constexpr char IntervalKept[] =
    "Current time interval (%f ms) does not match stimulus interval (%f ms); original time interval used?";
constexpr char PointsQuestion[] =
    "Replace current number of data pts (%d) with number specified in stimulus file (%d)?";
constexpr char TooLarge[] = "Stimulus file larger than current array size; cannot complete operation.";
constexpr char TooLargeForWaveform[] =
    "Stimulus file larger than current array size; reset #export pts on Stim panel and save new *.stm file.";

std::string IntervalText(const char* format, float fileInterval) {
  // The texts are the two above and IntervalKept: two numbers each.
  std::string text(format);
  for (const float interval : {Model.ADInterval, fileInterval}) {
    const std::size_t mark = text.find("%f");
    text.replace(mark, 2, FormatText("%f", static_cast<double>(interval)));
  }
  return text;
}

float WithinLimits(float intervalMs) {
  return std::clamp(intervalMs, LeastFileInterval, MostFileInterval);
}

bool SameBits(float a, float b) {
  return std::bit_cast<std::uint32_t>(a) == std::bit_cast<std::uint32_t>(b);
}

/// Opens a file and reads its head, or tells why there is none.
std::optional<StimFileHead> HeadOrTold(const std::string& path) {
  if (!OpenInput(path)) {
    FileErrorPopup(FileOpenFailed);
    return std::nullopt;
  }
  const auto head = StimFileHeadOf(path);
  if (!head) FileErrorPopup(WrongFileFormat);
  return head;
}

bool AgreesToPoints(int points) {
  return Model.NumPoints != points &&
         ConfirmPopup(PointsTitle, FormatText(PointsQuestion, Model.NumPoints, points));
}

/// Whether the user, or the rule of scripts, lets the interval of a file replace the present one.
bool AgreesToInterval(float intervalMs) {
  if (SameBits(intervalMs, Model.ADInterval)) return false;
  if (Stimulus.ScriptRunning == 0)
    return ConfirmPopup(IntervalTitle, IntervalText(IntervalQuestion, intervalMs));
  MessagePopup(NoticeTitle, IntervalText(IntervalKept, intervalMs));
  return false;
}

/// Puts floats from a file behind one another into `profile`, writing only where something else stands.
void Take(std::span<const float> samples, std::span<float> profile) {
  for (std::size_t i = 0; i < samples.size(); ++i) {
    if (!SameBits(profile[i], samples[i])) profile[i] = samples[i];
  }
}

/// Reads up to `count` samples of one profile; those beyond the span are passed over.
int ReadProfile(std::ifstream& file, int count, std::span<float> profile, std::span<float> block) {
  int done = 0;
  while (done < count && file) {
    const auto wanted = std::min(block.size(), static_cast<std::size_t>(count - done));
    file.read(reinterpret_cast<char*>(block.data()), static_cast<std::streamsize>(wanted * sizeof(float)));
    const auto come = static_cast<std::size_t>(file.gcount()) / sizeof(float);
    const auto at = std::min(static_cast<std::size_t>(done), profile.size());
    Take(block.first(std::min(come, profile.size() - at)), profile.subspan(at));
    done += static_cast<int>(come);
  }
  return done;
}

StimProfileSpans StoreProfiles() {
  StimProfileSpans profiles;
  std::copy(Stimulus.Profile.begin(), Stimulus.Profile.end(), profiles.begin());
  return profiles;
}

std::span<float> TargetProfile() {
  return Stimulus.Profile[static_cast<std::size_t>(std::clamp(Stimulus.StimTarget, 0, MaxDrugs))];
}

std::string_view BytesOf(std::span<const float> samples) {
  return {reinterpret_cast<const char*>(samples.data()), samples.size_bytes()};
}

std::size_t ExportCount(int count) {
  return static_cast<std::size_t>(std::clamp(count, 1, MaxStimPoints));
}

}  // namespace

std::optional<StimFileHead> StimFileHeadOf(const std::string& path) {
  auto file = OpenInput(path);
  if (!file) return std::nullopt;
  std::array<char, HeadBytes> bytes{};
  file->read(bytes.data(), bytes.size());
  if (file->gcount() != static_cast<std::streamsize>(HeadBytes)) return std::nullopt;
  StimFileHead head;
  std::int32_t samples = 0;
  std::memcpy(&head.intervalMs, bytes.data(), sizeof(float));
  std::memcpy(&samples, bytes.data() + sizeof(float), sizeof(samples));
  if (std::isnan(head.intervalMs) || samples < 1) return std::nullopt;
  head.samples = samples;
  std::error_code error;
  const std::uintmax_t length = std::filesystem::file_size(path, error);
  const std::uintmax_t before = HeadBytes + (StimFileProfiles - 1) * sizeof(float) * std::uintmax_t(samples);
  if (!error && length > before) {
    head.samplesHeld = static_cast<int>(
        std::min<std::uintmax_t>((length - before) / sizeof(float), std::uintmax_t(samples)));
  }
  return head;
}

int ReadStimProfiles(const std::string& path, const StimFileHead& head, const StimProfileSpans& profiles) {
  auto file = OpenInput(path);
  if (!file) return 0;
  file->seekg(HeadBytes);
  std::vector<float> block(std::min(BlockSamples, static_cast<std::size_t>(head.samples)));
  int last = 0;
  for (const std::span<float> profile : profiles) last = ReadProfile(*file, head.samples, profile, block);
  return last;
}

bool WriteStimProfiles(const std::string& path, float intervalMs, const StimProfileSpans& profiles) {
  std::array<char, HeadBytes> head{};
  const auto samples = static_cast<std::int32_t>(profiles[0].size());
  std::memcpy(head.data(), &intervalMs, sizeof(float));
  std::memcpy(head.data() + sizeof(float), &samples, sizeof(samples));
  std::size_t next = 0;
  return SaveFile(path, [&]() -> std::string_view {
    const std::size_t block = next++;
    if (block == 0) return {head.data(), head.size()};
    return block <= profiles.size() ? BytesOf(profiles[block - 1]) : std::string_view{};
  });
}

std::optional<StimColumn> ReadStimColumn(const std::string& path, std::span<float> profile) {
  auto file = OpenInput(path);
  if (!file) return std::nullopt;
  LineReader lines(std::move(*file), LongestLine);
  StimColumn column;
  if (auto line = lines.Next()) {
    float interval = 0.0F;
    if (ScanNumber(*line, interval) == Scan::Taken) column.intervalMs = interval;
  }
  const auto room = std::min(profile.size(), static_cast<std::size_t>(MaxStimColumn));
  float value = 0.0F;
  std::size_t count = 0;
  while (count < room) {
    auto line = lines.Next();
    if (!line) break;
    static_cast<void>(ScanNumber(*line, value));
    profile[count++] = value;
  }
  column.samples = static_cast<int>(count);
  return column;
}

bool WriteStimColumn(const std::string& path, float intervalMs, std::span<const float> profile) {
  std::string head;
  AppendExponent(head, static_cast<double>(intervalMs));
  head += '\n';
  return SaveFile(path,
                  MakeRowBlocks(std::move(head), profile.size(), [profile](std::string& text, std::size_t i) {
                    AppendGeneral(text, static_cast<double>(profile[i]));
                    text += '\n';
                  }));
}

bool StimFileRead(const std::string& path) {
  const auto head = HeadOrTold(path);
  if (!head) return false;
  const bool newInterval = AgreesToInterval(head->intervalMs);
  if (head->samples > MaxStimPoints) {
    MessagePopup(ErrorTitle, TooLarge);
    return false;
  }
  if (newInterval) Model.ADInterval = WithinLimits(head->intervalMs);
  for (const std::span<float> profile : Stimulus.Profile) ReleaseZeroPages(profile);
  const bool complete = ReadStimProfiles(path, *head, StoreProfiles()) > 0;
  if (Stimulus.ScriptRunning == 0 && AgreesToPoints(head->samples - 1)) Model.NumPoints = head->samples - 1;
  if (complete) Stimulus.StimFileName = path;
  ShowStimulusOfFile();
  return complete;
}

int WaveStimFileRead(const std::string& path, FitWaveform& wave) {
  const auto head = HeadOrTold(path);
  if (!head) return 0;
  const bool differs = !(std::abs(head->intervalMs - Model.ADInterval) <= SameInterval);
  const bool newInterval =
      differs && ConfirmPopup(ColumnIntervalTitle, IntervalText(IntervalQuestion, head->intervalMs));
  if (head->samples > MaxWaveformPoints) {
    MessagePopup(ErrorTitle, TooLargeForWaveform);
    return 0;
  }
  if (newInterval) {
    Model.ADInterval = WithinLimits(head->intervalMs);
    ShowStimulusOfFile();
  }
  wave.WaveStimInterval = head->intervalMs;
  if (ReadStimProfiles(path, *head, wave.WaveStim) == 0) return 0;
  wave.StimName = std::filesystem::path(path).filename().string();
  return head->samples;
}

bool StimFileWrite(const std::string& path, int count) {
  ReadStimulusPanel();
  StimProfileSpans profiles = StoreProfiles();
  for (std::span<float>& profile : profiles) profile = profile.first(ExportCount(count));
  return WriteStimProfiles(path, Model.ADInterval, profiles);
}

std::optional<int> StimAsciiImport(const std::string& path) {
  const auto column = ReadStimColumn(path, TargetProfile());
  if (!column) {
    FileErrorPopup(FileOpenFailed);
    return std::nullopt;
  }
  if (column->intervalMs && *column->intervalMs != Model.ADInterval &&
      ConfirmPopup(ColumnIntervalTitle, IntervalText(ColumnIntervalQuestion, *column->intervalMs))) {
    Model.ADInterval = WithinLimits(*column->intervalMs);
  }
  if (column->samples > 0 && AgreesToPoints(column->samples)) Model.NumPoints = column->samples;
  ShowStimulusOfFile();
  return column->samples > LeastImport ? 1 : 0;
}

bool StimAsciiExport(const std::string& path, int count) {
  return WriteStimColumn(path, Model.ADInterval, TargetProfile().first(ExportCount(count)));
}

}  // namespace zelvane
