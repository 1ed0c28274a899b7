#include "desktop/graph/graph_menu.h"

#include <algorithm>

#include "desktop/graph/graph_widget.h"

namespace zelvane {

QMenu* NewGraphMenu(GraphWidget& graph) {
  auto* menu = new QMenu(&graph);
  menu->setAttribute(Qt::WA_DeleteOnClose);
  menu->setObjectName(QStringLiteral("graphMenu"));
  const bool plotted = !graph.graph().plots.empty();
  const auto add = [&graph](QMenu* to, const char* text, auto act) {
    return to->addAction(QString::fromUtf8(text), &graph, [&graph, act] { act(graph); });
  };
  add(menu, "&Full scale\tHome", [](GraphWidget& g) { g.showAll(); });
  menu->addSeparator();
  add(menu, "&Copy as picture", [](GraphWidget& g) { g.copyPicture(); });
  add(menu, "Copy &data in view", [](GraphWidget& g) { g.copyData(); })->setEnabled(plotted);
  QMenu* files = menu->addMenu(QStringLiteral("&Export"));
  add(files, "P&NG picture...", [](GraphWidget& g) { g.saveAs(QStringLiteral(".png")); });
  add(files, "&SVG drawing...", [](GraphWidget& g) { g.saveAs(QStringLiteral(".svg")); });
  add(files, "&PDF drawing...", [](GraphWidget& g) { g.saveAs(QStringLiteral(".pdf")); });
  add(files, "&Data as CSV...", [](GraphWidget& g) {
    g.saveAs(QStringLiteral(".csv"));
  })->setEnabled(plotted);
  const auto& cursors = graph.graph().cursors;
  if (std::any_of(cursors.begin(), cursors.end(), [](const Cursor& c) { return c.enabled; })) {
    menu->addSeparator();
    add(menu, "&Bring cursors into view", [](GraphWidget& g) { g.bringCursors(); });
    QAction* follow = add(menu, "Cursors follow the &trace",
                          [](GraphWidget& g) { g.setCursorsFollow(!g.cursorsFollow()); });
    follow->setCheckable(true);
    follow->setChecked(graph.cursorsFollow());
  }
  return menu;
}

}  // namespace zelvane
