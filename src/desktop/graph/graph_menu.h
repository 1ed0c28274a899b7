// The menu of a graph: copies, files, full scale, cursors.
#pragma once

#include <QMenu>

namespace zelvane {

class GraphWidget;

/// Returns a menu that acts on `graph` and is deleted when it closes.
QMenu* NewGraphMenu(GraphWidget& graph);

}  // namespace zelvane
