// How a long stretch without events lets a window live.
#pragma once

#include <chrono>

#include "kinetics/fixed_step.h"
#include "model/model_store.h"
#include "run/result_store.h"
#include "screen/popups.h"

namespace zelvane {

inline constexpr std::chrono::milliseconds BreathInterval{20};

/// Lets a window handle events between two reports of progress, about 40 times per second, and returns
/// whether stop was pressed. Empty during a fit.
inline BreathHook WindowBreath() {
  if (Model.FitActive != 0) return {};
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

}  // namespace zelvane
