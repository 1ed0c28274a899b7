#include "analysis/dose_fields.h"

#include "analysis/dose_store.h"
#include "parameters/fit_modes.h"
#include "parameters/parameters_fields.h"

namespace zelvane {

void RegisterDoseFields() {
  RegisterLimits(UnsavedSetting, "DoseFitLimits", Dose.DoseFitLimits);
  RegisterFitMode({.mode = FitDoseResponse,
                   .labels = {"EC50", "Slope", "Max", "Min"},
                   .limits = "DoseFitLimits",
                   .limitTable = &Dose.DoseFitLimits,
                   .takesSeeds = false});
  RegisterSettings({
      ArrayField("DoseConc[]", Dose.DoseConc, "M", 0),
      ArrayField("DoseResponse[]", Dose.DoseResponse, {}, 0),
      ScalarField("DoseEC50", Dose.DoseEC50, "M"),
      ScalarField("DoseSlope", Dose.DoseSlope),
      ScalarField("DoseMax", Dose.DoseMax),
      ScalarField("DoseMin", Dose.DoseMin),
      ScalarField("DoseDrug", Dose.DoseDrug),
      ScalarField("DoseMeasure", Dose.DoseMeasure),
      ScalarField("DoseLogAxis", Dose.DoseLogAxis),
  });
  RegisterResults({
      ScalarField("DoseCount", Dose.DoseCount),
      ScalarField("DoseResidual", Dose.DoseResidual),
      ScalarField("DoseEvals", Dose.DoseEvals),
      ArrayField("DoseCurve[]", Dose.DoseCurve, {}, 0),
      ArrayField("DoseError[]", Dose.DoseError),
      ScalarField("TemplateCount", Dose.TemplateCount),
      ArrayField("LastDoseConc[]", Dose.LastDoseConc, "M", 0),
      ArrayField("LastDoseResponse[]", Dose.LastDoseResponse, {}, 0),
      ScalarField("LastDoseCount", Dose.LastDoseCount),
  });
}

}  // namespace zelvane
