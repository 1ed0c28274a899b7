#include "trace/trace_fields.h"

#include "screen/fields.h"
#include "trace/noise_store.h"
#include "trace/trace_store.h"

namespace zelvane {

void RegisterTraceFields() {
  RegisterSettings({
      ScalarField("AddConstant", Trace.AddConstant),
      ScalarField("MultiplyConstant", Trace.MultiplyConstant),
      ScalarField("ParseConstant", Trace.ParseConstant),
      ScalarField("AutosaveFileName", Trace.AutosaveFileName),
      ScalarField("NoiseMean", Noise.NoiseMean),
      ScalarField("HighPassFc", Noise.HighPassFc, "Hz"),
      ScalarField("LowPassFc", Noise.LowPassFc, "Hz"),
      ScalarField("LowPassOn", Noise.LowPassOn),
  });
  RegisterResults({
      SpanField("SimTrace[]", Trace.SimTrace),
      ScalarField("TraceValid", Trace.TraceValid),
      ScalarField("TraceParsed", Trace.TraceParsed),
      ScalarField("RsCorrected", Trace.RsCorrected),
      ScalarField("TraceUnits", Trace.TraceUnits),
      ScalarField("EpisodeCount", Trace.EpisodeCount),
      ScalarField("EpisodeIndex", Trace.EpisodeIndex),
      ScalarField("TraceFileName", Trace.TraceFileName),
      ScalarField("TraceIsText", Trace.TraceIsText),
      ScalarField("SweepSamples", Trace.SweepSamples),
      ScalarField("TotalSamples", Trace.TotalSamples),
      ScalarField("RecordedChannels", Trace.RecordedChannels),
      ScalarField("RecordedChannel", Trace.RecordedChannel),
      ScalarField("OperationMode", Trace.OperationMode),
      ScalarField("FinalGain", Trace.FinalGain),
      ScalarField("AdcResolution", Trace.AdcResolution),
      ScalarField("AdcRange", Trace.AdcRange, "V"),
      ScalarField("ParseSkip", Trace.ParseSkip),
      ScalarField("ParseCount", Trace.ParseCount),
      ScalarField("ParseStart", Trace.ParseStart),
      ScalarField("ParseStartTime", Trace.ParseStartTime, "ms"),
      ScalarField("ParseInterval", Trace.ParseInterval, "ms"),
      ScalarField("ParseDuration", Trace.ParseDuration, "ms"),
      ScalarField("ParseMaxPoints", Trace.ParseMaxPoints),
      ScalarField("RecordedSignal", Trace.RecordedSignal),
      ScalarField("IntervalLine", Trace.IntervalLine),
      ScalarField("TypedInterval", Trace.TypedInterval, "ms"),
      ScalarField("ScaleFactor", Trace.ScaleFactor),
      ScalarField("RcFiltered", Trace.RcFiltered),
  });
  RegisterWorkingFields({
      ScalarField("ParseRequested", Trace.ParseRequested),
      ScalarField("ParseResult", Trace.ParseResult),
      ScalarField("ParseLength", Trace.ParseLength),
      SpanField("FilteredTrace[]", Noise.FilteredTrace),
  });
}

}  // namespace zelvane
