// Events around the trace. Operations announce, and whoever keeps or shows something that depends on it listens:
// the subjects connect at start-up (ConnectHooks), each panel where it is declared.
//
//   The trace      TraceChanges  TraceToPlot  TraceGone  WholeTraceToShow  TraceChanged  LengthGiven
//   A recording    RecordingCameIn  RecordingToCorrect  RecordingTaken
//   Runs           RunBegins  RunTextChanged  StatisticsChanged  RunCompleted  SeriesBegins  SeriesRun  SeriesEnds
//   Measures       MeasureSettingsWanted  MeasuresForgotten  MeasuresChanged  MarksChanged  ResponseToShow
//                  ResponseGone  MeasuresFileChanged
//   Results table  TableRowChanged  TableRowMarked  ResultsTableChanged  TableFileNamed
#pragma once

#include <string>

#include "platform/outcome.h"
#include "screen/listeners.h"

namespace zelvane {

// -- The trace --

/// The samples of the trace are being made anew, or cleared: nothing that was measured on them holds any
/// more. A fit, which makes thousands of traces, does not announce it.
inline Listeners<> TraceChanges;

/// The trace is complete and goes onto its graph. True removes the plots already there first.
inline Listeners<bool> TraceToPlot;

/// The trace holds no samples any more: its plots go.
inline Listeners<> TraceGone;

/// All of the trace is to come into view.
inline Listeners<> WholeTraceToShow;

/// The trace has changed: every view of it is drawn anew, and what is derived from it follows.
inline Listeners<> TraceChanged;

/// Length and interval of the run have come with the trace: they are no edit of the user's.
inline Listeners<> LengthGiven;

// -- A recording --

/// A recording has taken the place of what the trace held; nothing has been corrected or shown yet.
inline Listeners<> RecordingCameIn;

/// The recording in the trace is complete: it is corrected where the settings ask for that.
inline Listeners<> RecordingToCorrect;

/// Name, interval, length or episode of the recording have changed.
inline Listeners<> RecordingTaken;

// -- Runs --

/// A run of the model begins, and with it a trace under the model's name.
inline Listeners<> RunBegins;

/// `Result.RunText` tells how far a Monte Carlo simulation has come.
inline Listeners<> RunTextChanged;

/// What the channels of a Monte Carlo simulation did has been counted.
inline Listeners<> StatisticsChanged;

/// A run has left its trace: the first sweep of each run of a Monte Carlo simulation, or the sum of subunits. Who
/// saves the trace adds what came of it to the outcome.
inline Listeners<Outcome&> RunCompleted;

/// A Monte Carlo simulation of one or several runs begins; it tells of each run, from 1, once its trace is
/// complete, and of its end, also when it was broken off.
inline Listeners<> SeriesBegins;
inline Listeners<int> SeriesRun;
inline Listeners<> SeriesEnds;

// -- Measures --

/// The settings of the measures are about to be used: what is typed on a panel goes into the stores.
inline Listeners<> MeasureSettingsWanted;

/// What was measured belongs to a former trace.
inline Listeners<> MeasuresForgotten;

/// `Analysis.Measures` or the fitted exponentials have changed.
inline Listeners<> MeasuresChanged;

/// So have the places on the response that the measures stand for.
inline Listeners<> MarksChanged;

/// The response is drawn anew, with the marks of what was measured.
inline Listeners<> ResponseToShow;

/// The response is no longer that of the last row.
inline Listeners<> ResponseGone;

/// The measures file in use, or the number of rows written to it, has changed.
inline Listeners<> MeasuresFileChanged;

// -- Results table --

inline Listeners<int> TableRowChanged;

/// A row is the current one; 0: none is.
inline Listeners<int> TableRowMarked;

inline Listeners<> ResultsTableChanged;

/// A table file was written or read.
inline Listeners<const std::string&> TableFileNamed;

}  // namespace zelvane
