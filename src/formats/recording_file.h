// Recordings and stimulus files of every format, behind one interface: the one way to open them. Nothing is
// asked; a file is opened once and read block by block.
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
  double gain = 1.0;  // the overall one, as the information panel tells it
};

struct RecordingAccount {
  std::string kind;      // "ABF", "OBF", "ATF", "single column", "stimulus"
  double version = 0.0;  // of an ABF
  std::vector<RecordedInput> inputs{};
  double intervalMs = 0.0;  // 0 where the file does not tell it
  int sweeps = 1;
  int samples = 0;             // of one input in the longest sweep
  std::vector<int> lengths{};  // samples of each sweep, where they differ
  std::string note{};          // what a user should know of the file; mostly nothing
};

/// Told how far a reading has come, 0 to 1; false gives it up.
using GoOn = std::function<bool(double)>;

class RecordingFile {
 public:
  RecordingFile() = default;
  RecordingFile(const RecordingFile&) = delete;
  RecordingFile& operator=(const RecordingFile&) = delete;
  virtual ~RecordingFile() = default;

  const RecordingAccount& Account() const { return account_; }

  /// Makes sweeps first..last of one input ready for Read. False, with the reason in `why`, when it cannot.
  virtual bool Load(int input, int first, int last, std::string& why) = 0;

  /// Reads samples of a loaded sweep from `at` on; the number that came, fewer than asked at its end.
  virtual std::size_t Read(int input, int sweep, std::int64_t at, std::span<float> samples) = 0;

 protected:
  RecordingAccount account_;
};

/// Opens a recording or stimulus file. Nothing, with the reason in `why`, when it is none.
/// @param typedIntervalMs  of a text that does not tell its interval; the first line of a single column is a
///                         sample then
std::unique_ptr<RecordingFile> OpenRecordingFile(const std::string& path, std::string& why,
                                                 std::optional<double> typedIntervalMs = {});

/// Which samples are wanted.
struct SweepExtract {
  int input = 0;
  int first = 1;  // sweeps
  int last = 1;
  std::int64_t start = 0;                // sample of each sweep to begin with
  std::optional<std::int64_t> length{};  // samples of it at most
  int every = 1;                         // keep every n-th of them
};

/// The samples, sweep after sweep. Nothing, with the reason in `why`, when one of the sweeps has none or
/// `goOn` gave up; `why` is empty then.
std::optional<std::vector<std::vector<float>>> ReadExtract(RecordingFile& file, const SweepExtract& wanted,
                                                           const GoOn& goOn, std::string& why);

}  // namespace zelvane
