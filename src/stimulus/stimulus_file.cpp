#include "stimulus/stimulus_file.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string_view>
#include <vector>

#include "formats/number_text.h"
#include "formats/recording_file.h"
#include "formats/row_blocks.h"
#include "model/model_store.h"
#include "platform/file_names.h"
#include "platform/index.h"
#include "platform/zero_pages.h"
#include "screen/popups.h"
#include "screen/save_file.h"
#include "stimulus/stimulus_file_panels.h"
#include "stimulus/stimulus_store.h"

namespace zelvane {
namespace {

static_assert(std::endian::native == std::endian::little, "stimulus files hold numbers as memory does");
static_assert(StimFileProfiles == MaxDrugs + 1);
static_assert(MaxStimSamples == MaxStimPoints && MaxStimColumn <= MaxStimPoints);

constexpr std::size_t BlockSamples = std::size_t{64} * 1024;
constexpr int LeastImport = 100;         // an import with no more samples does not show its name
constexpr float SameInterval = 0.0001F;  // ms, between a waveform and its stimulus

constexpr char IntervalTitle[] = "! New timeinterval specified";
constexpr char ColumnIntervalTitle[] = "! New time interval specified";
constexpr char PointsTitle[] = "! New number of points specified";
constexpr char IntervalQuestion[] = "Replace current interval (%f ms) with new stimulus interval (%f ms)?";
constexpr char ColumnIntervalQuestion[] = "Replace time interval (%f ms) with new time interval (%f ms)?";
constexpr char IntervalKept[] =
    "Current time interval (%f ms) does not match stimulus interval (%f ms); original time interval used?";
constexpr char PointsQuestion[] =
    "Replace current number of data pts (%d) with number specified in stimulus file (%d)?";
constexpr char MoreSamples[] = "%s has more samples than a profile: the first %zu were read.";
constexpr char TooLarge[] = "Stimulus file larger than current array size; cannot complete operation.";
constexpr char TooLargeForWaveform[] =
    "Stimulus file larger than current array size; reset #export pts on Stim panel and save new *.stm file.";

constexpr char ShortFile[] = "%s ends before its last profile: %s.";
constexpr char ShortForWaveform[] = "%s ends before its last profile and is not loaded.";
constexpr char ShortInAutomatic[] =
    "the automatic step is in %s again, the other profiles hold what was read";
constexpr char ShortElse[] = "the profiles hold what was read, followed by zeros";

/// Tells that a file without its last profile has replaced the profiles.
void TellShortFile(const std::string& path) {
  const char* step = Stimulus.AutoDrugOrVolt == 1 ? "the voltage" : "voltage and Drug1";
  const std::string left =
      Stimulus.StimMode == StimAutomatic ? FormatText(ShortInAutomatic, step) : ShortElse;
  Note(FormatText(ShortFile, FileNameOf(path).c_str(), left.c_str()));
}

std::string IntervalText(const char* format, float fileInterval) {
  // The texts are the two above and IntervalKept, each with two numbers.
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

/// Opens a stimulus file. On failure shows a message and returns nullptr.
std::unique_ptr<RecordingFile> OpenStimulus(const std::string& path) {
  OpenedRecording opened = OpenRecordingFile(path, OpenAs::Stimulus);
  if (opened.form == RecordingForm::Missing)
    FileErrorPopup(FileOpenFailed);
  else if (opened.file == nullptr)
    FileErrorPopup(WrongFileFormat);
  return std::move(opened.file);
}

bool SameBits(float a, float b) {
  return std::bit_cast<std::uint32_t>(a) == std::bit_cast<std::uint32_t>(b);
}

/// Reads a profile into the front of `profile`, up to the end of the file. Keeps the samples after them. Writes
/// only samples that differ, so that untouched memory stays untouched.
void ReadProfile(RecordingFile& file, int input, std::span<float> profile, std::span<float> block) {
  std::size_t done = 0;
  while (done < profile.size()) {
    const std::span<float> wanted = block.first(std::min(block.size(), profile.size() - done));
    const std::size_t read = file.Read(input, 1, static_cast<std::int64_t>(done), wanted);
    for (std::size_t k = 0; k < read; ++k) {
      if (!SameBits(profile[done + k], wanted[k])) profile[done + k] = wanted[k];
    }
    done += read;
    if (read < wanted.size()) break;
  }
}

/// Reads the seven profiles.
/// @return whether samples of the last profile were read
bool ReadProfiles(RecordingFile& file, const StimProfileSpans& profiles) {
  std::vector<float> block(std::min(BlockSamples, Index(file.Account().samples)));
  for (std::size_t p = 0; p < profiles.size(); ++p)
    ReadProfile(file, static_cast<int>(p), profiles[p], block);
  return file.Account().stimulus.lastHeld > 0;
}

bool AgreesToPoints(int points) {
  return points > 0 && Model.NumPoints != points &&
         ConfirmPopup(PointsTitle, FormatText(PointsQuestion, Model.NumPoints, points));
}

/// Returns whether the user, or the rule of scripts, accepts the interval of a file.
bool AgreesToInterval(float intervalMs) {
  if (SameBits(intervalMs, Model.ADInterval)) return false;
  if (Stimulus.ScriptRunning == 0)
    return ConfirmPopup(IntervalTitle, IntervalText(IntervalQuestion, intervalMs));
  MessagePopup(NoticeTitle, IntervalText(IntervalKept, intervalMs));
  return false;
}

StimProfileSpans StoreProfiles() {
  StimProfileSpans profiles;
  std::copy(Stimulus.Profile.begin(), Stimulus.Profile.end(), profiles.begin());
  return profiles;
}

std::span<float> TargetProfile() {
  return Stimulus.Profile[Index(std::clamp(Stimulus.StimTarget, 0, MaxDrugs))];
}

std::string_view BytesOf(std::span<const float> samples) {
  return {reinterpret_cast<const char*>(samples.data()), samples.size_bytes()};
}

std::size_t ExportCount(int count) {
  return Index(std::clamp(count, 1, MaxStimPoints));
}

}  // namespace

Outcome WriteStimProfiles(const std::string& path, float intervalMs, const StimProfileSpans& profiles) {
  std::array<char, StimFileHeadBytes> head{};
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

Outcome WriteStimColumn(const std::string& path, float intervalMs, std::span<const float> profile) {
  std::string head;
  AppendExponent(head, static_cast<double>(intervalMs));
  head += '\n';
  return SaveFile(path,
                  MakeRowBlocks(std::move(head), profile.size(), [profile](std::string& text, std::size_t i) {
                    AppendGeneral(text, static_cast<double>(profile[i]));
                    text += '\n';
                  }));
}

Outcome StimFileRead(const std::string& path) {
  const auto file = OpenStimulus(path);
  if (file == nullptr) return Outcome::Failed;
  const float intervalMs = file->Account().stimulus.intervalMs;
  const int samples = file->Account().samples;
  const bool newInterval = AgreesToInterval(intervalMs);
  if (samples > MaxStimPoints) {
    MessagePopup(ErrorTitle, TooLarge);
    return Outcome::Failed;
  }
  const bool newPoints = Stimulus.ScriptRunning == 0 && AgreesToPoints(samples - 1);
  for (const std::span<float> profile : Stimulus.Profile) ReleaseZeroPages(profile);
  const bool complete = ReadProfiles(*file, StoreProfiles());
  if (newInterval) Model.ADInterval = WithinLimits(intervalMs);
  if (newPoints) Model.NumPoints = samples - 1;
  if (complete) Stimulus.StimFileName = path;
  ShowStimulusOfFile();
  if (!complete) TellShortFile(path);
  return complete ? Outcome::Done : Outcome::Failed;
}

std::optional<StimulusRead> StimFileReadInto(const std::string& path, const StimProfileSpans& profiles) {
  const auto file = OpenStimulus(path);
  if (file == nullptr) return std::nullopt;
  const float intervalMs = file->Account().stimulus.intervalMs;
  const int samples = file->Account().samples;
  const bool differs = !(std::abs(intervalMs - Model.ADInterval) <= SameInterval);
  const bool newInterval =
      differs && ConfirmPopup(ColumnIntervalTitle, IntervalText(IntervalQuestion, intervalMs));
  if (samples > static_cast<int>(profiles[0].size())) {
    MessagePopup(ErrorTitle, TooLargeForWaveform);
    return std::nullopt;
  }
  const bool complete = ReadProfiles(*file, profiles);
  if (newInterval) {
    Model.ADInterval = WithinLimits(intervalMs);
    ShowStimulusOfFile();
  }
  if (!complete) Note(FormatText(ShortForWaveform, FileNameOf(path).c_str()));
  return StimulusRead{complete ? samples : 0, intervalMs};
}

Outcome StimFileWrite(const std::string& path, int count) {
  ReadStimulusPanel();
  StimProfileSpans profiles = StoreProfiles();
  for (std::span<float>& profile : profiles) profile = profile.first(ExportCount(count));
  return WriteStimProfiles(path, Model.ADInterval, profiles);
}

std::optional<int> StimAsciiImport(const std::string& path) {
  const auto column = ReadStimColumn(path);
  if (!column) {
    FileErrorPopup(FileOpenFailed);
    return std::nullopt;
  }
  if (!column->fault.empty()) {
    TellNotRead(path, column->fault);
    return std::nullopt;
  }
  if (column->more) Note(FormatText(MoreSamples, FileNameOf(path).c_str(), column->samples.size()));
  const auto samples = static_cast<int>(column->samples.size());
  const bool newInterval =
      column->intervalMs && *column->intervalMs != Model.ADInterval &&
      ConfirmPopup(ColumnIntervalTitle, IntervalText(ColumnIntervalQuestion, *column->intervalMs));
  const bool newPoints = AgreesToPoints(samples);
  if (newInterval) Model.ADInterval = WithinLimits(*column->intervalMs);
  if (newPoints) Model.NumPoints = samples;
  std::copy(column->samples.begin(), column->samples.end(), TargetProfile().begin());
  ShowStimulusOfFile();
  return samples > LeastImport ? 1 : 0;
}

Outcome StimAsciiExport(const std::string& path, int count) {
  return WriteStimColumn(path, Model.ADInterval, TargetProfile().first(ExportCount(count)));
}

}  // namespace zelvane
