#include "rscm/rscm_fields.h"

#include "rscm/rscm_store.h"
#include "screen/fields.h"

namespace zelvane {

void RegisterRscmFields() {
  RegisterFields({
      ScalarField("RsCmAuto", RsCm.RsCmAuto),
      ScalarField("RcRs", RsCm.RcRs),
      ScalarField("RcCm", RsCm.RcCm),
      ScalarField("RcRm", RsCm.RcRm),
      ScalarField("RcVhold", RsCm.RcVhold),
      ScalarField("RcVrev", RsCm.RcVrev),
      ScalarField("RcFracVolt", RsCm.RcFracVolt),
      ScalarField("RcFracCap", RsCm.RcFracCap),
      ScalarField("RcLagFc", RsCm.RcLagFc),
      ScalarField("RcIvCount", RsCm.RcIvCount),
      ScalarField("RcIvLoaded", RsCm.RcIvLoaded),
      ArrayField("RcIvVolt[]", RsCm.RcIvVolt, 0),
      ArrayField("RcIvCurrent[]", RsCm.RcIvCurrent, 0),
  });
}

}  // namespace zelvane
