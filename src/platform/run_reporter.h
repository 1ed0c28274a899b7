// How a long work speaks: messages, questions, progress, and the wish to stop it.
//
// Whoever starts the work makes the reporter. Every function may be missing, and an empty reporter is silent:
// a fit that runs a model thousands of times passes one.
#pragma once

#include <functional>
#include <string_view>

namespace zelvane {

/// Called at about 20 moments of a run with the part that is done; true stops the run. May be empty.
using RunHook = std::function<bool(double fraction)>;

/// Called within long stretches, so that a window can repaint and a stop take hold; gets the part that is
/// done, true stops the run. What a run computes does not depend on it. May be empty.
using BreathHook = std::function<bool(double fraction)>;

struct RunReporter {
  /// Shows a message and waits until the user has seen it.
  std::function<void(std::string_view title, std::string_view text)> message{};
  /// Asks a question; true = yes.
  std::function<bool(std::string_view title, std::string_view text)> question{};
  /// Shows which part is done, from 0 to 1, with a text beside it.
  std::function<void(double fraction, std::string_view text)> progress{};
  /// Lets user events that wait run and returns whether the user wants to stop.
  std::function<bool()> stopAsked{};
  BreathHook breathe{};
};

/// Returns whether nobody would see a message.
inline bool IsSilent(const RunReporter& reporter) {
  return !reporter.message;
}

inline void Tell(const RunReporter& reporter, std::string_view title, std::string_view text) {
  if (reporter.message) reporter.message(title, text);
}

/// Asks whether to go on. A silent reporter goes on.
inline bool Agrees(const RunReporter& reporter, std::string_view title, std::string_view text) {
  return !reporter.question || reporter.question(title, text);
}

/// Returns a hook that shows progress and then asks for a stop; an empty one when the reporter does neither.
inline RunHook ProgressHook(const RunReporter& reporter) {
  if (!reporter.progress && !reporter.stopAsked) return {};
  return [&reporter](double fraction) {
    if (reporter.progress) reporter.progress(fraction, {});
    return reporter.stopAsked && reporter.stopAsked();
  };
}

}  // namespace zelvane
