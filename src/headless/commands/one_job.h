// The common part of the commands that do one job in one line. They have no panels and write messages to
// standard error. The exit status is 0 after success, 1 after a failure, 2 for wrong usage.
#pragma once

#include <array>
#include <atomic>
#include <iosfwd>
#include <optional>
#include <string>
#include <string_view>

#include "platform/outcome.h"
#include "platform/safe_file.h"
#include "screen/front_end.h"

namespace zelvane {

inline constexpr int JobDone = 0;
inline constexpr int JobFailed = 1;
inline constexpr int JobMisused = 2;

/// The output streams of a job, and its stop flag.
struct JobStreams {
  std::ostream& out;
  std::ostream& err;
  const std::atomic<bool>* stop = nullptr;  // true = the user stops the run, as with the stop button
  std::ostream* bar = nullptr;              // the terminal of a progress bar; nullptr = there is no bar
};

/// Returns standard output and error. On a terminal they show control characters escaped, and a progress bar is
/// drawn.
JobStreams StandardStreams(const std::atomic<bool>& stop);

using Seeds = std::array<double, 3>;

/// Returns whether the user has stopped the job.
bool StopAsked(const JobStreams& streams);

/// Writes a message that the file was not written, because of a stop or a failure.
void TellUnwritten(const std::string& path, const JobStreams& streams);

/// Writes popups and notes to `streams.err` during its lifetime. Answers questions with no and cancels dialogs. A
/// stop ends runs and writers.
class JobScreen {
 public:
  explicit JobScreen(const JobStreams& streams);
  ~JobScreen();
  JobScreen(const JobScreen&) = delete;
  JobScreen& operator=(const JobScreen&) = delete;

 private:
  void Message(std::string_view title, std::string_view text);
  void Progress(double fraction, std::string_view text);
  void ClearBar();

  const JobStreams& streams_;
  FrontEnd former_;
  WriteStop formerStop_;
  bool barShown_ = false;
};

/// Resets stores and panels to their state at the start. Does not read "config.mod", because a job has its
/// own model. Without seeds takes them from the clock.
void StartJob(const std::optional<Seeds>& seeds);

/// Reads a model file into the stores. When the file cannot be opened or is not a model, writes a message
/// with its name to `streams.err` and returns Refused. As ModelFileReadNamed, returns Failed, after a message,
/// when the stimulus of the model is not available.
/// @param faulty  as for ModelFileReadNamed
Outcome ReadJobModel(const std::string& path, const JobStreams& streams, bool* faulty = nullptr);

/// Reads "1,2,3" as three seeds of the generators: whole numbers from 0 to 2147483647. Returns an empty
/// result for any other text, and for seeds with which the generator would repeat one value.
std::optional<Seeds> ParseSeeds(std::string_view text);

/// Returns the label of a state, or its number when the label is empty.
std::string StateName(int state, const std::string& label);

}  // namespace zelvane
