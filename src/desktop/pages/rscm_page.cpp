#include "desktop/pages/rscm_page.h"

#include "desktop/graph/graph_widget.h"
#include "desktop/widgets/flow_row.h"

namespace zelvane {
namespace {

constexpr int TraceShare = 3;  // share of the page's height, relative to the relation's
constexpr int RelationShare = 2;

}  // namespace

RscmPage::RscmPage(Panel& panel, Settings& settings, QWidget* parent) : TaskPage(panel, settings, parent) {
  addTitle(header(), "Trace");
  add(header(), "RcFileName");
  addLabelled(header(), "RcADInterval", "one point every");
  header().addStretch();
  add(header(), "RsCmStatus");
  addGraph(addPart(TraceShare), *panel.graphs.front());
  const Part relation = addPart(RelationShare);
  addFold(relation, "Current-voltage relation");
  addGraph(relation, *panel.graphs.back());
  finishParts();
  foot().addStretch();
  add(foot(), "DoneRC");
}

}  // namespace zelvane
