// AnalysisPanel: the measures of a response, its plot with nine cursors and marks, and the results table.
//
//   Declaring          AddAnalysisPanel
//   Panel and store    ReadAnalysisPanel  WriteAnalysisPanel
//   What is shown      ShowMeasures  ShowMeasuresFile  ShowTableFile  RefreshAnalysisView  ShowAnalysisMarks
//                      ShowNewTrace  ClearAnalysisPlots
//   What is seen       SamplesInView
//   Results table      ShowTableRow  ShowResultsTable  MarkTableRow
//   Commands           OpenAnalysisPanel
//
// The x axis of the plot counts samples; its gain shows them as times. The functions that show follow the
// events of the measures from AddAnalysisPanel on.
#pragma once

#include <string>

namespace zelvane {

struct Colour;

/// Colours of the marks on the plot.
extern const Colour PeakMark;
extern const Colour RiseMark;
extern const Colour DecayMark;
extern const Colour IntegralMark;

void AddAnalysisPanel();

/// Opens the panel as the task in front ("AN") and shows the trace on it.
void OpenAnalysisPanel();

/// Copies the settings of the panel into the stores. A count shown in ms is taken only where it was typed.
void ReadAnalysisPanel();

/// Shows the settings of the stores, the names and labels that follow the units of the trace, and the
/// cursors on their fields.
void WriteAnalysisPanel();

/// Shows what was measured; a measure that was not made shows nothing.
void ShowMeasures();

/// Shows the measures file in use and the number of rows written to it.
void ShowMeasuresFile();

/// Shows the name of the table file last written or read.
void ShowTableFile(const std::string& path);

/// Draws the plot anew: the trace, and the marks of what was measured of it. Shows names, labels and status.
void RefreshAnalysisView();

/// Draws the marks of what was measured anew.
void ShowAnalysisMarks();

/// The trace has changed: nothing is measured of it yet. Draws it.
void ShowNewTrace();

/// Samples of the trace that the plot shows, both ends included: all of them, or those between the two zoom
/// cursors while it is zoomed. The last may lie past the end of the trace.
struct SampleRange {
  int first = 0;
  int last = 0;
};
SampleRange SamplesInView();

/// Removes every plot of the graph.
void ClearAnalysisPlots();

/// Shows a row of the store in the table.
void ShowTableRow(int row);

/// Shows all rows, none marked, from the top.
void ShowResultsTable();

/// Marks a row as the current one and scrolls it into view; 0 marks none.
void MarkTableRow(int row);

}  // namespace zelvane
