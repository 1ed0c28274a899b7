// The way from a long work to the user: messages, questions, progress, and the wish to stop.
//
// The caller of the work makes the reporter. Every function may be missing, and an empty reporter is silent:
// a fit that runs a model thousands of times passes an empty one.
#pragma once

#include <functional>
#include <string_view>

#include "platform/message_title.h"

namespace zelvane {

/// Called about 20 times during a run with the fraction done. True stops the run. May be empty.
using RunHook = std::function<bool(double fraction)>;

/// Called during long work with the fraction done, so that a window can repaint and the user can stop. True
/// stops the run. Does not influence the results. May be empty.
using BreathHook = std::function<bool(double fraction)>;

struct RunReporter {
  /// Shows a message and waits until the user has seen it.
  std::function<void(MessageTitle title, std::string_view text)> message{};
  /// Asks a question; true = yes.
  std::function<bool(std::string_view title, std::string_view text)> question{};
  /// Shows the fraction done, from 0 to 1, with a text beside it. Below 0 clears it.
  std::function<void(double fraction, std::string_view text)> progress{};
  /// Handles waiting user events and returns whether the user wants to stop.
  std::function<bool()> stopAsked{};
  BreathHook breathe{};
  /// Ends the work: clears the progress and forgets the wish to stop.
  std::function<void()> finish{};
};

/// Returns whether nobody would see a message.
inline bool IsSilent(const RunReporter& reporter) {
  return !reporter.message;
}

inline void Tell(const RunReporter& reporter, MessageTitle title, std::string_view text) {
  if (reporter.message) reporter.message(title, text);
}

/// Asks whether to continue. A silent reporter continues.
inline bool Agrees(const RunReporter& reporter, std::string_view title, std::string_view text) {
  return !reporter.question || reporter.question(title, text);
}

/// Clears the progress.
inline void ClearProgress(const RunReporter& reporter) {
  if (reporter.progress) reporter.progress(-1.0, {});
}

inline void Finish(const RunReporter& reporter) {
  if (reporter.finish) reporter.finish();
}

/// Returns a hook that shows progress and then asks for a stop; empty when the reporter has neither function.
inline RunHook ProgressHook(const RunReporter& reporter) {
  if (!reporter.progress && !reporter.stopAsked) return {};
  return [&reporter](double fraction) {
    if (reporter.progress) reporter.progress(fraction, {});
    return reporter.stopAsked && reporter.stopAsked();
  };
}

}  // namespace zelvane
