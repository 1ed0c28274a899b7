#include "run/result_fields.h"

#include "run/result_store.h"
#include "screen/fields.h"
#include "screen/popups_store.h"

namespace zelvane {

void RegisterResultFields() {
  const std::span<float> row0 = Result.Occupancy[0];
  const std::ptrdiff_t rowStep =
      (Result.Occupancy[1].data() - row0.data()) * static_cast<std::ptrdiff_t>(sizeof(float));
  Field occupancy{"Occupancy[][]",
                  FieldType::Float,
                  reinterpret_cast<std::byte*>(row0.data()),
                  2,
                  {{{1, MaxStates, rowStep}, {0, OccupancyPoints - 1, sizeof(float)}}},
                  0};
  RegisterResults({
      occupancy,
      SpanField("SavedTime[]", Result.SavedTime, "ms"),
      ScalarField("ResultKind", Result.ResultKind),
      ScalarField("KeptSteps", Result.KeptSteps),
      ScalarField("IntegrationOffset", Result.IntegrationOffset),
      ScalarField("ReductionCount", Result.ReductionCount),
      ScalarField("EffectiveChannels", Result.EffectiveChannels),
      ArrayField("StateClass[]", Result.StateClass),
      ArrayField("EquilibriumOccupancy[]", Result.EquilibriumOccupancy),
      ScalarField("ResultsFileName", Result.ResultsFileName),
  });
  RegisterWorkingFields({
      ScalarField("StopRequested", Requests.StopRequested),
  });
}

}  // namespace zelvane
