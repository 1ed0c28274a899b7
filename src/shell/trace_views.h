// All views of the trace, and what sends them elsewhere.
//
//   Views     RefreshTraceViews
//   Exports   ExportTrace  ExportAnalysis
//   Declaring AddTraceExports  AddTraceMenu
#pragma once

namespace zelvane {

/// Brings every view of the trace up to date after any change of it: the graph of the main panel (both axes
/// automatic, full ranges those of the trace), the graphs of the other panels that show it, and, while
/// `Trace.TraceValid`, the filtered trace.
void RefreshTraceViews();

/// Asks for a file and appends the interval (ms) and the samples in view to it, one number a line.
void ExportTrace();

/// Would write the curve of the last exponential fit; without one the user is told so.
void ExportAnalysis();

/// Both exports as buttons of the analysis panel.
void AddTraceExports();

void AddTraceMenu();

}  // namespace zelvane
