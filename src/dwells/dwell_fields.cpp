#include "dwells/dwell_fields.h"

#include "dwells/dwell_fit_store.h"
#include "dwells/dwell_store.h"
#include "parameters/fit_modes.h"
#include "parameters/parameters_fields.h"
#include "screen/fields.h"

namespace zelvane {
namespace {

/// Describes the class lists, which follow one another in memory at equal distances.
Field ClassLists() {
  const std::span<float> list = Dwell.ClassOpenTimes[1];
  const std::ptrdiff_t step =
      (Dwell.ClassOpenTimes[2].data() - list.data()) * static_cast<std::ptrdiff_t>(sizeof(float));
  return {"ClassOpenTimes[][]",
          FieldType::Float,
          reinterpret_cast<std::byte*>(list.data()) - step,
          2,
          {{{1, MaxAmplitudeClasses, step}, {0, MaxDwells - 1, sizeof(float)}}},
          0};
}

}  // namespace

void RegisterDwellFields() {
  RegisterLimits(SavedSetting, "DwellFitLimits", DwellFit.DwellFitLimits);
  RegisterFitMode({.mode = FitDwells,
                   .labels = {"Tau1", "Area1", "Tau2", "Area2", "Tau3", "Area3", "Tau4", "Area4", "Tau5",
                              "Area5", "Tau6"},
                   .limits = "DwellFitLimits",
                   .limitTable = &DwellFit.DwellFitLimits});
  RegisterSavedSettings({
      ScalarField("ScTolerance", DwellFit.ScTolerance),
  });
  RegisterSettings({
      ScalarField("ResolutionOpen", Dwell.ResolutionOpen, "ms"),
      ScalarField("ResolutionClosed", Dwell.ResolutionClosed, "ms"),
      ScalarField("CondClosedMin", Dwell.CondClosedMin, "ms"),
      ScalarField("CondClosedMax", Dwell.CondClosedMax, "ms"),
      ScalarField("CondOpenResolution", Dwell.CondOpenResolution, "ms"),
      ScalarField("CondUsePreceding", Dwell.CondUsePreceding),
      ScalarField("ChoiceOpen", Dwell.ChoiceOpen),
      ScalarField("ChoiceClosed", Dwell.ChoiceClosed),
      ScalarField("ListReplace", Dwell.ListReplace),
  });
  RegisterResults({
      SpanField("OpenTimes[]", Dwell.OpenTimes, "ms"),
      SpanField("ClosedTimes[]", Dwell.ClosedTimes, "ms"),
      SpanField("RawOpenTimes[]", Dwell.RawOpenTimes, "ms"),
      SpanField("Latencies[]", Dwell.Latencies, "ms"),
      SpanField("IdealDuration[]", Dwell.IdealDuration, "ms"),
      SpanField("IdealClass[]", Dwell.IdealClass),
      SpanField("IdealAmplitude[]", Dwell.IdealAmplitude),
      ClassLists(),
      ArrayField("NumClassOpenTimes[]", Dwell.NumClassOpenTimes),
      ScalarField("NumOpenTimes", Dwell.NumOpenTimes),
      ScalarField("NumClosedTimes", Dwell.NumClosedTimes),
      ScalarField("NumRawOpenTimes", Dwell.NumRawOpenTimes),
      ScalarField("NumLatencies", Dwell.NumLatencies),
      ScalarField("NumIdealEvents", Dwell.NumIdealEvents),
      ScalarField("OpenStateExits", Dwell.OpenStateExits),
      ScalarField("MonitoredChannels", Dwell.MonitoredChannels),
      ScalarField("OpenListSelector", Dwell.OpenListSelector),
  });
  RegisterWorkingFields({
      ScalarField("SegmentCounter", Dwell.SegmentCounter),
      ScalarField("LastDwellKind", Dwell.LastDwellKind),
  });
}

}  // namespace zelvane
