// The trace on the main panel after a change, and what is sent elsewhere.
//
//   Exports   ExportTrace  ExportAnalysis
//   Declaring AddTraceView  AddTraceExports
#pragma once

namespace zelvane {

/// Lets the graph of the main panel follow every change of the trace: both axes automatic, full ranges
/// those of the trace.
void AddTraceView();

/// Asks for a file and appends the interval (ms) and the samples in view to it, one number a line.
void ExportTrace();

/// Shows the message that there is no fitted curve to export.
void ExportAnalysis();

/// Both exports as buttons of the analysis panel and in the menu.
void AddTraceExports();

}  // namespace zelvane
