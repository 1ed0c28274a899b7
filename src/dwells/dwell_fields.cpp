#include "dwells/dwell_fields.h"

#include "dwells/dwell_fit_store.h"
#include "dwells/dwell_store.h"
#include "screen/fields.h"

namespace zelvane {
namespace {

/// The class lists lie one behind the other.
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
  RegisterFields({
      SpanField("OpenTimes[]", Dwell.OpenTimes),
      SpanField("ClosedTimes[]", Dwell.ClosedTimes),
      SpanField("RawOpenTimes[]", Dwell.RawOpenTimes),
      SpanField("Latencies[]", Dwell.Latencies),
      SpanField("IdealDuration[]", Dwell.IdealDuration),
      SpanField("IdealClass[]", Dwell.IdealClass),
      SpanField("IdealAmplitude[]", Dwell.IdealAmplitude),
      ClassLists(),
      ArrayField("NumClassOpenTimes[]", Dwell.NumClassOpenTimes),
      ScalarField("NumOpenTimes", Dwell.NumOpenTimes),
      ScalarField("NumClosedTimes", Dwell.NumClosedTimes),
      ScalarField("NumRawOpenTimes", Dwell.NumRawOpenTimes),
      ScalarField("NumLatencies", Dwell.NumLatencies),
      ScalarField("NumIdealEvents", Dwell.NumIdealEvents),
      ScalarField("SegmentCounter", Dwell.SegmentCounter),
      ScalarField("OpenStateExits", Dwell.OpenStateExits),
      ScalarField("MonitoredChannels", Dwell.MonitoredChannels),
      ScalarField("ResolutionOpen", Dwell.ResolutionOpen),
      ScalarField("ResolutionClosed", Dwell.ResolutionClosed),
      ScalarField("LastDwellKind", Dwell.LastDwellKind),
      ScalarField("OpenListSelector", Dwell.OpenListSelector),
      ScalarField("CondClosedMin", Dwell.CondClosedMin),
      ScalarField("CondClosedMax", Dwell.CondClosedMax),
      ScalarField("CondOpenResolution", Dwell.CondOpenResolution),
      ScalarField("CondUsePreceding", Dwell.CondUsePreceding),
      ScalarField("ChoiceOpen", Dwell.ChoiceOpen),
      ScalarField("ChoiceClosed", Dwell.ChoiceClosed),
      ScalarField("ListReplace", Dwell.ListReplace),
      ScalarField("ScTolerance", DwellFit.ScTolerance),
  });
}

}  // namespace zelvane
