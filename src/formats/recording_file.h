// Recordings and stimulus files of every format, with one interface: the only way to open them. Asks no
// questions, shows no messages and touches no store. Opens a file once and reads it block by block.
//
//   Opening    OpenRecordingFile  BeginsLikeRecording
//   Account    RecordingFile::Account  SweepSamples  CompleteAccount; HasInput
//   Samples    RecordingFile::SetTextReading  Load  Read; ReadExtract
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace zelvane {

enum class RecordingForm {
  Missing,  // the file cannot be opened
  Unknown,  // begins with "ABF", but is not an Axon Binary File
  Abf,
  Obf,
  Text,  // ATF, or one number per line
  Stimulus,
};

struct RecordedInput {
  int number = 0;  // physical input of an ABF, signal of a text from 1, profile of a stimulus from 0
  std::string name;
  std::string units;
  double gain = 1.0;   // total gain, as on the information panel
  float scale = 1.0F;  // user units per count of an ABF
};

/// Facts that only an ABF has.
struct AbfFacts {
  int operationMode = 0;
  bool floats = false;
  int adcResolution = 0;     // counts of full scale
  float adcRange = 0.0F;     // volts of full scale
  std::int64_t samples = 0;  // of all inputs and sweeps
};

/// Facts that only an OBF has.
struct ObfFacts {
  int runs = 0;  // in the header; 0 without a valid number
};

/// Facts that only a text has. Load sets the last three.
struct TextFacts {
  bool atf = false;
  int columns = 1;
  std::string signalList{};   // names of the signals as the file lists them
  bool unequalSteps = false;  // Load has failed for this reason, but has read the first three samples
  std::size_t badLine = 0;    // line that is not a row of numbers and ended the read; 0 without such a line
  bool truncated = false;     // the text has more samples than TextReading::most
};

/// Facts that only a stimulus file has.
struct StimulusFacts {
  float intervalMs = 0.0F;  // as in the file: perhaps infinite, 0 or below 0
  int lastHeld = 0;         // samples of the last profile that are really in the file
};

struct RecordingAccount {
  std::string kind;      // "ABF", "OBF", "ATF", "single column", "stimulus"
  double version = 0.0;  // of an ABF
  std::vector<RecordedInput> inputs{};
  double intervalMs = 0.0;  // 0 for a file without an interval
  int sweeps = 1;
  int samples = 0;     // of one input in the longest sweep
  std::string note{};  // a warning about the file; mostly empty
  AbfFacts abf{};
  ObfFacts obf{};
  TextFacts text{};
  StimulusFacts stimulus{};
};

/// Returns whether the file has an input with this number.
bool HasInput(const RecordingAccount& account, int number);

/// How to read a text. An ATF uses only `most`.
struct TextReading {
  bool intervalLine = false;  // the first line of a column of numbers is its interval
  float scale = 1.0F;         // factor of every sample
  std::size_t most = std::numeric_limits<std::size_t>::max();  // most samples of a sweep
};

/// Gets the progress of a read, 0 to 1. False stops it.
using GoOn = std::function<bool(double)>;

class RecordingFile {
 public:
  RecordingFile() = default;
  RecordingFile(const RecordingFile&) = delete;
  RecordingFile& operator=(const RecordingFile&) = delete;
  virtual ~RecordingFile() = default;

  /// Returns what is known before a sample is read. Interval, samples and note of a text are known only after
  /// CompleteAccount or Load.
  const RecordingAccount& Account() const { return account_; }

  /// Returns the number of samples of one input in a sweep, from 1; 0 for a sweep that does not exist. For a
  /// text this is the number that Load has read.
  virtual int SweepSamples(int sweep) const;

  /// Completes the account of a text: reads its first sweep of the first signal. Does nothing for other files.
  /// On failure returns false and writes the reason to `why`.
  /// @param typedIntervalMs  of a text that does not tell its interval; the first line of a column is a sample
  ///                         then. Without it, the first line is the interval if it can be one
  virtual bool CompleteAccount(std::optional<double> /*typedIntervalMs*/, std::string& /*why*/) {
    return true;
  }

  /// Sets how Load reads a text. Does nothing for other files.
  virtual void SetTextReading(const TextReading& /*reading*/) {}

  /// Prepares sweeps first..last of one input for Read; a text is read here. On failure returns false and
  /// writes the reason to `why`.
  virtual bool Load(int input, int first, int last, std::string& why) = 0;

  /// Reads samples of a loaded sweep from `at` on. Returns their number; fewer than asked at the end of the
  /// sweep, or of the file for an OBF, whose sweeps follow each other.
  virtual std::size_t Read(int input, int sweep, std::int64_t at, std::span<float> samples) = 0;

 protected:
  RecordingAccount account_;
};

/// The result of opening a file.
struct OpenedRecording {
  std::unique_ptr<RecordingFile> file;          // nullptr on failure
  RecordingForm form = RecordingForm::Missing;  // also for a file that is not a recording
  std::string why{};                            // the reason of a failure
};

/// Which form a caller expects.
enum class OpenAs {
  AnyFile,    // by its first bytes, a stimulus by the extension .stm, else text
  Recording,  // by its first bytes, else text
  Text,
  Stimulus,
};

/// Opens a file and reads what comes before its samples. The file stays open as long as the result lives.
OpenedRecording OpenRecordingFile(const std::string& path, OpenAs as = OpenAs::AnyFile);

/// Returns whether the file begins with the mark of a recording: "ABF", "OBF" or "ATF".
bool BeginsLikeRecording(const std::string& path);

/// The samples to read.
struct SweepExtract {
  int input = 0;
  int first = 1;  // sweeps
  int last = 1;
  std::int64_t start = 0;                // first sample in each sweep
  std::optional<std::int64_t> length{};  // most samples in each sweep
  int every = 1;                         // keep every n-th sample
};

/// Reads the samples, sweep after sweep. Samples that a stimulus file lacks are 0. When a sweep has no such samples, returns an empty result and
/// writes the reason to `why`. When `goOn` stops it, returns an empty result and an empty `why`.
std::optional<std::vector<std::vector<float>>> ReadExtract(RecordingFile& file, const SweepExtract& wanted,
                                                           const GoOn& goOn, std::string& why);

}  // namespace zelvane
