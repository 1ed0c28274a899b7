#include "noise/noise_fields.h"

#include "noise/noise_fit_store.h"
#include "parameters/parameters_fields.h"

namespace zelvane {

void RegisterNoiseFields() {
  RegisterLimits(SavedSetting, "VarFitLimits", NoiseFit.VarFitLimits);
  RegisterLimits(SavedSetting, "SublevelFitLimits", NoiseFit.SublevelFitLimits);
  RegisterLimits(SavedSetting, "SpecFitLimits", NoiseFit.SpecFitLimits);
}

}  // namespace zelvane
