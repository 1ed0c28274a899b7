// Exports the contents of the analysis panel to files.
//
//   Exports   ExportTrace  ExportAnalysis
//   Declaring AddTraceExports
#pragma once

namespace zelvane {

/// Asks for a file and appends the interval (ms) and the samples in view to it, one number a line.
void ExportTrace();

/// Shows the message that there is no fitted curve to export.
void ExportAnalysis();

/// Adds both exports as buttons of the analysis panel and to the menu.
void AddTraceExports();

}  // namespace zelvane
