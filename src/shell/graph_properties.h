// The property page of a graph, and the commands that scale its axes. They act on the graph of the task in
// front.
#pragma once

namespace zelvane {

void AddGraphPropertiesPanel();

/// Adds Full scale, Auto y and Properties to the Graph menu.
void AddGraphMenu();

/// Both axes automatic; the view is the whole record.
void ScaleFull();

/// Sets y to the smallest and largest of every second sample in view, widened on each side by 1/18 of their
/// difference.
void ScaleAutoY();

}  // namespace zelvane
