// The samples of the one trace: size, clearing and origin.
//
//   A new trace   BeginTrace  AdoptRunLength  TraceToWrite
//   Its length    FollowRunLength
//   Clearing      ClearTrace  ClearSamples  EndSamplesAt
//   Events        TellTraceWillChange  TellTraceChanged  TellTraceCame (lists are in trace_events.h)
//
// Fields are in trace_store.h, the graph is in trace_graph.h.
#pragma once

#include <cstddef>
#include <span>

namespace zelvane {

enum class TraceOrigin { Simulation, Recording };

/// Marks the samples as complete and unchanged: sets `Trace.TraceValid` and `Trace.TraceFromFile`, and
/// clears the marks of resampling, correction and filter. The trace has the length and interval of the run.
void BeginTrace(TraceOrigin origin);

/// Makes the present length and interval of the run those of the trace.
void AdoptRunLength();

/// Drops a trace that was made with another length or interval than the run has now: `Trace.TraceValid` becomes
/// 0. With another interval the samples would have other times, so the trace is cleared as well.
///
/// Listens to RunLengthTaken.
void FollowRunLength();

/// Announces that the trace changes.
void TellTraceWillChange();

/// Announces the changed trace, so that all views and all derived data are updated.
///
/// TellTraceCame is for a trace with the length and interval of a file. They become part of every step of
/// undo.
void TellTraceChanged();
void TellTraceCame();

/// Returns the first `samples` samples of `Trace.SimTrace`, at most all of them, for a caller that writes
/// them. Raises `Trace.SimTraceUsed` to their number. Announces that the trace changes.
std::span<float> TraceToWrite(int samples);

/// Empties the trace: SimTrace 0, TraceValid 0, the main graph without plots. Announces that the trace
/// changes.
void ClearTrace();

/// Sets the written samples among 0..`samples` - 1 of `Trace.SimTrace` to 0. Sets `Trace.SimTraceUsed` to 0
/// when only zeros remain.
void ClearSamples(int samples);

/// Sets the samples of the old trace after the first `samples` samples to 0. The first ones belong to the new
/// trace.
void EndSamplesAt(std::size_t samples);

}  // namespace zelvane
