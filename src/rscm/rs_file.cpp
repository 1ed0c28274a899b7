#include "rscm/rs_file.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <string>
#include <string_view>

#include "formats/input_file.h"
#include "model/model_store.h"
#include "platform/folders.h"
#include "platform/index.h"
#include "rscm/rs_correct.h"
#include "screen/popups.h"
#include "screen/save_file.h"
#include "trace/trace_read.h"
#include "trace/trace_store.h"
#include "trace/trace_write.h"

namespace zelvane {
namespace {

constexpr char OpenTitle[] = "Select ABF Data File to apply Rs correction to";
constexpr char SaveTitle[] = "Save Rs corrected data to which file";
constexpr char AbfFiles[] = "*.abf";
constexpr char AllRecordings[] = "*.dat;*.atf;*.asc;*.abf;*.ave";
constexpr char SameFile[] = "Cannot overwrite file; choose a different filename or location.";

constexpr std::size_t MaxTemplateBytes = std::size_t{1} << 20;
constexpr std::size_t BlockBytes = 512;
constexpr float MicrosecondsPerMs = 1000.0F;
constexpr std::int16_t FloatFormat = 1;

// Offsets of fields in a header of version 1.
constexpr std::size_t ModeAt = 8;
constexpr std::size_t SamplesAt = 10;
constexpr std::size_t EpisodesAt = 16;
constexpr std::size_t DataBlockAt = 40;
constexpr std::size_t FormatAt = 100;
constexpr std::size_t ChannelsAt = 120;
constexpr std::size_t IntervalAt = 122;
constexpr std::size_t EpisodeSamplesAt = 138;

template <typename Number>
void SetField(std::string& bytes, std::size_t offset, Number value) {
  static_assert(std::endian::native == std::endian::little, "recordings hold numbers as memory does");
  std::memcpy(bytes.data() + offset, &value, sizeof value);
}

std::int32_t DataBlock(const std::string& bytes) {
  std::int32_t block = 0;
  std::memcpy(&block, bytes.data() + DataBlockAt, sizeof block);
  return block;
}

/// Returns whether the header is complete and its samples begin after it.
bool IsTemplate(const std::string& bytes) {
  if (bytes.size() < AbfTemplateLength || bytes.compare(0, 3, "ABF") != 0) return false;
  const auto begin = static_cast<std::int64_t>(DataBlock(bytes)) * static_cast<std::int64_t>(BlockBytes);
  return begin >= static_cast<std::int64_t>(AbfTemplateLength) &&
         begin <= static_cast<std::int64_t>(MaxTemplateBytes);
}

/// Returns the bytes of the template up to its samples.
std::string TemplateHead(const char* name) {
  const auto beside = ReadBytes(ProgramFile(name), MaxTemplateBytes);
  std::string head;
  if (beside && IsTemplate(*beside)) {
    head = *beside;
  } else {
    const AbfTemplate builtIn = AbfTemplateBytes(name);
    head.assign(reinterpret_cast<const char*>(builtIn.data()), builtIn.size());
  }
  head.resize(Index(DataBlock(head)) * BlockBytes, '\0');
  return head;
}

std::string HeadOfTrace() {
  const int episodes = std::max(Trace.EpisodeCount, 1);
  const bool several = episodes > 1;
  std::string head = TemplateHead(several ? EpisodicTemplate : GapFreeTemplate);
  SetField(head, FormatAt, FloatFormat);
  SetField(head, ModeAt, static_cast<std::int16_t>(several ? EpisodicMode : GapFreeMode));
  SetField(head, SamplesAt, static_cast<std::int32_t>(Model.NumPoints));
  SetField(head, EpisodesAt, static_cast<std::int32_t>(episodes));
  SetField(head, ChannelsAt, std::int16_t{1});
  SetField(head, IntervalAt, Model.ADInterval * MicrosecondsPerMs);
  SetField(head, EpisodeSamplesAt, static_cast<std::int32_t>(Model.NumPoints / episodes));
  return head;
}

Outcome WriteTrace(const std::string& path) {
  const std::string head = HeadOfTrace();
  const auto count = Index(std::max(Model.NumPoints, 0));
  const std::string_view samples(reinterpret_cast<const char*>(Trace.SimTrace.data()), count * sizeof(float));
  int part = 0;
  return SaveFile(path, [&]() -> std::string_view {
    ++part;
    if (part == 1) return head;
    return part == 2 ? samples : std::string_view{};
  });
}

bool IsSameFile(const std::string& a, const std::string& b) {
  std::error_code error;
  return a == b || std::filesystem::equivalent(a, b, error);
}

}  // namespace

Outcome FileCorrect(const std::function<void()>& readSettings) {
  const auto source =
      FileSelectPopup({.title = OpenTitle, .defaultName = AbfFiles, .filter = AllRecordings, .save = false});
  if (!source) return Outcome::Refused;
  if (!ReadAllEpisodes(*source)) return Outcome::Failed;
  readSettings();
  if (RsCorrectTrace() != Outcome::Done) return Outcome::Failed;
  const auto target =
      FileSelectPopup({.title = SaveTitle, .defaultName = AbfFiles, .filter = AllRecordings, .save = true});
  if (!target) return Outcome::Stopped;
  if (IsSameFile(*source, *target)) {
    MessagePopup(NoticeTitle, SameFile);
    return Outcome::Failed;
  }
  return WriteTrace(*target);
}

}  // namespace zelvane
