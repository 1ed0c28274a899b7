// Recordings of commands: opened once, read one sweep at a time into the trace.
#pragma once

#include <iosfwd>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "formats/recording_file.h"
#include "screen/popups.h"

namespace zelvane {

/// A range of sweeps, from 1. Includes both ends.
struct SweepRange {
  int first = 1;
  int last = 0;  // 0 = the last sweep of the file
};

/// What a command reads.
struct RecordingChoice {
  std::string file;                    // ABF, or text
  std::optional<int> channel{};        // physical input of an ABF file, number of the signal of a text
  std::optional<double> intervalMs{};  // for a text without an interval
};

/// The recording to measure, one sweep at a time, in `Trace.SimTrace`.
struct Recording {
  std::unique_ptr<RecordingFile> abf;        // nullptr = a text
  std::vector<std::vector<float>> episodes;  // of a text with several episodes, read in one pass
  int channel = 0;
  int sweeps = 1;
  std::string units;
};

/// Reads "3-10" or "3". Returns an empty result for any other text, and when the second number is smaller.
std::optional<SweepRange> ParseSweeps(std::string_view text);

/// Opens a recording and writes its facts to the stores. Writes the reason of a failure to `err`.
/// @return JobDone, JobFailed, or JobMisused when it has no such channel
int OpenRecording(const RecordingChoice& choice, Recording& recording, std::ostream& err);

/// Reads a sweep into the trace. Returns false when the file does not hold the sweep.
bool ReadSweepOf(const Recording& recording, int sweep);

/// Shows each message and each note once, although many sweeps may cause it.
class OnceScreen {
 public:
  OnceScreen() {
    former_ = SetFrontEnd({});
    FrontEnd own = former_;
    own.message = [this](MessageTitle title, std::string_view text) {
      if (told_.emplace(text).second && former_.message) former_.message(title, text);
    };
    own.note = [this](std::string_view sentence) {
      if (told_.emplace(sentence).second && former_.note) former_.note(sentence);
    };
    SetFrontEnd(std::move(own));
  }
  ~OnceScreen() { SetFrontEnd(std::move(former_)); }
  OnceScreen(const OnceScreen&) = delete;
  OnceScreen& operator=(const OnceScreen&) = delete;

 private:
  FrontEnd former_;
  std::set<std::string> told_;
};

}  // namespace zelvane
