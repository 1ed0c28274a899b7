// Simulated dose-response curves: one run of the model for each dose.
//
//   SimulateDoses  PulseOf  WindowOfPulse
#pragma once

#include <functional>
#include <span>

#include "platform/outcome.h"

namespace zelvane {

/// The samples from the first to the last one above half of the largest sample of a profile.
struct PulseSpan {
  int first = 0;
  int last = 0;
  float largest = 0.0F;  // M; 0 = the profile is empty
};

/// Returns the pulse of the drug `drug` (1 to 6) within the run.
PulseSpan PulseOf(int drug);

/// Sets baseline, peak search and integral for the responses to a pulse: the baseline ends before it, the search lasts
/// from its begin to the end of the run. Does nothing when the search of the settings meets the pulse.
/// @return whether the settings were changed
bool WindowOfPulse(const PulseSpan& pulse);

/// Runs the model once for each concentration (M), with the profile of the drug scaled so that its largest sample is the
/// concentration, and measures the response. The profile then returns.
///
/// @param measure   DosePeak, DoseSteady or DoseArea
/// @param response  as long as `concentrations`; those after a stop keep their values
/// @param afterRun  called with the number of the dose, from 0; may be empty
/// @return Done; Stopped; Refused, after a message, when the profile is empty or the run is refused; or Failed
Outcome SimulateDoses(std::span<const float> concentrations, int drug, int measure, std::span<float> response,
                      const std::function<void(int)>& afterRun = {});

}  // namespace zelvane
