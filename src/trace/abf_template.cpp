// ABF files made from a template of the program. Only the few fields that describe the trace are changed.
#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <limits>
#include <optional>
#include <span>
#include <utility>
#include <vector>

#include "formats/abf/abf.h"
#include "formats/abf/byte_source.h"
#include "formats/input_file.h"
#include "model/model_events.h"
#include "model/model_store.h"
#include "platform/folders.h"
#include "screen/popups.h"
#include "screen/save_file.h"
#include "trace/abf_stamp.h"
#include "trace/trace_store.h"
#include "trace/trace_write.h"

namespace zelvane {
namespace {

constexpr char TemplateName[] = "SAMPLABF.DAT";
constexpr int TemplateEpisodes = 10;
// The last version whose header ends at byte 2048. Later versions have 6144 bytes, where the samples already
// are.
constexpr double ShortHeaderVersion = 1.5;

constexpr char LegacyCreator[] = "Zelvane v2.0";
constexpr char AutosaveCreator[] = "Zelvane v1.0";
constexpr std::size_t CreatorBytes = 16;

constexpr char NotAppendable[] =
    " is no ABF file that runs can be appended to. Choose another name, or one that autosave has made.";
constexpr char FileIsFull[] = " holds as many samples as an ABF file can count.";

// -- Fields of a header of version 1 --
constexpr std::size_t ModeAt = 8;              // int16
constexpr std::size_t SamplesAt = 10;          // int32
constexpr std::size_t EpisodesAt = 16;         // int32
constexpr std::size_t DateAt = 20;             // int32
constexpr std::size_t TimeAt = 24;             // int32
constexpr std::size_t DataBlockAt = 40;        // int32, blocks of 512 bytes
constexpr std::size_t SectionsAt = 44;         // blocks and lengths of tags, synch array and others, to 99
constexpr std::size_t FormatAt = 100;          // int16
constexpr std::size_t IntervalAt = 122;        // float, us
constexpr std::size_t EpisodeSamplesAt = 138;  // int32
constexpr std::size_t AveragingAt = 266;       // int16
constexpr std::size_t AutoGainAt = 268;        // float
constexpr std::size_t AutoFilterAt = 272;      // float, Hz
constexpr std::size_t AutoLevelAt = 276;       // float
constexpr std::size_t CreatorAt = 294;

constexpr std::int64_t BlockBytes = 512;
constexpr std::int64_t DataBlock = AbfTemplateLength / BlockBytes;

template <typename Number>
void Put(AbfTemplate& header, std::size_t offset, Number value) {
  WriteLittleEndian(header.data() + offset, value);
}

template <typename Number>
Number Get(const AbfTemplate& header, std::size_t offset) {
  return LittleEndian<Number>(header.data() + offset);
}

bool IsAbf(const AbfTemplate& header) {
  return std::memcmp(header.data(), "ABF ", 4) == 0;
}

/// Returns the first bytes of a file; nullopt when the file is shorter.
std::optional<AbfTemplate> HeadOf(const std::string& path) {
  const auto bytes = ReadBytes(path, AbfTemplateLength);
  if (!bytes || bytes->size() < AbfTemplateLength) return std::nullopt;
  AbfTemplate header;
  std::memcpy(header.data(), bytes->data(), AbfTemplateLength);
  return header;
}

/// Returns the template in the program's folder; without it the built-in one.
AbfTemplate Template() {
  const auto header = HeadOf(ProgramFile(TemplateName));
  return header && IsAbf(*header) ? *header : AbfTemplateBytes(TemplateName);
}

void WriteCreator(AbfTemplate& header, std::string_view creator) {
  std::array<char, CreatorBytes> text{};
  std::copy(creator.begin(), creator.end(), text.begin());
  std::memcpy(header.data() + CreatorAt, text.data(), text.size());
}

/// Writes the fields that are the same for both writers.
void WriteTraceFields(AbfTemplate& header, int date, int seconds) {
  Put(header, DateAt, static_cast<std::int32_t>(date));
  Put(header, TimeAt, static_cast<std::int32_t>(seconds));
  Put(header, FormatAt, std::int16_t{AbfFloats});
  Put(header, IntervalAt, 1000.0F * Model.ADInterval);
  Put(header, AveragingAt, std::int16_t{0});
  Put(header, AutoGainAt, 1.0F);
  Put(header, AutoFilterAt, 10000.0F);
  Put(header, AutoLevelAt, 0.0F);
}

std::string_view Text(const AbfTemplate& header) {
  return {reinterpret_cast<const char*>(header.data()), header.size()};
}

std::span<const float> Samples() {
  return Trace.SimTrace.first(static_cast<std::size_t>(std::clamp(Model.NumPoints, 0, MaxStimPoints)));
}

/// Returns the parts one after the other.
NextBlock Parts(std::vector<std::string_view> parts) {
  return [parts = std::move(parts), next = std::size_t{0}]() mutable {
    while (next < parts.size() && parts[next].empty()) ++next;
    return next < parts.size() ? parts[next++] : std::string_view{};
  };
}

std::string_view BytesOf(std::span<const float> samples) {
  static_assert(std::endian::native == std::endian::little, "recordings hold numbers as memory does");
  return {reinterpret_cast<const char*>(samples.data()), samples.size_bytes()};
}

/// Returns the end of the samples that the header counts.
std::int64_t EndOfSamples(const AbfTemplate& header) {
  return Get<std::int32_t>(header, DataBlockAt) * BlockBytes +
         Get<std::int32_t>(header, SamplesAt) * std::int64_t{sizeof(float)};
}

/// Returns whether bytes after the samples are useless: the begin of an episode whose writing was
/// interrupted. The file is then one of autosave and has no other sections.
bool HasOnlySamples(const AbfTemplate& header) {
  const auto sections = std::span(header).subspan(SectionsAt, FormatAt - SectionsAt);
  return std::memcmp(header.data() + CreatorAt, AutosaveCreator, sizeof AutosaveCreator) == 0 &&
         std::all_of(sections.begin(), sections.end(), [](std::byte byte) { return byte == std::byte{0}; });
}

/// Returns whether episodes of floats can be appended: the file ends where its samples end.
bool TakesEpisodes(const AbfTemplate& header, std::uintmax_t fileBytes) {
  if (!IsAbf(header) || Get<std::int16_t>(header, FormatAt) != AbfFloats ||
      Get<std::int32_t>(header, DataBlockAt) < DataBlock || Get<std::int32_t>(header, SamplesAt) < 0 ||
      Get<std::int32_t>(header, EpisodesAt) < 0)
    return false;
  const auto end = static_cast<std::uintmax_t>(EndOfSamples(header));
  return fileBytes == end || (fileBytes > end && HasOnlySamples(header));
}

bool IsEmpty(const std::string& path) {
  std::error_code error;
  return std::filesystem::is_regular_file(path, error) && std::filesystem::file_size(path, error) == 0;
}

/// Locks the autosave file before its header is read, so that no other program changes it meanwhile. Returns
/// whether the file is new; on failure shows a message and returns nullopt.
std::optional<bool> LockEpisodes(const std::string& path) {
  switch (AutosaveLock().Take(path)) {
    case FileLock::State::NoFile:
      return true;
    case FileLock::State::Held:
      return IsEmpty(path);
    case FileLock::State::InUse:
      TellAppended(Appended::InUse, path);
      return std::nullopt;
    case FileLock::State::Refused:
      break;
  }
  FileErrorPopup(FileOpenFailed);
  return std::nullopt;
}

/// Returns the header of the file before this run, for a new file that of the template. When runs cannot be
/// appended, shows a message and returns nullopt.
std::optional<AbfTemplate> FormerHeader(const std::string& path, bool isNew) {
  if (isNew) {
    AbfTemplate header = Template();
    for (const std::size_t count : {SamplesAt, EpisodesAt, EpisodeSamplesAt})
      Put(header, count, std::int32_t{0});
    return header;
  }
  const auto header = HeadOf(path);
  std::error_code error;
  if (header && TakesEpisodes(*header, std::filesystem::file_size(path, error))) return header;
  if (OpenInput(path)) {
    MessagePopup(ErrorTitle, path + NotAppendable);
  } else {
    FileErrorPopup(FileOpenFailed);
  }
  return std::nullopt;
}

/// Counts the run in the header. When a count would be too large, shows a message and returns false.
bool CountEpisode(AbfTemplate& header, std::size_t samples, const std::string& path) {
  constexpr std::int64_t Most = std::numeric_limits<std::int32_t>::max();
  const std::int64_t total = Get<std::int32_t>(header, SamplesAt) + static_cast<std::int64_t>(samples);
  const std::int64_t episodes = std::int64_t{Get<std::int32_t>(header, EpisodesAt)} + 1;
  if (total > Most || episodes > Most) {
    MessagePopup(ErrorTitle, path + FileIsFull);
    return false;
  }
  Put(header, ModeAt, static_cast<std::int16_t>(EpisodicMode));
  Put(header, SamplesAt, static_cast<std::int32_t>(total));
  Put(header, EpisodesAt, static_cast<std::int32_t>(episodes));
  Put(header, EpisodeSamplesAt, static_cast<std::int32_t>(samples));
  return true;
}

}  // namespace

AbfStamp StampNow() {
  const std::time_t now = std::time(nullptr);
  const std::tm* here = std::localtime(&now);
  if (here == nullptr) return {};
  const int day = 100 * (here->tm_mon + 1) + here->tm_mday;
  return {10000 * (here->tm_year + 1900) + day, 10000 * (here->tm_year % 100) + day,
          3600 * here->tm_hour + 60 * here->tm_min + here->tm_sec};
}

AbfTemplate AbfTemplateBytes(std::string_view name) {
  const bool episodic = name == EpisodicTemplate;
  if (!episodic && name != GapFreeTemplate && name != TemplateName) return {};
  AbfHeader header;
  InitializeHeader(header);
  header.version = ShortHeaderVersion;
  header.operationMode = episodic ? EpisodicMode : GapFreeMode;
  header.episodes = episodic ? TemplateEpisodes : 1;
  // The legacy file keeps this number: a program that uses it must not cut the trace into pieces.
  if (name == TemplateName) header.samplesPerEpisode = MaxStimPoints;
  header.sampleInterval = 10.0;  // us, as in a new model
  return AbfHeaderBytes(header);
}

Outcome LegacyAbfWrite(const std::string& path) {
  if (RefuseSourceOfTrace(path)) return Outcome::Refused;
  RunSettingsWanted.Tell();
  const AbfStamp stamp = StampNow();
  const std::span<const float> samples = Samples();
  AbfTemplate header = Template();
  Put(header, ModeAt, static_cast<std::int16_t>(GapFreeMode));
  Put(header, SamplesAt, static_cast<std::int32_t>(samples.size()));
  WriteTraceFields(header, stamp.shortDate, stamp.seconds);
  WriteCreator(header, LegacyCreator);
  return SaveFile(path, Parts({Text(header), BytesOf(samples)}));
}

Outcome AutosaveAbfWrite(const std::string& path) {
  if (RefuseSourceOfTrace(path)) return Outcome::Refused;
  const auto isNew = LockEpisodes(path);
  if (!isNew) return Outcome::Failed;
  auto header = FormerHeader(path, *isNew);
  if (!header) return Outcome::Failed;
  RunSettingsWanted.Tell();
  const AbfStamp stamp = StampNow();
  const std::span<const float> samples = Samples();
  const std::int64_t end = EndOfSamples(*header);
  if (!CountEpisode(*header, samples.size(), path)) return Outcome::Failed;
  WriteTraceFields(*header, stamp.shortDate, stamp.seconds);
  WriteCreator(*header, AutosaveCreator);
  if (*isNew) return ExtendFile(AutosaveLock(), path, Parts({Text(*header), BytesOf(samples)}));
  return ExtendFile(AutosaveLock(), path, Parts({BytesOf(samples)}), Text(*header), end);
}

}  // namespace zelvane
