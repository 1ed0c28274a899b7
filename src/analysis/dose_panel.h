// DoseResponsePanel: pairs of concentration and response, the Hill curve through them, and batch scripts.
#pragma once

namespace zelvane {

inline constexpr char DosePanelName[] = "DoseResponsePanel";

/// Declares the panel, its menu commands, and the small curve of a template on AnalysisPanel. AnalysisPanel must be
/// declared.
void AddDosePanel();

}  // namespace zelvane
