// Functions that the parts of DoseResponsePanel call in each other.
#pragma once

namespace zelvane {

struct ControlEvent;
struct Graph;

inline constexpr char DoseResidualName[] = "DoseResponsePanel.residual";
inline constexpr char TemplateGraphName[] = "AnalysisPanel.template";
inline constexpr char DoseTableName[] = "DoseTable";

// -- Graphs (dose_graph_panel.cpp) --
void AddDoseGraphs();

/// Draws the pairs, and after a fit its curve, EC50 and the residual.
void DrawDoses();

/// Removes all plots.
void EraseDoses();

/// Adds the last curve as a line.
void DrawLastDoses();

/// Draws the pairs of a template and, with `fitted`, the curve through them.
void DrawTemplate(bool fitted);
void DrawLastTemplate();

/// Shows the place of the cursor of a graph.
void ShowDoseCursor();
void ShowTemplateCursor();

// -- The curve of a trace (dose_template_panel.cpp) --
void AddDoseTemplate();

}  // namespace zelvane
