// Events of the trace, of runs on it and of measures of it. Operations announce them. Stores and panels that
// depend on the trace listen to them: stores connect at start-up (ConnectHooks), each panel at its declaration.
// They lie here because every subject that announces or listens may use this folder. Who listens to an event:
// grep -rn 'TraceChanged.Add' src
//
//   The trace      TraceWillChange  TraceToPlot  TraceGone  WholeTraceToShow  TraceChanged  LengthGiven
//   A recording    RecordingCameIn  RecordingToCorrect  RecordingTaken
//   Runs           EquilibriumCalculated  RunBegins  RunTextChanged  StatisticsChanged  RunCompleted
//                  StepsToWrite  SeriesBegins  SeriesRun  SeriesEnds
//   Measures       MeasureSettingsWanted  MeasuresForgotten  MeasuresChanged  ResponseToShow  ResponseGone
//                  MeasuresFileChanged
//   Results table  TableRowChanged  TableRowMarked  ResultsTableChanged  TableFileNamed
#pragma once

#include <string>
#include <vector>

#include "platform/outcome.h"
#include "screen/listeners.h"

namespace zelvane {

// -- The trace --

/// The samples of the trace will be replaced or cleared, so old measures are no longer valid.
inline Listeners<> TraceWillChange;

/// The trace is complete and must be plotted. True: first remove the old plots.
inline Listeners<bool> TraceToPlot;

/// The trace is empty, so its plots must be removed.
inline Listeners<> TraceGone;

/// The user has opened a recording, so the views must show the whole trace and follow its height.
inline Listeners<> WholeTraceToShow;

/// The trace has changed, so all views and derived data must be updated.
inline Listeners<> TraceChanged;

/// Length and interval of the run came with the trace. They are not an edit of the user.
inline Listeners<> LengthGiven;

// -- A recording --

/// A recording has replaced the trace. It is not corrected and not shown yet.
inline Listeners<> RecordingCameIn;

/// The recording in the trace is complete and must be corrected, if the settings ask for it.
inline Listeners<> RecordingToCorrect;

/// Name, interval, length or episode of the recording have changed.
inline Listeners<> RecordingTaken;

// -- Runs. A silent run announces nothing; a fit makes thousands of silent runs --

/// A run starts at the equilibrium under the stimulus of this point.
inline Listeners<int> EquilibriumCalculated;

/// A run of the model begins. Its trace has the name of the model.
inline Listeners<> RunBegins;

/// `Result.RunText`, the progress of a Monte Carlo simulation, has changed.
inline Listeners<> RunTextChanged;

/// The event statistics of a Monte Carlo simulation have changed.
inline Listeners<> StatisticsChanged;

/// The trace of a run is complete: the first sweep of each run of a Monte Carlo simulation, or the sum of
/// subunits. A listener that saves the trace adds its result to the outcome.
inline Listeners<Outcome&> RunCompleted;

/// The saved values of an adaptive run, which the trace interpolates.
struct TraceSteps {
  std::vector<double> timeMs{};
  std::vector<float> values{};  // one for each time, in the units of the trace
};

/// The trace will be written now. If it comes from saved steps, the run supplies them.
inline Listeners<TraceSteps&> StepsToWrite;

/// A Monte Carlo simulation of one or several runs begins. It announces each run (from 1) when its trace is
/// complete, and its end, even after an interruption.
inline Listeners<> SeriesBegins;
inline Listeners<int> SeriesRun;
inline Listeners<> SeriesEnds;

// -- Measures --

/// The settings of the measures will be used, so typed values must be copied into the stores.
inline Listeners<> MeasureSettingsWanted;

/// The measures belong to an earlier trace.
inline Listeners<> MeasuresForgotten;

/// `Analysis.Measures` or the fitted exponentials have changed.
inline Listeners<> MeasuresChanged;

/// The response must be drawn again, with the marks of its measures.
inline Listeners<> ResponseToShow;

/// The response is no longer that of the last row.
inline Listeners<> ResponseGone;

/// The measures file in use, or the number of rows written to it, has changed.
inline Listeners<> MeasuresFileChanged;

// -- Results table --

inline Listeners<int> TableRowChanged;

/// The current row has changed; 0 = no row.
inline Listeners<int> TableRowMarked;

inline Listeners<> ResultsTableChanged;

/// A table file was written or read.
inline Listeners<const std::string&> TableFileNamed;

}  // namespace zelvane
