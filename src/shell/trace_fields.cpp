// Fields of the trace and of what filters and corrects it.
#include "noise/noise_store.h"
#include "rscm/rscm_store.h"
#include "screen/fields.h"
#include "shell/internal/field_groups.h"
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
