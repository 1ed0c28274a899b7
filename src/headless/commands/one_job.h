// What commands that do one job in one line have in common: no panel to look at, messages on standard error,
// exit status 0 when the job is done, 1 when it failed, 2 when it was asked for wrongly.
#pragma once

#include <array>
#include <atomic>
#include <iosfwd>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/safe_file.h"
#include "screen/front_end.h"

namespace zelvane {

inline constexpr int JobDone = 0;
inline constexpr int JobFailed = 1;
inline constexpr int JobMisused = 2;

/// Where a job writes, and what can stop it.
struct JobStreams {
  std::ostream& out;
  std::ostream& err;
  const std::atomic<bool>* stop = nullptr;  // true = the user asks the run to stop, as the stop button does
  bool progressBar = false;                 // `err` is a terminal
};

/// Standard output and error, with a progress bar where a user sees it.
JobStreams StandardStreams(const std::atomic<bool>& stop);

using Seeds = std::array<double, 3>;

/// Whether the user has asked the job to stop.
bool StopAsked(const JobStreams& streams);

/// Tells that a file was not written, since the user stopped the job or since it cannot be.
void TellUnwritten(const std::string& path, const JobStreams& streams);

/// Shows popups on `streams.err` while it lives: a question is answered no, a dialog cancelled. A stop ends
/// runs and the writing of files.
class JobScreen {
 public:
  explicit JobScreen(const JobStreams& streams);
  ~JobScreen();
  JobScreen(const JobScreen&) = delete;
  JobScreen& operator=(const JobScreen&) = delete;

  /// Whether a message has been shown whose title tells of an error, or that a run was broken off.
  bool ErrorShown() const { return errorShown_; }

  /// Text of the last message; empty when there was none.
  const std::string& LastText() const { return lastText_; }

 private:
  void Message(std::string_view title, std::string_view text);
  void Progress(double fraction, std::string_view text);
  void ClearBar();

  const JobStreams& streams_;
  FrontEnd former_;
  WriteStop formerStop_;
  std::string lastText_;
  bool errorShown_ = false;
  bool barShown_ = false;
};

/// Brings stores and panels to their start-up state. "config.mod" is not read: a job brings its own model.
/// Without seeds the clock gives them.
void StartJob(const std::optional<Seeds>& seeds);

/// Reads a model file into the stores. False, told on `streams.err` with the file's name, when it cannot be
/// opened or is no model.
bool ReadJobModel(const std::string& path, const JobStreams& streams);

/// "1,2,3" as three seeds of the generators: whole numbers from 0 to 2147483647. Nothing when they are not,
/// or when the generator would stand still on them.
std::optional<Seeds> ParseSeeds(std::string_view text);

/// The label of a state, or its number where it has none.
std::string StateName(int state, const std::string& label);

}  // namespace zelvane
