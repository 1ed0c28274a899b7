// Recordings and stimulus files of every format, with one interface: the only way to open them. Asks no
// questions. Opens a file once and reads it block by block.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace zelvane {

struct RecordedInput {
  int number = 0;  // physical input of an ABF, signal of a text from 1, profile of a stimulus from 0
  std::string name;
  std::string units;
  double gain = 1.0;  // total gain, as on the information panel
};

struct RecordingAccount {
  std::string kind;      // "ABF", "OBF", "ATF", "single column", "stimulus"
  double version = 0.0;  // of an ABF
  std::vector<RecordedInput> inputs{};
  double intervalMs = 0.0;  // 0 for a file without an interval
  int sweeps = 1;
  int samples = 0;             // of one input in the longest sweep
  std::vector<int> lengths{};  // samples of each sweep, where they differ
  std::string note{};          // a warning about the file; mostly empty
};

/// Gets the progress of a read, 0 to 1. False stops it.
using GoOn = std::function<bool(double)>;

class RecordingFile {
 public:
  RecordingFile() = default;
  RecordingFile(const RecordingFile&) = delete;
  RecordingFile& operator=(const RecordingFile&) = delete;
  virtual ~RecordingFile() = default;

  const RecordingAccount& Account() const { return account_; }

  /// Prepares sweeps first..last of one input for Read. On failure returns false and writes the reason to
  /// `why`.
  virtual bool Load(int input, int first, int last, std::string& why) = 0;

  /// Reads samples of a loaded sweep from `at` on. Returns their number; fewer than asked at the end of the
  /// sweep.
  virtual std::size_t Read(int input, int sweep, std::int64_t at, std::span<float> samples) = 0;

 protected:
  RecordingAccount account_;
};

/// Opens a recording or a stimulus file. On failure returns nullptr and writes the reason to `why`.
/// @param typedIntervalMs  of a text that does not tell its interval; the first line of a single column is a
///                         sample then
std::unique_ptr<RecordingFile> OpenRecordingFile(const std::string& path, std::string& why,
                                                 std::optional<double> typedIntervalMs = {});

/// The samples to read.
struct SweepExtract {
  int input = 0;
  int first = 1;  // sweeps
  int last = 1;
  std::int64_t start = 0;                // first sample in each sweep
  std::optional<std::int64_t> length{};  // most samples in each sweep
  int every = 1;                         // keep every n-th sample
};

/// Reads the samples, sweep after sweep. When a sweep has no such samples, returns an empty result and
/// writes the reason to `why`. When `goOn` stops it, returns an empty result and an empty `why`.
std::optional<std::vector<std::vector<float>>> ReadExtract(RecordingFile& file, const SweepExtract& wanted,
                                                           const GoOn& goOn, std::string& why);

}  // namespace zelvane
