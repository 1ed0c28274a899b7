#include "formats/recording_file.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <fstream>
#include <limits>
#include <string_view>
#include <utility>

#include "formats/abf/abf.h"
#include "formats/abf/abf_layout.h"
#include "formats/abf/byte_source.h"
#include "formats/input_file.h"
#include "formats/obf_file.h"
#include "formats/stimulus_read.h"
#include "formats/text_recording.h"
#include "platform/file_names.h"
#include "platform/format_text.h"

namespace zelvane {
namespace {

constexpr char StimulusKind[] = "stimulus";
constexpr char NoFile[] = "cannot be opened";
constexpr char NoRecording[] = "no recording";
constexpr char NoSamples[] = "holds no such samples";
constexpr char TooManyPoints[] = "its profiles are longer than a run can be";
constexpr char UnequalSteps[] = "the steps of time are not equal";
constexpr std::string_view AbfMark = "ABF";
constexpr std::string_view Abf1Mark = "ABF ";
constexpr std::string_view Abf2Mark = "ABF2";
constexpr std::string_view ObfMark = "OBF";
constexpr std::string_view AtfMark = "ATF";
constexpr double MicrosecondsPerMs = 1000.0;
constexpr std::size_t BlockSamples = 1 << 20;

const std::array<const char*, StimFileProfiles> ProfileNames = {"Voltage", "Drug1", "Drug2", "Drug3",
                                                                "Drug4",   "Drug5", "Drug6"};

using FilePointer = std::unique_ptr<RecordingFile>;

std::string NoteOfEnd(std::int64_t samples, std::int64_t announced) {
  if (samples >= announced) return {};
  return FormatText("ends early, with %lld of %lld samples", static_cast<long long>(samples),
                    static_cast<long long>(announced));
}

// -- ABF --

class AbfRecording final : public RecordingFile {
 public:
  static FilePointer Begin(std::unique_ptr<ByteSource> source, std::string& why) {
    auto recording = std::make_unique<AbfRecording>();
    RecordingAccount& account = recording->account_;
    AbfHeader header;
    recording->file_ = OpenAbfSource(std::move(source), header, account.samples, account.sweeps, &why);
    if (recording->file_ == nullptr) return nullptr;
    account.kind = "ABF";
    account.version = header.version;
    account.intervalMs = header.sampleInterval / MicrosecondsPerMs;
    account.note = NoteOfEnd(header.acquisitionLength, header.announcedSamples);
    account.abf = {header.operationMode, header.dataFormat == AbfFloats, header.adcResolution,
                   header.adcRange, header.acquisitionLength};
    for (int k = 0; k < header.channels; ++k) account.inputs.push_back(InputOf(header, k));
    return recording;
  }

  int SweepSamples(int sweep) const override { return SweepLength(*file_, sweep); }

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
            std::isfinite(gain) ? static_cast<double>(gain) : 1.0, scale};
  }

  AbfHandle file_;
};

// -- OBF --

class ObfRecording final : public RecordingFile {
 public:
  static FilePointer Begin(std::ifstream file, std::string& why) {
    auto recording = std::make_unique<ObfRecording>();
    RecordingAccount& account = recording->account_;
    const ObfHeader header = ReadObfHeader(file);
    const std::int64_t held = ObfSamplesHeld(file);
    const std::int64_t points = std::min<std::int64_t>(header.numPoints.value_or(0), held);
    if (points < 1) {
      why = NoRecording;
      return nullptr;
    }
    account.kind = "OBF";
    account.inputs = {{}};
    account.obf.runs = std::max(0, header.numRuns.value_or(0));
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
    return ReadObfSamples(file_, before + at, static_cast<std::int64_t>(samples.size()), samples);
  }

 private:
  std::ifstream file_;
};

// -- Stimulus --

class StimulusRecording final : public RecordingFile {
 public:
  static FilePointer Begin(std::ifstream file, std::string& why) {
    const auto head = ReadStimHead(file);
    if (!head) {
      why = NoRecording;
      return nullptr;
    }
    auto recording = std::make_unique<StimulusRecording>();
    recording->file_ = std::move(file);
    recording->head_ = *head;
    RecordingAccount& account = recording->account_;
    account.kind = StimulusKind;
    account.stimulus = {head->intervalMs, head->samplesHeld};
    if (std::isfinite(head->intervalMs)) account.intervalMs = static_cast<double>(head->intervalMs);
    account.samples = head->samples;
    if (head->samplesHeld < head->samples)
      account.note =
          FormatText("ends early: its last profile has %d of %d samples", head->samplesHeld, head->samples);
    for (std::size_t p = 0; p < StimFileProfiles; ++p)
      account.inputs.push_back({static_cast<int>(p), ProfileNames[p], p == 0 ? "V" : "M", 1.0});
    return recording;
  }

  bool Load(int, int, int, std::string& why) override {
    if (head_.samples <= MaxStimSamples) return true;
    why = TooManyPoints;
    return false;
  }

  std::size_t Read(int input, int, std::int64_t at, std::span<float> samples) override {
    return ReadStimSamples(file_, head_, input, at, samples);
  }

 private:
  std::ifstream file_;
  StimFileHead head_;
};

// -- Text --

class TextFile final : public RecordingFile {
 public:
  static FilePointer Begin(std::ifstream file, std::string& why) {
    auto recording = std::make_unique<TextFile>();
    recording->file_ = std::move(file);
    TextRecording& text = recording->text_.emplace(recording->file_);
    why = text.Refusal();
    if (!why.empty()) return nullptr;
    const TextShape& shape = text.Shape();
    RecordingAccount& account = recording->account_;
    account.kind = shape.atf ? "ATF" : "single column";
    account.inputs = SignalsOf(shape);
    account.sweeps = shape.episodes;
    account.text = {shape.atf, shape.columns, shape.signalList};
    return recording;
  }

  int SweepSamples(int sweep) const override {
    if (sweep < first_ || sweep > last_) return RecordingFile::SweepSamples(sweep);
    return CountOf(samples_.size() / static_cast<std::size_t>(last_ - first_ + 1));
  }

  /// Completes the account. A column of numbers has a typed interval, or one on its first line if this can be
  /// one.
  bool CompleteAccount(std::optional<double> typedIntervalMs, std::string& why) override {
    reading_.intervalLine = !account_.text.atf && !typedIntervalMs;
    bool loaded = Load(1, 1, 1, why);
    if (reading_.intervalLine && !(intervalMs_ && *intervalMs_ > MinTextInterval)) {
      reading_.intervalLine = false;
      input_ = 0;
      loaded = Load(1, 1, 1, why);
    }
    account_.intervalMs = intervalMs_.value_or(typedIntervalMs.value_or(0.0));
    account_.samples = CountOf(samples_.size());
    return loaded;
  }

  void SetTextReading(const TextReading& reading) override {
    reading_ = reading;
    input_ = 0;
  }

  bool Load(int input, int first, int last, std::string& why) override {
    if (input == input_ && first == first_ && last == last_) return true;
    input_ = input;
    first_ = first;
    last_ = last;
    if (textIsRead_) Rewind();
    textIsRead_ = true;
    TextSamples read = text_->Read({.signal = input,
                                    .episode = first,
                                    .episodes = last - first + 1,
                                    .intervalLine = !account_.text.atf && reading_.intervalLine,
                                    .scale = account_.text.atf ? 1.0F : reading_.scale,
                                    .most = reading_.most});
    KeepFacts(read);
    why.clear();
    if (read.unequalSteps) why = UnequalSteps;
    if (read.samples.empty()) why = WhyNoSamples(text_->Shape(), read);
    samples_ = std::move(read.samples);
    return why.empty();
  }

  std::size_t Read(int, int sweep, std::int64_t at, std::span<float> samples) override {
    if (sweep < first_ || sweep > last_) return 0;
    // The samples of several sweeps are stored row after row.
    const auto stride = static_cast<std::size_t>(last_ - first_ + 1);
    const std::size_t begin =
        static_cast<std::size_t>(at) * stride + static_cast<std::size_t>(sweep - first_);
    if (begin >= samples_.size()) return 0;
    const std::size_t count = std::min(samples.size(), (samples_.size() - begin + stride - 1) / stride);
    if (stride == 1) {
      std::copy_n(samples_.begin() + static_cast<std::ptrdiff_t>(begin), count, samples.begin());
    } else {
      for (std::size_t k = 0; k < count; ++k) samples[k] = samples_[begin + k * stride];
    }
    return count;
  }

 private:
  static int CountOf(std::size_t samples) {
    return static_cast<int>(std::min<std::size_t>(samples, std::numeric_limits<int>::max()));
  }

  /// Splits "IN 0,IN 1" into names.
  static std::vector<RecordedInput> SignalsOf(const TextShape& shape) {
    std::vector<RecordedInput> signals;
    std::string_view rest = shape.signalList;
    for (int s = 1; s <= shape.signals; ++s) {
      const std::size_t comma = rest.find(',');
      const auto place = static_cast<std::size_t>(s - 1);
      signals.push_back({s, std::string(rest.substr(0, comma)),
                         place < shape.units.size() ? shape.units[place] : std::string{}, 1.0});
      rest.remove_prefix(comma == std::string_view::npos ? rest.size() : comma + 1);
    }
    return signals;
  }

  void Rewind() {
    file_.clear();
    file_.seekg(0);
    text_.emplace(file_);
  }

  void KeepFacts(const TextSamples& read) {
    intervalMs_ = read.intervalMs;
    if (intervalMs_) account_.intervalMs = *intervalMs_;
    account_.text.unequalSteps = read.unequalSteps;
    account_.text.badLine = read.badLine;
    account_.text.truncated = read.more;
    account_.note.clear();
    if (read.badLine != 0)
      account_.note = FormatText("read up to line %zu, which is not a row of numbers", read.badLine);
    else if (read.cutLine != 0)
      account_.note =
          FormatText("ends within line %zu, %s", read.cutLine,
                     read.cutLineKept ? "whose last number may lack digits" : "which is left out");
  }

  std::ifstream file_;
  std::optional<TextRecording> text_;  // reads the samples once; a second read begins again at the first line
  bool textIsRead_ = false;
  TextReading reading_;
  std::optional<double> intervalMs_;
  int input_ = 0;  // what `samples_` holds
  int first_ = 1;
  int last_ = 1;
  std::vector<float> samples_;
};

/// Returns the first four bytes of a file, fewer for a shorter file.
std::string MarkOf(const ByteSource& source) {
  std::array<std::byte, 4> mark{};
  const std::size_t read = source.Read(0, mark);
  return {reinterpret_cast<const char*>(mark.data()), read};
}

RecordingForm FormOf(const std::string& mark, const std::string& path, OpenAs as) {
  if (as == OpenAs::Text) return RecordingForm::Text;
  if (as == OpenAs::Stimulus) return RecordingForm::Stimulus;
  if (mark == Abf1Mark || mark == Abf2Mark) return RecordingForm::Abf;
  if (mark.starts_with(AbfMark)) return RecordingForm::Unknown;
  if (mark.starts_with(ObfMark)) return RecordingForm::Obf;
  const bool stimulus = as == OpenAs::AnyFile && ExtensionOf(path) == ".stm";
  return stimulus ? RecordingForm::Stimulus : RecordingForm::Text;
}

FilePointer Begin(std::ifstream file, RecordingForm form, std::string& why) {
  if (form == RecordingForm::Obf) return ObfRecording::Begin(std::move(file), why);
  if (form == RecordingForm::Stimulus) return StimulusRecording::Begin(std::move(file), why);
  return TextFile::Begin(std::move(file), why);
}

/// Reads one sweep block by block, keeping every n-th sample.
std::optional<std::vector<float>> ReadPart(RecordingFile& file, const SweepExtract& wanted, int sweep,
                                           const GoOn& goOn) {
  const double sweeps = wanted.last - wanted.first + 1;
  std::int64_t end = file.Account().samples;
  if (wanted.length) end = std::min(end, wanted.start + *wanted.length);
  const bool zerosFollow = file.Account().kind == StimulusKind;  // after the early end of a stimulus file
  std::vector<float> part;
  std::vector<float> block(static_cast<std::size_t>(
      std::clamp<std::int64_t>(end - wanted.start, 0, static_cast<std::int64_t>(BlockSamples))));
  std::int64_t next = wanted.start;
  for (std::int64_t at = wanted.start; at < end;) {
    const double done = static_cast<double>(at - wanted.start) / static_cast<double>(end - wanted.start);
    if (!goOn((sweep - wanted.first + done) / sweeps)) return std::nullopt;
    const auto length = std::min<std::int64_t>(end - at, static_cast<std::int64_t>(block.size()));
    auto come = static_cast<std::int64_t>(
        file.Read(wanted.input, sweep, at, std::span(block).first(static_cast<std::size_t>(length))));
    if (zerosFollow) {
      std::fill(block.begin() + come, block.begin() + length, 0.0F);
      come = length;
    }
    for (; next < at + come; next += wanted.every) part.push_back(block[static_cast<std::size_t>(next - at)]);
    if (come < length) break;
    at += come;
  }
  return part;
}

}  // namespace

bool HasInput(const RecordingAccount& account, int number) {
  return std::any_of(account.inputs.begin(), account.inputs.end(),
                     [number](const RecordedInput& input) { return input.number == number; });
}

int RecordingFile::SweepSamples(int sweep) const {
  return sweep >= 1 && sweep <= account_.sweeps ? account_.samples : 0;
}

OpenedRecording OpenRecordingFile(const std::string& path, OpenAs as) {
  OpenedRecording opened;
  std::unique_ptr<ByteSource> source = OpenFileSource(path, opened.why);  // nullptr for an empty file
  opened.form = FormOf(source != nullptr ? MarkOf(*source) : "", path, as);
  if (opened.form == RecordingForm::Abf || opened.form == RecordingForm::Unknown) {
    opened.file = AbfRecording::Begin(std::move(source), opened.why);
  } else if (auto file = OpenInput(path)) {
    opened.file = Begin(std::move(*file), opened.form, opened.why);
  } else {
    opened.form = RecordingForm::Missing;
    opened.why = NoFile;
  }
  return opened;
}

bool BeginsLikeRecording(const std::string& path) {
  std::string why;
  const std::unique_ptr<ByteSource> source = OpenFileSource(path, why);
  const std::string mark = source != nullptr ? MarkOf(*source) : "";
  return mark.starts_with(AbfMark) || mark.starts_with(ObfMark) || mark.starts_with(AtfMark);
}

std::optional<std::vector<std::vector<float>>> ReadExtract(RecordingFile& file, const SweepExtract& wanted,
                                                           const GoOn& goOn, std::string& why) {
  why = NoSamples;
  if (wanted.first < 1 || wanted.last > file.Account().sweeps || !HasInput(file.Account(), wanted.input))
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
