#include "rscm/rscm_fields.h"

#include "rscm/rscm_store.h"
#include "screen/fields.h"

namespace zelvane {

void RegisterRscmFields() {
  RegisterSavedSettings({
      ScalarField("RsCmAuto", RsCm.RsCmAuto),
  });
  RegisterSettings({
      ScalarField("RcRs", RsCm.RcRs, "ohm"),
      ScalarField("RcCm", RsCm.RcCm, "F"),
      ScalarField("RcRm", RsCm.RcRm, "ohm"),
      ScalarField("RcVhold", RsCm.RcVhold, "V"),
      ScalarField("RcVrev", RsCm.RcVrev, "V"),
      ScalarField("RcFracVolt", RsCm.RcFracVolt),
      ScalarField("RcFracCap", RsCm.RcFracCap),
      ScalarField("RcLagFc", RsCm.RcLagFc, "Hz"),
      ScalarField("RcIvCount", RsCm.RcIvCount),
      ScalarField("RcIvLoaded", RsCm.RcIvLoaded),
      ArrayField("RcIvVolt[]", RsCm.RcIvVolt, "V", 0),
      ArrayField("RcIvCurrent[]", RsCm.RcIvCurrent, "", 0),
  });
}

}  // namespace zelvane
