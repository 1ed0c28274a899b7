#include "stimulus/gaussian_filter.h"

#include "model/model_store.h"
#include "numerics/gaussian_kernel.h"
#include "screen/popups.h"

namespace zelvane {
namespace {

constexpr char Aliasing[] = "Aliasing in data record at selecting filter frequency.";
constexpr char TooHeavy[] = "Requested filtering is too heavy; too many points to filter.";
constexpr char TooLight[] = "Requested filtering is too light; too few points to filter.";

void Warn(const char* text) {
  if (Model.FitActive == 0) MessagePopup(WarningTitle, text);
}

}  // namespace

void GaussianFilter(std::span<float> trace, float fc) {
  if (!(fc > 0.0F) || !(Model.ADInterval > 0.0F)) return;
  const float corner = fc / (1.0F / Model.ADInterval);
  switch (GaussianLowPass(trace, corner, Model.RecordPoints)) {
    case LowPassOutcome::Aliased:
      Warn(Aliasing);
      break;
    case LowPassOutcome::TooHeavy:
      Warn(TooHeavy);
      break;
    case LowPassOutcome::TooLight:
      Warn(TooLight);
      break;
    default:
      break;
  }
}

}  // namespace zelvane
