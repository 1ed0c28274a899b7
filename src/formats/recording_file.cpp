#include "formats/recording_file.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <fstream>
#include <limits>
#include <utility>

#include "formats/abf/abf.h"
#include "formats/input_file.h"
#include "formats/obf_file.h"
#include "formats/stimulus_read.h"
#include "formats/text_recording.h"
#include "platform/file_names.h"
#include "platform/format_text.h"

namespace zelvane {
namespace {

constexpr char NoFile[] = "cannot be opened";
constexpr char NoRecording[] = "no recording";
constexpr char NoSamples[] = "holds no such samples";
constexpr char TooManyPoints[] = "its profiles are longer than a run can be";
constexpr char UnequalSteps[] = "the steps of time are not equal";
constexpr double MicrosecondsPerMs = 1000.0;
constexpr std::size_t BlockSamples = 1 << 20;

const std::array<const char*, StimFileProfiles> ProfileNames = {"Voltage", "Drug1", "Drug2", "Drug3",
                                                                "Drug4",   "Drug5", "Drug6"};

using Open = std::unique_ptr<RecordingFile>;

std::string NoteOfEnd(std::int64_t samples, std::int64_t announced) {
  if (samples >= announced) return {};
  return FormatText("ends early, with %lld of %lld samples", static_cast<long long>(samples),
                    static_cast<long long>(announced));
}

// -- ABF --

class AbfRecording final : public RecordingFile {
 public:
  static Open Begin(const std::string& path, std::string& why) {
    auto recording = std::make_unique<AbfRecording>();
    RecordingAccount& account = recording->account_;
    AbfHeader header;
    recording->file_ = OpenABFFile(path, header, account.samples, account.sweeps, &why);
    if (recording->file_ == nullptr) return nullptr;
    account.kind = "ABF";
    account.version = header.version;
    account.intervalMs = header.sampleInterval / MicrosecondsPerMs;
    account.note = NoteOfEnd(header.acquisitionLength, header.announcedSamples);
    for (int k = 0; k < header.channels; ++k) account.inputs.push_back(InputOf(header, k));
    recording->TakeLengths();
    return recording;
  }

  bool Load(int, int, int, std::string&) override { return true; }

  std::size_t Read(int input, int sweep, std::int64_t at, std::span<float> samples) override {
    if (at > std::numeric_limits<int>::max()) return 0;
    return static_cast<std::size_t>(ReadSweep(*file_, input, sweep, static_cast<int>(at), samples));
  }

 private:
  static RecordedInput InputOf(const AbfHeader& header, int place) {
    const int input = header.samplingSequence[static_cast<std::size_t>(place)];
    const auto at = static_cast<std::size_t>(input);
    float scale = 1.0F;
    float offset = 0.0F;
    GetADCScaleFactor(header, input, scale, offset);
    const float gain = header.adcRange / (scale * static_cast<float>(header.adcResolution));
    return {input, header.channelName[at], header.channelUnits[at],
            std::isfinite(gain) ? static_cast<double>(gain) : 1.0};
  }

  void TakeLengths() {
    std::vector<int> lengths(static_cast<std::size_t>(account_.sweeps));
    for (std::size_t s = 0; s < lengths.size(); ++s)
      lengths[s] = SweepLength(*file_, static_cast<int>(s) + 1);
    if (std::adjacent_find(lengths.begin(), lengths.end(), std::not_equal_to<>()) != lengths.end())
      account_.lengths = std::move(lengths);
  }

  AbfHandle file_;
};

// -- OBF --

class ObfRecording final : public RecordingFile {
 public:
  static Open Begin(std::ifstream file, std::string& why) {
    auto recording = std::make_unique<ObfRecording>();
    RecordingAccount& account = recording->account_;
    const ObfHeader header = ReadObfHeader(file);
    const std::int64_t held = ObfSamplesHeld(file);
    const std::int64_t points = std::min<std::int64_t>(header.numPoints.value_or(0), held);
    if (points < 1) {
      why = NoRecording;
      return nullptr;
    }
    account = {.kind = "OBF", .inputs = {{0, "", "", 1.0}}};
    const auto interval = static_cast<double>(header.intervalMs.value_or(0.0F));
    account.intervalMs = std::isfinite(interval) && interval > 0.0 ? interval : 0.0;
    const std::int64_t runs = std::max(1, header.numRuns.value_or(1));
    account.sweeps = static_cast<int>(std::min((held + points - 1) / points, runs));
    account.samples = static_cast<int>(std::min<std::int64_t>(points, std::numeric_limits<int>::max()));
    account.note = NoteOfEnd(held, runs * header.numPoints.value_or(0));
    recording->file_ = std::move(file);
    return recording;
  }

  bool Load(int, int, int, std::string&) override { return true; }

  std::size_t Read(int, int sweep, std::int64_t at, std::span<float> samples) override {
    const std::int64_t before = std::int64_t{account_.samples} * (sweep - 1);
    return ReadObfSamples(file_, before + at, account_.samples - at, samples);
  }

 private:
  std::ifstream file_;
};

/// Samples that stand in memory, sweep after sweep of `stride` samples apart.
std::size_t CopyOf(const std::vector<float>& loaded, std::size_t place, std::size_t stride, std::int64_t at,
                   std::span<float> samples) {
  std::size_t come = 0;
  for (std::size_t k = static_cast<std::size_t>(at) * stride + place; k < loaded.size(); k += stride) {
    if (come == samples.size()) break;
    samples[come++] = loaded[k];
  }
  return come;
}

// -- Stimulus --

class StimulusRecording final : public RecordingFile {
 public:
  static Open Begin(const std::string& path, std::string& why) {
    const auto head = StimFileHeadOf(path);
    if (!head) {
      why = NoRecording;
      return nullptr;
    }
    auto recording = std::make_unique<StimulusRecording>();
    recording->path_ = path;
    recording->head_ = *head;
    RecordingAccount& account = recording->account_;
    account.kind = "stimulus";
    if (std::isfinite(head->intervalMs)) account.intervalMs = static_cast<double>(head->intervalMs);
    account.samples = head->samples;
    if (head->samplesHeld < head->samples)
      account.note =
          FormatText("ends early: its last profile has %d of %d samples", head->samplesHeld, head->samples);
    for (std::size_t p = 0; p < StimFileProfiles; ++p)
      account.inputs.push_back({static_cast<int>(p), ProfileNames[p], p == 0 ? "V" : "M", 1.0});
    return recording;
  }

  bool Load(int input, int, int, std::string& why) override {
    if (head_.samples > MaxStimSamples) {
      why = TooManyPoints;
      return false;
    }
    profile_.assign(static_cast<std::size_t>(head_.samples), 0.0F);
    StimProfileSpans profiles;
    profiles[static_cast<std::size_t>(input)] = profile_;
    ReadStimProfiles(path_, head_, profiles);
    return true;
  }

  std::size_t Read(int, int, std::int64_t at, std::span<float> samples) override {
    return CopyOf(profile_, 0, 1, at, samples);
  }

 private:
  std::string path_;
  StimFileHead head_;
  std::vector<float> profile_;
};

// -- Text --

class TextFile final : public RecordingFile {
 public:
  static Open Begin(std::ifstream file, std::optional<double> typedIntervalMs, std::string& why) {
    auto recording = std::make_unique<TextFile>();
    recording->file_ = std::move(file);
    recording->typedIntervalMs_ = typedIntervalMs;
    return recording->TakeAccount(why) ? std::move(recording) : nullptr;
  }

  bool Load(int input, int first, int last, std::string& why) override {
    if (input == input_ && first == first_ && last == last_) return true;
    TextSamples read = ReadAll(input, first, last);
    why = WhyNot(read);
    samples_ = std::move(read.samples);
    return why.empty();
  }

  std::size_t Read(int, int sweep, std::int64_t at, std::span<float> samples) override {
    return CopyOf(samples_, static_cast<std::size_t>(sweep - first_),
                  static_cast<std::size_t>(last_ - first_ + 1), at, samples);
  }

 private:
  /// Reads the whole text: a column of numbers has its interval typed or on its first line, if that can be
  /// one.
  bool TakeAccount(std::string& why) {
    lineHoldsInterval_ = !typedIntervalMs_;
    TextSamples read = ReadAll(1, 1, 1);
    if (!shape_.atf && lineHoldsInterval_ && !(read.intervalMs && *read.intervalMs > MinTextInterval)) {
      lineHoldsInterval_ = false;
      read = ReadAll(1, 1, 1);
    }
    why = WhyNot(read);
    if (!why.empty()) return false;
    account_.kind = shape_.atf ? "ATF" : "single column";
    account_.inputs = Signals();
    account_.intervalMs = read.intervalMs.value_or(typedIntervalMs_.value_or(0.0));
    account_.sweeps = shape_.episodes;
    account_.samples =
        static_cast<int>(std::min<std::size_t>(read.samples.size(), std::numeric_limits<int>::max()));
    samples_ = std::move(read.samples);
    return true;
  }

  TextSamples ReadAll(int signal, int first, int last) {
    input_ = signal;
    first_ = first;
    last_ = last;
    file_.clear();
    file_.seekg(0);
    TextRecording text(file_);
    shape_ = text.Shape();
    refusal_ = text.Refusal();
    if (!refusal_.empty()) return {};
    TextRequest request;
    request.signal = signal;
    request.episode = first;
    request.episodes = last - first + 1;
    request.intervalLine = !shape_.atf && lineHoldsInterval_;
    request.most = std::numeric_limits<std::size_t>::max();
    TextSamples read = text.Read(request);
    account_.note.clear();
    if (read.badLine != 0)
      account_.note = FormatText("read up to line %zu, which is not a row of numbers", read.badLine);
    return read;
  }

  std::string WhyNot(const TextSamples& read) const {
    if (!refusal_.empty()) return refusal_;
    if (read.unequalSteps) return UnequalSteps;
    return read.samples.empty() ? WhyNoSamples(shape_, read) : std::string{};
  }

  /// Splits "IN 0,IN 1" into names.
  std::vector<RecordedInput> Signals() const {
    std::vector<RecordedInput> signals;
    std::string_view rest = shape_.signalList;
    for (int s = 1; s <= shape_.signals; ++s) {
      const std::size_t comma = rest.find(',');
      const auto place = static_cast<std::size_t>(s - 1);
      signals.push_back({s, std::string(rest.substr(0, comma)),
                         place < shape_.units.size() ? shape_.units[place] : std::string{}, 1.0});
      rest.remove_prefix(comma == std::string_view::npos ? rest.size() : comma + 1);
    }
    return signals;
  }

  std::ifstream file_;
  std::optional<double> typedIntervalMs_;
  bool lineHoldsInterval_ = true;
  TextShape shape_;
  std::string refusal_;
  int input_ = 0;  // what `samples_` holds
  int first_ = 1;
  int last_ = 1;
  std::vector<float> samples_;
};

/// Reads one sweep block by block, keeping every n-th sample.
std::optional<std::vector<float>> ReadPart(RecordingFile& file, const SweepExtract& wanted, int sweep,
                                           const GoOn& goOn) {
  const double sweeps = wanted.last - wanted.first + 1;
  std::int64_t end = file.Account().samples;
  if (wanted.length) end = std::min(end, wanted.start + *wanted.length);
  std::vector<float> part;
  std::vector<float> block(static_cast<std::size_t>(
      std::clamp<std::int64_t>(end - wanted.start, 0, static_cast<std::int64_t>(BlockSamples))));
  std::int64_t next = wanted.start;
  for (std::int64_t at = wanted.start; at < end;) {
    const double done = static_cast<double>(at - wanted.start) / static_cast<double>(end - wanted.start);
    if (!goOn((sweep - wanted.first + done) / sweeps)) return std::nullopt;
    const auto length = std::min<std::int64_t>(end - at, static_cast<std::int64_t>(block.size()));
    const auto come = static_cast<std::int64_t>(
        file.Read(wanted.input, sweep, at, std::span(block).first(static_cast<std::size_t>(length))));
    for (; next < at + come; next += wanted.every) part.push_back(block[static_cast<std::size_t>(next - at)]);
    if (come < length) break;
    at += come;
  }
  return part;
}

}  // namespace

Open OpenRecordingFile(const std::string& path, std::string& why, std::optional<double> typedIntervalMs) {
  auto file = OpenInput(path);
  if (!file) {
    why = NoFile;
    return nullptr;
  }
  std::array<char, 3> mark{};
  file->read(mark.data(), mark.size());
  const std::string_view begin(mark.data(), static_cast<std::size_t>(file->gcount()));
  if (begin == "ABF") return AbfRecording::Begin(path, why);
  if (begin == "OBF") return ObfRecording::Begin(std::move(*file), why);
  if (ExtensionOf(path) == ".stm") return StimulusRecording::Begin(path, why);
  return TextFile::Begin(std::move(*file), typedIntervalMs, why);
}

std::optional<std::vector<std::vector<float>>> ReadExtract(RecordingFile& file, const SweepExtract& wanted,
                                                           const GoOn& goOn, std::string& why) {
  const auto& inputs = file.Account().inputs;
  const auto has = [&](const RecordedInput& one) { return one.number == wanted.input; };
  why = NoSamples;
  if (wanted.first < 1 || wanted.last > file.Account().sweeps ||
      std::none_of(inputs.begin(), inputs.end(), has))
    return std::nullopt;
  if (!file.Load(wanted.input, wanted.first, wanted.last, why)) return std::nullopt;
  std::vector<std::vector<float>> sweeps;
  for (int sweep = wanted.first; sweep <= wanted.last; ++sweep) {
    auto part = ReadPart(file, wanted, sweep, goOn);
    why = part ? NoSamples : "";
    if (!part || part->empty()) return std::nullopt;
    sweeps.push_back(std::move(*part));
  }
  return sweeps;
}

}  // namespace zelvane
