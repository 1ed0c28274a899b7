#include "desktop/pages/rscm_page.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QSplitter>
#include <QVBoxLayout>

#include "desktop/graph/graph_widget.h"
#include "desktop/widgets/control_widget.h"
#include "desktop/widgets/side_form.h"
#include "desktop/widgets/text.h"

namespace zelvane {
namespace {

constexpr int TraceShare = 3;  // of the page's height, against the relation's
constexpr int RelationShare = 2;
constexpr int Gap = 6;

}  // namespace

RscmPage::RscmPage(Panel& panel, QWidget* parent) : TaskPage(panel, parent) {
  auto* layout = new QHBoxLayout(this);
  layout->setContentsMargins(10, 8, 0, 6);
  layout->setSpacing(10);
  auto* left = new QVBoxLayout;
  left->setSpacing(Gap);
  left->addWidget(makeHeader());
  left->addWidget(makeGraphs(), 1);
  layout->addLayout(left, 1);
  layout->addWidget(makeSide());
}

void RscmPage::add(QHBoxLayout* row, const char* control) {
  controls_.push_back(new ControlWidget(ControlNamed(control), this));
  row->addWidget(controls_.back());
}

QWidget* RscmPage::makeHeader() {
  auto* part = new QWidget(this);
  auto* row = new QHBoxLayout(part);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(Gap);
  row->addWidget(SectionLabel("Trace", part));
  row->addSpacing(Gap);
  add(row, "RcFileName");
  row->addSpacing(Gap);
  row->addWidget(new QLabel("one point every", part));
  add(row, "RcADInterval");
  row->addStretch();
  add(row, "RsCmStatus");
  return part;
}

QWidget* RscmPage::makeGraphs() {
  auto* splitter = new QSplitter(Qt::Vertical, this);
  splitter->setChildrenCollapsible(false);
  for (Graph* graph : panel().graphs) {
    auto* part = new QWidget(splitter);
    auto* layout = new QVBoxLayout(part);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(4);
    if (!graphs_.empty()) layout->addWidget(SectionLabel("Current-voltage relation", part));
    graphs_.push_back(new GraphWidget(*graph, part));
    layout->addWidget(graphs_.back(), 1);
    splitter->addWidget(part);
  }
  splitter->setSizes({100 * TraceShare, 100 * RelationShare});
  splitter->setStretchFactor(0, TraceShare);
  splitter->setStretchFactor(1, RelationShare);
  return splitter;
}

QWidget* RscmPage::makeSide() {
  auto* part = new QWidget(this);
  auto* layout = new QVBoxLayout(part);
  layout->setContentsMargins(0, 0, 0, 0);
  settings_ = new SideForm(panel(), part);
  layout->addWidget(settings_, 1);
  auto* done = new QHBoxLayout;
  done->setContentsMargins(4, 0, 10, 0);
  done->addStretch();
  add(done, "DoneRC");
  layout->addLayout(done);
  return part;
}

void RscmPage::refresh(const std::set<Graph*>& changed) {
  for (ControlWidget* control : controls_) control->refresh();
  settings_->form().refresh();
  for (GraphWidget* graph : graphs_) {
    if (changed.contains(&graph->graph())) graph->refresh();
  }
}

}  // namespace zelvane
