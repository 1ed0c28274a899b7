// The property page of a graph, and the commands that scale its axes. They act on the graph of the task in
// front.
#pragma once

namespace zelvane {

/// Declares the page, and Full scale, Auto y and Properties in the Graph menu.
void AddGraphPropertiesPanel();

/// Makes both axes automatic, so that the whole record is visible.
void ScaleFull();

/// Sets y to the smallest and largest of every second sample in view, widened on each side by 1/18 of their
/// difference.
void ScaleAutoY();

}  // namespace zelvane
