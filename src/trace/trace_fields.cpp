#include "trace/trace_fields.h"

#include "screen/fields.h"
#include "trace/noise_store.h"
#include "trace/trace_store.h"

namespace zelvane {

void RegisterTraceFields() {
  RegisterFields({
      SpanField("SimTrace[]", Trace.SimTrace),
      ScalarField("TraceValid", Trace.TraceValid),
      ScalarField("TraceParsed", Trace.TraceParsed),
      ScalarField("RsCorrected", Trace.RsCorrected),
      ScalarField("TraceUnits", Trace.TraceUnits),
      ScalarField("EpisodeCount", Trace.EpisodeCount),
      ScalarField("EpisodeIndex", Trace.EpisodeIndex),
      ScalarField("TraceFileName", Trace.TraceFileName),
      ScalarField("RecordPoints", Noise.RecordPoints),
      ScalarField("TraceIsText", Trace.TraceIsText),
      ScalarField("SweepSamples", Trace.SweepSamples),
      ScalarField("TotalSamples", Trace.TotalSamples),
      ScalarField("RecordedChannels", Trace.RecordedChannels),
      ScalarField("RecordedChannel", Trace.RecordedChannel),
      ScalarField("OperationMode", Trace.OperationMode),
      ScalarField("FinalGain", Trace.FinalGain),
      ScalarField("AdcResolution", Trace.AdcResolution),
      ScalarField("AdcRange", Trace.AdcRange),
      ScalarField("ParseRequested", Trace.ParseRequested),
      ScalarField("ParseSkip", Trace.ParseSkip),
      ScalarField("ParseCount", Trace.ParseCount),
      ScalarField("ParseStart", Trace.ParseStart),
      ScalarField("ParseStartTime", Trace.ParseStartTime),
      ScalarField("ParseInterval", Trace.ParseInterval),
      ScalarField("ParseDuration", Trace.ParseDuration),
      ScalarField("ParseMaxPoints", Trace.ParseMaxPoints),
      ScalarField("ParseResult", Trace.ParseResult),
      ScalarField("ParseLength", Trace.ParseLength),
      ScalarField("RecordedSignal", Trace.RecordedSignal),
      ScalarField("IntervalLine", Trace.IntervalLine),
      ScalarField("TypedInterval", Trace.TypedInterval),
      ScalarField("ScaleFactor", Trace.ScaleFactor),
      ScalarField("AddConstant", Trace.AddConstant),
      ScalarField("MultiplyConstant", Trace.MultiplyConstant),
      ScalarField("ParseConstant", Trace.ParseConstant),
      ScalarField("AutosaveFileName", Trace.AutosaveFileName),
      ScalarField("RcFiltered", Trace.RcFiltered),
      ScalarField("NoiseMean", Noise.NoiseMean),
      ScalarField("HighPassFc", Noise.HighPassFc),
      ScalarField("LowPassFc", Noise.LowPassFc),
      ScalarField("LowPassOn", Noise.LowPassOn),
      SpanField("FilteredTrace[]", Noise.FilteredTrace),
  });
}

}  // namespace zelvane
