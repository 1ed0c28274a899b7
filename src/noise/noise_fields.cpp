#include "noise/noise_fields.h"

#include "noise/noise_fit_store.h"
#include "parameters/fit_modes.h"
#include "parameters/parameters_fields.h"

namespace zelvane {

void RegisterNoiseFields() {
  RegisterLimits(SavedSetting, "VarFitLimits", NoiseFit.VarFitLimits);
  RegisterLimits(SavedSetting, "SublevelFitLimits", NoiseFit.SublevelFitLimits);
  RegisterLimits(SavedSetting, "SpecFitLimits", NoiseFit.SpecFitLimits);
  RegisterFitMode(
      {.mode = FitSublevels,
       .labels = {"Popen1", "Popen2", "Popen3", "Popentot", "Conduct1", "Conduct2", "Conduct3", "#Channels"},
       .limits = "SublevelFitLimits",
       .limitTable = &NoiseFit.SublevelFitLimits,
       .unusedRow = 4});
  RegisterFitMode({.mode = FitCurrentVariance,
                   .labels = {"Current", "#Channels", "Baseline"},
                   .limits = "VarFitLimits",
                   .limitTable = &NoiseFit.VarFitLimits,
                   .keepsCopy = false});
  RegisterFitMode({.mode = FitSpectrum,
                   .labels = {"Fc1", "Gzero1", "Fc2", "Gzero2"},
                   .limits = "SpecFitLimits",
                   .limitTable = &NoiseFit.SpecFitLimits,
                   .keepsCopy = false});
}

}  // namespace zelvane
