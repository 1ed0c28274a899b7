#include "screen/window_reporter.h"

#include <chrono>

#include "screen/popups.h"

namespace zelvane {
namespace {

constexpr std::chrono::milliseconds BreathInterval{20};

BreathHook WindowBreath() {
  using Clock = std::chrono::steady_clock;
  return [last = Clock::now()](double fraction) mutable {
    const Clock::time_point now = Clock::now();
    if (now - last >= BreathInterval) {
      Breathe(fraction);
      last = Clock::now();
    }
    return StopAsked();
  };
}

}  // namespace

RunReporter WindowReporter() {
  RunReporter reporter;
  reporter.message = MessagePopup;
  reporter.question = [](std::string_view title, std::string_view text) { return ConfirmPopup(title, text); };
  reporter.progress = ShowProgress;
  reporter.stopAsked = [] {
    ProcessSystemEvents();
    return StopAsked();
  };
  reporter.breathe = WindowBreath();
  reporter.finish = [] {
    ResetProgress();
    ForgetStop();
  };
  return reporter;
}

}  // namespace zelvane
