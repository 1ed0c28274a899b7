// AnalysisPanel: the measures of a response, its plot with nine cursors and marks, and the results table.
//
//   Declaring          AddAnalysisPanel
//   Panel and store    ReadAnalysisPanel  WriteAnalysisPanel
//   What is shown      ShowMeasures  ShowMeasuresFile  ShowTableFile  RefreshAnalysisView  ShowAnalysisMarks
//                      ShowNewTrace  ClearAnalysisPlots
//   What is seen       SamplesInView  SortAnalysisCursors
//   Results table      ShowTableRow  ShowResultsTable  MarkTableRow
//   Commands           OpenAnalysisPanel
//
// The x axis of the plot counts samples; its gain converts them to times. AddAnalysisPanel connects the
// functions that show results to the events of the measures.
#pragma once

#include <string>

namespace zelvane {

struct Colour;

/// Colours of the marks on the plot.
extern const Colour PeakMark;
extern const Colour RiseMark;
extern const Colour DecayMark;
extern const Colour IntegralMark;
extern const Colour FitMark;

void AddAnalysisPanel();

/// Opens the panel as the task in front ("AN") and shows the trace on it.
void OpenAnalysisPanel();

/// Copies the settings of the panel into the stores. Copies a count that is shown in ms only if the user
/// typed it.
void ReadAnalysisPanel();

/// Shows the settings of the stores, the names and labels for the units of the trace, and each cursor at
/// the time of its field.
void WriteAnalysisPanel();

/// Shows the measures, live or of the last analysis. A measure that is missing stays empty.
void ShowMeasures();

/// Shows the measures file in use and the number of rows written to it.
void ShowMeasuresFile();

/// Shows the name of the last table file that was written or read.
void ShowTableFile(const std::string& path);

/// Draws the plot again: the trace and the marks of its measures. Shows names, labels and status.
void RefreshAnalysisView();

/// Draws the marks of the measures again.
void ShowAnalysisMarks();

/// Empties the measures and draws the new trace.
void ShowNewTrace();

/// Returns the range of samples on the plot, with both ends: the whole trace, or the part between the two
/// zoom cursors while the plot is zoomed. The last sample may be after the end of the trace.
struct SampleRange {
  int first = 0;
  int last = 0;
};
SampleRange SamplesInView();

/// Sorts the two cursors of the baseline and those of the peak search by their places, with their fields.
void SortAnalysisCursors();

/// Removes every plot of the graph.
void ClearAnalysisPlots();

/// Shows a row of the store in the table.
void ShowTableRow(int row);

/// Shows all rows from the top and removes the mark.
void ShowResultsTable();

/// Marks a row as the current row and scrolls it into view. 0 removes the mark.
void MarkTableRow(int row);

}  // namespace zelvane
