#include "stimulus/gaussian_filter.h"

#include "model/model_store.h"
#include "numerics/gaussian_kernel.h"
#include "screen/popups.h"

namespace zelvane {
namespace {

constexpr char Aliasing[] = "Aliasing in data record at selecting filter frequency.";
constexpr char TooHeavy[] = "Requested filtering is too heavy; too many points to filter.";
constexpr char TooLight[] = "Requested filtering is too light; too few points to filter.";

}  // namespace

void GaussianFilter(std::span<float> trace, float fc, const RunReporter& reporter) {
  if (!(fc > 0.0F) || !(Model.ADInterval > 0.0F)) return;
  const float corner = fc / (1.0F / Model.ADInterval);
  switch (GaussianLowPass(trace, corner, Model.RecordPoints)) {
    case LowPassOutcome::Aliased:
      Tell(reporter, WarningTitle, Aliasing);
      break;
    case LowPassOutcome::TooHeavy:
      Tell(reporter, WarningTitle, TooHeavy);
      break;
    case LowPassOutcome::TooLight:
      Tell(reporter, WarningTitle, TooLight);
      break;
    default:
      break;
  }
}

}  // namespace zelvane
