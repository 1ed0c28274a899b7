#include "desktop/pages/stimulus_page.h"

#include <QGridLayout>
#include <QHeaderView>
#include <QVBoxLayout>

#include "desktop/graph/graph_widget.h"
#include "desktop/widgets/flow_row.h"
#include "desktop/widgets/form_page.h"
#include "desktop/widgets/section_label.h"
#include "desktop/widgets/table_widget.h"
#include "desktop/widgets/text.h"

namespace zelvane {
namespace {

constexpr int GraphShare = 3;  // share of the page's height, relative to the table's
constexpr int TableShare = 2;
constexpr int CreatorColumns = 2;
constexpr int LeastRows = 2;  // rows of the table that always show

/// Returns the height of a table with `rows` rows, its header and its scroll bar.
int HeightOfRows(const QTableView& table, int rows) {
  return table.horizontalHeader()->sizeHint().height() + 2 * table.frameWidth() + rows * table.rowHeight(0) +
         table.style()->pixelMetric(QStyle::PM_ScrollBarExtent);
}

}  // namespace

StimulusPage::StimulusPage(Panel& panel, Settings& settings, QWidget* parent)
    : TaskPage(panel, settings, parent) {
  add(header(), "StimMode", ControlWidget::Look::Segmented);
  addLabelled(header(), "StimTarget", ToQt(ControlNamed("StimTarget").label));
  header().addStretch();
  add(header(), "StimLogAxis");
  addGraph(addPart(GraphShare), *panel.graphs.front());
  const Part sweeps = addPart(TableShare);
  sweeps.content->parentWidget()->setSizePolicy(QSizePolicy::Preferred,
                                                QSizePolicy::Maximum);  // all rows at most
  addFold(sweeps, "Sweeps: one group a column");
  sweeps.row->addStretch();
  add(*sweeps.row, "ClearMultiStim");
  TableWidget& table = addTable(sweeps, TableNamed("MultiStimTable"));
  table.setWordWrap(false);
  table.resizeColumnsToContents();
  table.setMinimumHeight(HeightOfRows(table, LeastRows));
  table.setMaximumHeight(HeightOfRows(table, table.model()->rowCount()));
  finishParts();
  addCreators();
  form().setHidesDimmed(true);
  add(foot(), "StimulusHelp");
  foot().addStretch();
  add(foot(), "StimDone");
}

void StimulusPage::addCreators() {
  auto* grid = new QGridLayout;
  grid->setSpacing(6);
  grid->addWidget(NewSectionLabel("Add to the stimulus shown", this), 0, 0, 1, CreatorColumns);
  int place = CreatorColumns;
  for (const char* button :
       {"CreateStim", "CreateExpStim", "CreateExp", "CreateTrain", "FilterStim", "EraseStim"}) {
    grid->addWidget(&newControl(button, this), place / CreatorColumns, place % CreatorColumns);
    ++place;
  }
  aboveForm().addLayout(grid);
}

}  // namespace zelvane
