// The samples of the one trace: sizing, clearing, and where they come from.
//
//   A new trace   BeginTrace  TraceToWrite
//   Clearing      ClearTrace  ClearSamples  EndSamplesAt
//   Events        TellTraceChanges  TellTraceChanged  TellTraceCame (lists are in trace_events.h)
//
// Fields are in trace_store.h, the graph is in trace_graph.h.
#pragma once

#include <cstddef>
#include <span>

namespace zelvane {

enum class TraceOrigin { Simulation, Recording };

/// The samples are complete and nothing has been done to them yet: sets `Trace.TraceValid` and
/// `Trace.TraceFromFile`, and clears the marks of resampling, correction and filter.
void BeginTrace(TraceOrigin origin);

/// Tells whoever measured the trace that it changes, except while a fit runs.
void TellTraceChanges();

/// Brings all that shows the trace, or is derived from it, up to date.
///
/// TellTraceCame is for a trace whose length and interval are those of a file: they become part of every step
/// that undo keeps.
void TellTraceChanged();
void TellTraceCame();

/// Returns the first `samples` samples of `Trace.SimTrace`, or all of them, for a caller that writes them:
/// `Trace.SimTraceUsed` rises to their number. Tells that the trace changes.
std::span<float> TraceToWrite(int samples);

/// Empties the trace: SimTrace 0, TraceValid 0, the main graph without plots. Tells that the trace changes.
void ClearTrace();

/// Sets samples 0..`samples` - 1 of `Trace.SimTrace` to 0, as far as they were written. `Trace.SimTraceUsed`
/// falls to 0 where only zeros are left.
void ClearSamples(int samples);

/// Sets to 0 what the former trace left behind the first `samples` samples, which are those of the new one.
void EndSamplesAt(std::size_t samples);

}  // namespace zelvane
