#include "headless/internal/recordings.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <utility>

#include "io/input_file.h"
#include "io/obf_file.h"
#include "io/stimulus_read.h"
#include "io/text_recording.h"
#include "io/trace_export.h"
#include "model/model_store.h"
#include "platform/abf/abf.h"

namespace zelvane {
namespace {

constexpr char NoFile[] = "cannot be opened";
constexpr char NoRecording[] = "no recording";
constexpr char NoSamples[] = "holds no such samples";
constexpr double MicrosecondsPerMs = 1000.0;
constexpr std::size_t MostSamples = MaxPoints;

const std::array<const char*, StimFileProfiles> ProfileNames = {"Voltage", "Drug1", "Drug2", "Drug3",
                                                                "Drug4",   "Drug5", "Drug6"};

std::string MarkOf(const std::string& path) {
  auto file = OpenInput(path);
  std::string mark(3, '\0');
  if (file) file->read(mark.data(), 3);
  return mark;
}

std::optional<RecordingAccount> AccountOfAbf(const std::string& path, std::string& why) {
  AbfHeader header;
  RecordingAccount account{.kind = "ABF"};
  const AbfHandle file = OpenABFFile(path, header, account.samples, account.sweeps, &why);
  if (file == nullptr) return std::nullopt;
  account.version = header.version;
  account.intervalMs = header.sampleInterval / MicrosecondsPerMs;
  for (const int input : header.samplingSequence) {
    if (input < 0) break;
    const auto at = static_cast<std::size_t>(input);
    account.inputs.push_back(
        {input, header.channelName[at], header.channelUnits[at], static_cast<double>(header.gain[at])});
  }
  return account;
}

std::optional<RecordingAccount> AccountOfObf(const std::string& path) {
  auto file = OpenInput(path);
  if (!file) return std::nullopt;
  const ObfHeader header = ReadObfHeader(*file);
  RecordingAccount account{.kind = "OBF", .inputs = {{0, "", "", 1.0}}};
  account.intervalMs = static_cast<double>(header.intervalMs.value_or(0.0F));
  account.sweeps = std::max(1, header.numRuns.value_or(1));
  account.samples = std::max(0, header.numPoints.value_or(0));
  return account;
}

std::optional<RecordingAccount> AccountOfStimulus(const std::string& path) {
  const auto head = StimFileHeadOf(path);
  if (!head) return std::nullopt;
  RecordingAccount account{.kind = "stimulus"};
  account.intervalMs = static_cast<double>(head->intervalMs);
  account.samples = head->samples;
  for (std::size_t p = 0; p < StimFileProfiles; ++p)
    account.inputs.push_back({static_cast<int>(p), ProfileNames[p], p == 0 ? "V" : "M", 1.0});
  return account;
}

/// Splits "IN 0,IN 1" into names.
std::vector<RecordedInput> SignalsOf(const TextShape& shape) {
  std::vector<RecordedInput> signals;
  std::string_view rest = shape.signalList;
  for (int s = 1; s <= shape.signals; ++s) {
    const std::size_t comma = rest.find(',');
    signals.push_back({s, std::string(rest.substr(0, comma)), "", 1.0});
    rest.remove_prefix(comma == std::string_view::npos ? rest.size() : comma + 1);
  }
  return signals;
}

/// Reads a text; of a single column the first line is the interval.
std::optional<TextSamples> ReadTextOf(const std::string& path, int signal, int episode, TextShape& shape,
                                      std::string& why) {
  auto file = OpenInput(path);
  TextRecording text(*file);
  shape = text.Shape();
  why = text.Refusal();
  if (!why.empty()) return std::nullopt;
  TextRequest request;
  request.signal = signal;
  request.episode = episode;
  request.intervalLine = !shape.atf;
  request.most = MostSamples;
  TextSamples read = text.Read(request);
  if (read.samples.empty() || read.unequalSteps || (!shape.atf && !read.intervalMs)) {
    why = read.unequalSteps ? "the steps of time are not equal" : NoRecording;
    return std::nullopt;
  }
  return read;
}

std::optional<RecordingAccount> AccountOfText(const std::string& path, std::string& why) {
  TextShape shape;
  const auto read = ReadTextOf(path, 1, 1, shape, why);
  if (!read) return std::nullopt;
  RecordingAccount account{.kind = shape.atf ? "ATF" : "single column", .inputs = SignalsOf(shape)};
  account.intervalMs = read->intervalMs.value_or(0.0);
  account.sweeps = shape.episodes;
  account.samples = static_cast<int>(read->samples.size());
  return account;
}

std::size_t SweepOfAbf(const std::string& path, int input, int sweep, std::vector<float>& samples) {
  AbfHeader header;
  int longest = 0;
  int sweeps = 0;
  const AbfHandle file = OpenABFFile(path, header, longest, sweeps);
  if (file == nullptr) return 0;
  samples.resize(static_cast<std::size_t>(std::max(0, SweepLength(*file, sweep))));
  return static_cast<std::size_t>(ReadSweep(*file, input, sweep, 0, samples));
}

/// A run of an OBF: the samples before it are read and left out.
std::size_t SweepOfObf(const std::string& path, int points, int sweep, std::vector<float>& samples) {
  auto file = OpenInput(path);
  const auto each = static_cast<std::size_t>(points);
  const auto before = each * static_cast<std::size_t>(sweep - 1);
  std::vector<float> all(std::min(before + each, MostSamples));
  const std::size_t come = ReadObfSamples(*file, static_cast<std::int64_t>(all.size()), all);
  if (come <= before) return 0;
  samples.assign(all.begin() + static_cast<std::ptrdiff_t>(before),
                 all.begin() + static_cast<std::ptrdiff_t>(come));
  return samples.size();
}

std::size_t ProfileOf(const std::string& path, int input, std::vector<float>& samples) {
  const auto head = StimFileHeadOf(path);
  if (!head || head->samples > MaxStimPoints) return 0;
  samples.resize(static_cast<std::size_t>(head->samples));
  StimProfileSpans profiles;
  profiles[static_cast<std::size_t>(input)] = samples;
  ReadStimProfiles(path, *head, profiles);
  return samples.size();
}

}  // namespace

std::optional<RecordingAccount> AccountOf(const std::string& path, std::string& why) {
  why = NoRecording;
  if (!OpenInput(path)) {
    why = NoFile;
    return std::nullopt;
  }
  const std::string mark = MarkOf(path);
  if (mark == "ABF") return AccountOfAbf(path, why);
  if (mark == "OBF") return AccountOfObf(path);
  if (ExtensionOf(path) == ".stm") return AccountOfStimulus(path);
  return AccountOfText(path, why);
}

std::optional<std::vector<float>> SweepOf(const std::string& path, const RecordingAccount& account, int input,
                                          int sweep, std::string& why) {
  why = NoSamples;
  const auto has = [input](const RecordedInput& one) { return one.number == input; };
  if (sweep < 1 || sweep > account.sweeps || std::none_of(account.inputs.begin(), account.inputs.end(), has))
    return std::nullopt;
  std::vector<float> samples;
  std::size_t come = 0;
  if (account.kind == "ABF") come = SweepOfAbf(path, input, sweep, samples);
  if (account.kind == "OBF") come = SweepOfObf(path, account.samples, sweep, samples);
  if (account.kind == "stimulus") come = ProfileOf(path, input, samples);
  if (account.kind == "ATF" || account.kind == "single column") {
    TextShape shape;
    auto read = ReadTextOf(path, input, sweep, shape, why);
    if (read) samples = std::move(read->samples);
    come = samples.size();
  }
  samples.resize(come);
  return come > 0 ? std::optional(std::move(samples)) : std::nullopt;
}

}  // namespace zelvane
